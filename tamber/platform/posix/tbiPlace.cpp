#include <tamber/platform/tbiPlace.h>

#include <tamber/platform/tbiPath.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace
{

std::string nativePath(const char* name)
{
    std::string native = name ? name : "";
    tbiToNativePath(native.data());
    return native;
}

} // namespace

std::string tbiSpelledPlace(const char* name)
{
    const std::string native = nativePath(name);
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
    char* resolved = realpath(nativePath(name).c_str(), nullptr);
    if (!resolved)
        return {};
    std::string place = resolved;
    std::free(resolved);
    return place;
}

bool tbiIsPlaceBelow(const std::string& place, const std::string& directory)
{
    if (directory.empty() || !place.starts_with(directory))
        return false;
    return directory.back() == '/' || place.size() == directory.size() || place[directory.size()] == '/';
}
