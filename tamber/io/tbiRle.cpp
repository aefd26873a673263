#include <tamber/io/tbiRle.h>

#include <cstring>

namespace
{

constexpr int LONGEST_RUN = 255;

} // namespace

long long tbiRle::unpackedSize(const unsigned char* packed, int length)
{
    long long size = 0;
    for (int i = 0; i < length; i += 2)
    {
        if (packed[i] == 0)
            return size;
        if (i + 1 < length)
            size += packed[i];
    }
    return -1;
}

void tbiRle::unpack(const unsigned char* packed, unsigned char* data)
{
    for (; packed[0] != 0; packed += 2)
    {
        std::memset(data, packed[1], packed[0]);
        data += packed[0];
    }
}

int tbiRle::pack(const unsigned char* data, int size, unsigned char* packed)
{
    if (size < SHORTEST)
        return 0;
    int length = 3; // the last pair and the ending 0
    int pairs = 0;
    int run = 0;
    for (int i = 0; i < size; ++i)
    {
        ++run;
        const bool last = i + 1 == size;
        if (last || data[i + 1] != data[i] || run == LONGEST_RUN)
        {
            packed[2 * pairs] = static_cast<unsigned char>(run);
            packed[2 * pairs + 1] = data[i];
            ++pairs;
            run = 0;
            if (!last && (length += 2) >= size)
                return 0;
        }
    }
    packed[2 * pairs] = 0;
    return 2 * pairs + 1;
}
