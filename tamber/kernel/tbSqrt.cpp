#include <tamber/kernel/tbSqrt.h>

#include <tamber/kernel/tbMemory.h>
#include <tamber/kernel/tbiSqrtTable.h>

#include <bit>
#include <cmath>

namespace
{

constinit TBSQRT_METHOD method = TBSQRT_EXACT;
constinit std::uint32_t* table = nullptr;
constinit int tableSize = 0;
constinit int indexShift = 0;

constexpr std::uint32_t MANTISSA = 0x7FFFFF;

std::uint32_t rootMantissa(int i, std::uint32_t exponent)
{
    const float x = std::bit_cast<float>((std::uint32_t(i) << indexShift) | exponent);
    return std::bit_cast<std::uint32_t>(std::sqrt(x)) & MANTISSA;
}

// The first half holds the roots of [1, 2), the second those of [2, 4).
void fillTable()
{
    const int half = tableSize / 2;
    for (int i = 0; i < half; ++i)
    {
        table[i] = rootMantissa(i, 0x3F800000);
        table[half + i] = rootMantissa(i, 0x40000000);
    }
}

} // namespace

void tbSetSqrtMethod(TBSQRT_METHOD wanted)
{
    if (wanted < TBSQRT_TABLE_256 || wanted >= TBSQRT_EXACT)
    {
        method = TBSQRT_EXACT;
        return;
    }
    const int size = 256 << (2 * wanted);
    if (size != tableSize)
    {
        void* block = tbMemory::realloc(table, std::size_t(size) * sizeof *table);
        if (!block)
            return;
        table = static_cast<std::uint32_t*>(block);
        tableSize = size;
        indexShift = 16 - 2 * wanted;
        fillTable();
    }
    method = wanted;
}

TBSQRT_METHOD tbGetSqrtMethod()
{
    return method;
}

float tbSqrt(float x)
{
    if (method == TBSQRT_EXACT)
        return std::sqrt(x);
    if (x == 0.0f)
        return 0.0f;
    const std::uint32_t bits = std::bit_cast<std::uint32_t>(x);
    const std::int32_t exponent = std::int32_t((bits >> 23) & 0xFF) - 127;
    std::uint32_t mantissa = bits & MANTISSA;
    if ((exponent & 1) != 0)
        mantissa |= MANTISSA + 1;
    // Halving rounds towards minus infinity.
    return std::bit_cast<float>(table[mantissa >> indexShift] | (std::uint32_t((exponent >> 1) + 127) << 23));
}

void tbGetSinCos(float degrees, float& sine, float& cosine)
{
    const double radians = double(degrees) * double(0.017453292f);
    sine = float(std::sin(radians));
    cosine = float(std::cos(radians));
}

void tbiFreeSqrtTable()
{
    method = TBSQRT_EXACT;
    tbMemory::free(table);
    table = nullptr;
    tableSize = 0;
}
