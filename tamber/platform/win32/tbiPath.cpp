#include <tamber/platform/tbiPath.h>

#include <windows.h>

void tbiToNativePath(char*) noexcept {}

bool tbiIsReadableFile(const char* path) noexcept
{
    const DWORD attributes = GetFileAttributesA(path);
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return false;
    const HANDLE file =
        CreateFileA(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    const bool disk = GetFileType(file) == FILE_TYPE_DISK;
    CloseHandle(file);
    return disk;
}
