#include <tamber/platform/tbiFile.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <utility>

namespace
{

constexpr std::size_t LARGEST_TRANSFER = std::size_t{1} << 30;
constexpr int NAME_ATTEMPTS = 100;

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

int openRegular(const char* path, DWORD access, int flags)
{
    if (!path || *path == 0)
        return -1;
    const HANDLE handle = CreateFileA(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
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
    const HANDLE handle = CreateFileA(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return path;
    char resolved[32768];
    const DWORD n = GetFinalPathNameByHandleA(handle, resolved, sizeof resolved, FILE_NAME_NORMALIZED);
    CloseHandle(handle);
    return n > 0 && n < sizeof resolved ? std::string(resolved, n) : std::string(path);
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

} // namespace

int tbiOpenFile(const char* path) noexcept
{
    return openRegular(path, GENERIC_READ, _O_RDONLY);
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

bool tbiBeginReplacement(tbiReplacement& replacement, const char* target)
{
    if (!target || *target == 0)
        return false;
    replacement.target = followLinks(target);
    if (!mayBeReplaced(replacement.target))
        return false;
    static constinit std::atomic<unsigned> counter{0};
    for (int attempt = 0; attempt < NAME_ATTEMPTS; ++attempt)
    {
        char ending[32];
        std::snprintf(ending, sizeof ending, ".%lx-%x", GetCurrentProcessId(), counter.fetch_add(1));
        replacement.path = replacement.target + ending;
        const HANDLE handle = CreateFileA(replacement.path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                          CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle != INVALID_HANDLE_VALUE)
        {
            replacement.descriptor = descriptorOf(handle, _O_RDWR);
            return replacement.descriptor > 0;
        }
        if (GetLastError() != ERROR_FILE_EXISTS)
            return false;
    }
    return false;
}

bool tbiFinishReplacement(tbiReplacement& replacement, std::int64_t length)
{
    const int descriptor = std::exchange(replacement.descriptor, -1);
    LARGE_INTEGER end = {};
    end.QuadPart = length;
    bool done = SetFilePointerEx(handleOf(descriptor), end, nullptr, FILE_BEGIN) != 0 &&
                SetEndOfFile(handleOf(descriptor)) != 0 && FlushFileBuffers(handleOf(descriptor)) != 0;
    done = _close(descriptor) == 0 && done;
    done = done && MoveFileExA(replacement.path.c_str(), replacement.target.c_str(),
                               MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
    if (!done)
        DeleteFileA(replacement.path.c_str());
    return done;
}

void tbiAbandonReplacement(tbiReplacement& replacement)
{
    if (replacement.descriptor < 0)
        return;
    _close(std::exchange(replacement.descriptor, -1));
    DeleteFileA(replacement.path.c_str());
}
