#include "EntryLabels.h"

namespace native
{

bool EntryLabels::add(std::uint32_t label)
{
    if (others.empty() && label != number)
        for (std::uint32_t i = 0; i < number; ++i)
            others.emplace(i, i);
    const bool fresh = label == number && others.empty() ? true : others.emplace(label, number).second;
    ++number;
    return fresh;
}

bool EntryLabels::find(std::uint32_t label, std::uint32_t& entry) const
{
    if (others.empty())
    {
        entry = label;
        return label < number;
    }
    const auto place = others.find(label);
    if (place == others.end())
        return false;
    entry = place->second;
    return true;
}

} // namespace native
