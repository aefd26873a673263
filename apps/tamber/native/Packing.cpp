#include "Packing.h"

namespace native
{

std::vector<unsigned char> pack(Bytes data)
{
    constexpr std::size_t SHORTEST = 10;
    constexpr unsigned LONGEST_RUN = 255;
    std::vector<unsigned char> packed;
    if (data.size() < SHORTEST)
        return packed;
    std::size_t length = 3; // the last pair and the ending 0
    unsigned run = 0;
    for (std::size_t i = 0; i < data.size(); ++i)
    {
        ++run;
        const bool last = i + 1 == data.size();
        if (!last && data[i + 1] == data[i] && run < LONGEST_RUN)
            continue;
        packed.push_back(static_cast<unsigned char>(run));
        packed.push_back(data[i]);
        run = 0;
        if (!last && (length += 2) >= data.size())
            return {};
    }
    packed.push_back(0);
    return packed;
}

} // namespace native
