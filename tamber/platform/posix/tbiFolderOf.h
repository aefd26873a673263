#pragma once

#include <string>

/// The folder in which a path lies, without the slash behind it; empty when the path names none.
inline std::string tbiFolderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return {};
    return slash == 0 ? "/" : path.substr(0, slash);
}
