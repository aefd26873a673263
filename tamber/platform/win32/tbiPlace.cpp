#include <tamber/platform/tbiPlace.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include <windows.h>

namespace
{

constexpr DWORD LONGEST_PATH = 32768;
constexpr std::string_view DEVICES = "\\\\.\\";
constexpr std::string_view VERBATIM = "\\\\?\\";
constexpr std::string_view VERBATIM_SHARE = "\\\\?\\UNC\\";

// As people write it: without the prefix that turns the work on names off.
std::string plain(std::string path)
{
    if (path.starts_with(VERBATIM_SHARE))
        return "\\\\" + path.substr(VERBATIM_SHARE.size());
    return path.starts_with(VERBATIM) ? path.substr(VERBATIM.size()) : path;
}

std::string withoutLastSeparator(std::string path)
{
    while (path.size() > 3 && path.back() == '\\')
        path.pop_back();
    return path;
}

} // namespace

std::string tbiSpelledPlace(const char* name)
{
    if (!name || *name == 0)
        return {};
    std::string path(LONGEST_PATH, '\0');
    const DWORD n = GetFullPathNameA(name, LONGEST_PATH, path.data(), nullptr);
    if (n == 0 || n >= LONGEST_PATH)
        return {};
    path.resize(n);
    std::replace(path.begin(), path.end(), '/', '\\');
    path = plain(path);
    if (path.starts_with(DEVICES) || path.starts_with(VERBATIM) || path.find(':', 2) != std::string::npos)
        return {};
    return withoutLastSeparator(path);
}

std::string tbiFinalPlace(const char* name)
{
    if (!name || *name == 0)
        return {};
    // Without any access, so that no device acts; directories open with backup semantics only.
    const HANDLE handle = CreateFileA(name, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return {};
    std::string path(LONGEST_PATH, '\0');
    const DWORD n = GetFinalPathNameByHandleA(handle, path.data(), LONGEST_PATH, FILE_NAME_NORMALIZED);
    CloseHandle(handle);
    if (n == 0 || n >= LONGEST_PATH)
        return {};
    path.resize(n);
    return withoutLastSeparator(plain(path));
}

bool tbiIsPlaceBelow(const std::string& place, const std::string& directory)
{
    if (directory.empty() || place.size() < directory.size() ||
        _strnicmp(place.c_str(), directory.c_str(), directory.size()) != 0)
        return false;
    return directory.back() == '\\' || place.size() == directory.size() || place[directory.size()] == '\\';
}
