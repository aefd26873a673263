#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// How modules are called, the same on every platform, so that a file saved on one finds its plug-ins on another.

/// What stands behind the last separator of either kind.
inline std::string_view tbiFilePart(std::string_view path)
{
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

inline char tbiUpperCase(char c)
{
    return c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c;
}

/// The module name of a file: the part behind the last separator in upper case, without the first "-DBG", so that a
/// debug build takes the place of the release build; "libtbX.so" and "tbX.so" are "TBX.DLL".
inline std::string tbiModuleName(std::string_view path)
{
    std::string name(tbiFilePart(path));
    for (char& c : name)
        c = tbiUpperCase(c);
    if (const std::size_t debug = name.find("-DBG"); debug != std::string::npos)
        name.erase(debug, 4);
    if (name.starts_with("LIBTB"))
        name.erase(0, 3);
    const std::size_t ending = name.rfind(".SO");
    if (ending != std::string::npos && (ending + 3 == name.size() || name[ending + 3] == '.'))
        name.replace(ending, std::string::npos, ".DLL");
    return name;
}

/// True for "TB*.DLL" without a separator.
inline bool tbiIsPlugInName(std::string_view moduleName)
{
    return moduleName.size() > 6 && moduleName.starts_with("TB") && moduleName.ends_with(".DLL") &&
           moduleName.find_first_of("/\\:") == std::string_view::npos;
}

/// True when a file's name ends in `ending`, in any case.
inline bool tbiHasEnding(std::string_view fileName, std::string_view ending)
{
    if (fileName.size() < ending.size())
        return false;
    const std::string_view tail = fileName.substr(fileName.size() - ending.size());
    for (std::size_t i = 0; i < ending.size(); ++i)
        if (tbiUpperCase(tail[i]) != tbiUpperCase(ending[i]))
            return false;
    return true;
}

/// True for the file names that the search for loaders takes: "tb*Loader" and the module ending, in any case.
inline bool tbiIsLoaderFile(std::string_view fileName, std::string_view ending)
{
    return fileName.size() >= 2 + 6 + ending.size() && tbiHasEnding(fileName.substr(0, 2), "tb") &&
           tbiHasEnding(fileName, ending) &&
           tbiHasEnding(fileName.substr(0, fileName.size() - ending.size()), "Loader");
}
