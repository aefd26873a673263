#include <tamber/platform/tbiFile.h>

#include <tamber/kernel/tbiMemoryWatch.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

namespace
{

constexpr std::size_t LARGEST_TRANSFER = std::size_t{1} << 30;
constexpr int NAME_ATTEMPTS = 1000;

HANDLE handleOf(int descriptor)
{
    return reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
}

int descriptorOf(HANDLE handle, int flags)
{
    int descriptor = _open_osfhandle(reinterpret_cast<intptr_t>(handle), flags | _O_BINARY | _O_NOINHERIT);
    if (descriptor < 0)
    {
        CloseHandle(handle);
        return -1;
    }
    if (descriptor > 0)
        return descriptor;
    // Descriptor 0 is not one that callers can tell from none.
    const int moved = _dup(descriptor);
    _close(descriptor);
    return moved;
}

constexpr DWORD SHARE_ALL = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

int openRegular(const char* path, DWORD access, int flags, DWORD share = SHARE_ALL)
{
    if (!path || *path == 0)
        return -1;
    const HANDLE handle =
        CreateFileA(path, access, share, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return -1;
    if (GetFileType(handle) != FILE_TYPE_DISK)
    {
        CloseHandle(handle);
        return -1;
    }
    return descriptorOf(handle, flags);
}

OVERLAPPED at(std::int64_t position)
{
    OVERLAPPED place = {};
    place.Offset = DWORD(std::uint64_t(position) & 0xFFFFFFFFu);
    place.OffsetHigh = DWORD(std::uint64_t(position) >> 32);
    return place;
}

// Where links lead to; the path itself when nothing stands there yet.
std::string followLinks(const char* path)
{
    const HANDLE handle =
        CreateFileA(path, 0, SHARE_ALL, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return path;
    char resolved[32768];
    const DWORD n = GetFinalPathNameByHandleA(handle, resolved, sizeof resolved, FILE_NAME_NORMALIZED);
    CloseHandle(handle);
    return n > 0 && n < sizeof resolved ? std::string(resolved, n) : std::string(path);
}

// A file that is open is renamed to a place that does not depend on the current directory.
std::string absolutePath(const std::string& path)
{
    char absolute[32768];
    const DWORD n = GetFullPathNameA(path.c_str(), sizeof absolute, absolute, nullptr);
    return n > 0 && n < sizeof absolute ? std::string(absolute, n) : path;
}

bool mayBeReplaced(const std::string& target)
{
    const DWORD attributes = GetFileAttributesA(target.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return GetLastError() == ERROR_FILE_NOT_FOUND;
    if ((attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DEVICE)) != 0)
        return false;
    const int descriptor = openRegular(target.c_str(), GENERIC_READ, _O_RDONLY);
    tbiCloseFile(descriptor);
    return descriptor > 0;
}

std::string savingName(const std::string& target, int number)
{
    return target + ".saving-" + std::to_string(number);
}

// The first name beside the target that no other save has. A file that somebody is writing cannot be deleted, so one
// that can was left behind by a save that was killed.
bool makeBeside(tbiReplacement& replacement)
{
    for (int number = 1; number <= NAME_ATTEMPTS; ++number)
    {
        replacement.path = savingName(replacement.target, number);
        const char* path = replacement.path.c_str();
        DeleteFileA(path);
        const HANDLE handle = CreateFileA(path, GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                                          FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle != INVALID_HANDLE_VALUE)
        {
            replacement.descriptor = descriptorOf(handle, _O_RDWR);
            if (replacement.descriptor < 0)
            {
                DeleteFileA(path);
                return false;
            }
            while (DeleteFileA(savingName(replacement.target, ++number).c_str()))
            {
            }
            return true;
        }
        // Denied: another save has just given its file up.
        if (GetLastError() != ERROR_FILE_EXISTS && GetLastError() != ERROR_ACCESS_DENIED)
            return false;
    }
    return false;
}

bool beginReplacement(tbiReplacement& replacement, const char* target)
{
    replacement.target = absolutePath(followLinks(target));
    return mayBeReplaced(replacement.target) && makeBeside(replacement);
}

// Renames an open file, so that at no moment another save takes it for an abandoned one.
bool renameOpen(HANDLE handle, const char* target)
{
    const int length = MultiByteToWideChar(CP_ACP, 0, target, -1, nullptr, 0);
    std::vector<unsigned char> block(offsetof(FILE_RENAME_INFO, FileName) +
                                     std::size_t(std::max(length, 1)) * sizeof(WCHAR));
    auto* info = reinterpret_cast<FILE_RENAME_INFO*>(block.data());
    info->ReplaceIfExists = TRUE;
    info->FileNameLength = DWORD(std::max(length - 1, 0)) * DWORD(sizeof(WCHAR));
    MultiByteToWideChar(CP_ACP, 0, target, -1, info->FileName, length);
    return length > 1 && SetFileInformationByHandle(handle, FileRenameInfo, info, DWORD(block.size())) != 0;
}

} // namespace

int tbiOpenFile(const char* path) noexcept
{
    return openRegular(path, GENERIC_READ, _O_RDONLY);
}

int tbiHoldFile(const char* path) noexcept
{
    return openRegular(path, GENERIC_READ, _O_RDONLY, FILE_SHARE_READ);
}

int tbiOpenFileForUpdate(const char* path) noexcept
{
    return openRegular(path, GENERIC_READ | GENERIC_WRITE, _O_RDWR);
}

void tbiCloseFile(int descriptor) noexcept
{
    if (descriptor > 0)
        _close(descriptor);
}

std::int64_t tbiFileLength(int descriptor) noexcept
{
    LARGE_INTEGER length = {};
    return GetFileSizeEx(handleOf(descriptor), &length) ? std::int64_t(length.QuadPart) : -1;
}

bool tbiReadFile(int descriptor, void* bytes, std::size_t size, std::int64_t position) noexcept
{
    char* to = static_cast<char*>(bytes);
    while (size > 0)
    {
        OVERLAPPED place = at(position);
        DWORD n = 0;
        const DWORD wanted = DWORD(std::min(size, LARGEST_TRANSFER));
        if (!ReadFile(handleOf(descriptor), to, wanted, &n, &place) || n == 0)
            return false;
        to += n;
        size -= n;
        position += n;
    }
    return true;
}

bool tbiWriteFile(int descriptor, const void* bytes, std::size_t size, std::int64_t position) noexcept
{
    const char* from = static_cast<const char*>(bytes);
    while (size > 0)
    {
        OVERLAPPED place = at(position);
        DWORD n = 0;
        const DWORD wanted = DWORD(std::min(size, LARGEST_TRANSFER));
        if (!WriteFile(handleOf(descriptor), from, wanted, &n, &place) || n == 0)
            return false;
        from += n;
        size -= n;
        position += n;
    }
    return true;
}

// New files have the rights of their directory.
bool tbiBeginReplacement(tbiReplacement& replacement, const char* target, tbiNewFileRights) noexcept
{
    if (target && *target != 0 &&
        tbiWithoutThrow(false, [&] { return beginReplacement(replacement, target); }))
        return true;
    tbiAbandonReplacement(replacement); // made before memory ran out
    return false;
}

bool tbiFinishReplacement(tbiReplacement& replacement, std::int64_t length) noexcept
{
    const int descriptor = std::exchange(replacement.descriptor, -1);
    const HANDLE handle = handleOf(descriptor);
    LARGE_INTEGER end = {};
    end.QuadPart = length;
    const bool done = SetFilePointerEx(handle, end, nullptr, FILE_BEGIN) != 0 && SetEndOfFile(handle) != 0 &&
                      FlushFileBuffers(handle) != 0 &&
                      tbiWithoutThrow(false, [&] { return renameOpen(handle, replacement.target.c_str()); });
    _close(descriptor);
    if (!done)
        DeleteFileA(replacement.path.c_str());
    return done;
}

void tbiAbandonReplacement(tbiReplacement& replacement) noexcept
{
    if (replacement.descriptor < 0)
        return;
    _close(std::exchange(replacement.descriptor, -1));
    DeleteFileA(replacement.path.c_str());
}
