#include <tamber/io/tbiUnpacker.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace
{

constexpr int SHORT_RUN = 16; // for which a call costs more than its bytes

void fill(unsigned char* bytes, unsigned char value, int number)
{
    if (number > SHORT_RUN)
        std::memset(bytes, value, std::size_t(number));
    else
        for (int i = 0; i < number; ++i)
            bytes[i] = value;
}

} // namespace

tbiUnpacker::tbiUnpacker(unsigned char* packed) : pairs(packed), pair(packed)
{
    takeRun();
}

// The zeros behind the last pair are a run that does not end.
void tbiUnpacker::takeRun()
{
    const bool ended = pair[0] == 0;
    left = ended ? std::numeric_limits<int>::max() : pair[0];
    value = ended ? 0 : pair[1];
    pair += ended ? 0 : 2;
}

void tbiUnpacker::skipTo(int place)
{
    if (place < position)
    {
        pair = pairs;
        position = 0;
        takeRun();
    }
    while (place - position >= left)
    {
        position += left;
        takeRun();
    }
    left -= place - position;
    position = place;
}

void tbiUnpacker::read(int place, void* bytes, int number)
{
    skipTo(place);
    position += number;
    auto* to = static_cast<unsigned char*>(bytes);
    for (int part = std::min(number, left); number > 0; part = std::min(number, left))
    {
        fill(to, value, part);
        to += part;
        number -= part;
        if ((left -= part) == 0)
            takeRun();
    }
}
