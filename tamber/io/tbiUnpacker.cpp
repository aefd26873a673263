#include <tamber/io/tbiUnpacker.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace
{

// Fills `number` bytes, of `room` that may be written: where there are enough of them, a short run needs no loop.
void fill(unsigned char* bytes, unsigned char value, int number, int room)
{
    constexpr int SHORT_RUN = 16;
    if (number > SHORT_RUN || room < SHORT_RUN)
        std::memset(bytes, value, std::size_t(number));
    else
        std::memset(bytes, value, SHORT_RUN);
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
    while (number > 0)
    {
        const int part = std::min(number, left);
        fill(to, value, part, number);
        to += part;
        number -= part;
        left -= part;
        if (left == 0)
            takeRun();
    }
}
