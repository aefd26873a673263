#include <tamber/platform/tbiPlace.h>

#include <tamber/platform/tbiPath.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>

std::string tbiSpelledPlace(const char* name)
{
    const std::string native = tbiNativePath(name);
    std::error_code error;
    const std::filesystem::path here = std::filesystem::current_path(error);
    if (native.empty() || error)
        return {};
    std::string place = (here / native).lexically_normal().string();
    while (place.size() > 1 && place.back() == '/')
        place.pop_back();
    return place;
}

std::string tbiFinalPlace(const char* name)
{
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(tbiNativePath(name).c_str(), nullptr),
                                                               &std::free);
    return resolved ? resolved.get() : std::string();
}

bool tbiIsPlaceBelow(const std::string& place, const std::string& directory)
{
    if (directory.empty() || !place.starts_with(directory))
        return false;
    return directory.back() == '/' || place.size() == directory.size() || place[directory.size()] == '/';
}
