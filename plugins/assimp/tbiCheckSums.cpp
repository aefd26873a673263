#include "tbiCheckSums.h"

#include <array>

namespace
{
constexpr std::array<std::uint32_t, 256> makeCrcTable()
{
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < 256; ++i)
    {
        std::uint32_t value = i;
        for (int bit = 0; bit < 8; ++bit)
            value = value & 1 ? 0xEDB88320u ^ (value >> 1) : value >> 1;
        table[i] = value;
    }
    return table;
}
constexpr auto CRC_TABLE = makeCrcTable();
} // namespace

std::uint32_t tbiCrc32(const void* data, std::size_t size)
{
    const auto* bytes = static_cast<const unsigned char*>(data);
    std::uint32_t crc = 0xFFFFFFFFu;
    for (std::size_t i = 0; i < size; ++i)
        crc = CRC_TABLE[(crc ^ bytes[i]) & 0xFF] ^ (crc >> 8);
    return ~crc;
}

std::uint32_t tbiAdler32(const void* data, std::size_t size)
{
    constexpr std::uint32_t MODULUS = 65521;
    const auto* bytes = static_cast<const unsigned char*>(data);
    std::uint32_t a = 1;
    std::uint32_t b = 0;
    for (std::size_t i = 0; i < size; ++i)
    {
        a = (a + bytes[i]) % MODULUS;
        b = (b + a) % MODULUS;
    }
    return b << 16 | a;
}
