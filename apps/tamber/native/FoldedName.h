#pragma once

#include <algorithm>
#include <string_view>

namespace native
{

/// Below, equal to or above 0 as `a` stands before, with or behind `b`; letters of either case are the same.
inline int compareFolded(std::string_view a, std::string_view b)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; };
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        if (lower(a[i]) != lower(b[i]))
            return lower(a[i]) < lower(b[i]) ? -1 : 1;
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

} // namespace native
