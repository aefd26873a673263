#pragma once

#include <tamber/kernel/tbString.h>

#include <algorithm>
#include <string>
#include <string_view>

/// What follows the last dot, as loaders are looked up by; all of a name without one.
inline std::string_view tbiExtensionOf(std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? name : name.substr(dot + 1);
}

/// True when the list has the extension, in letters of either case.
template <class List>
bool tbiHasExtension(const List& list, std::string_view extension)
{
    const std::string wanted(extension);
    return std::any_of(std::begin(list), std::end(list),
                       [&](const char* each) { return tbStrcmp(each, wanted.c_str(), true) == 0; });
}
