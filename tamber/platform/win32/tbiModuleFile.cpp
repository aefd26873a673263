#include <tamber/platform/tbiModuleFile.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <algorithm>

struct tbiModuleFile::State
{
    HANDLE handle;
};

namespace
{

constexpr std::size_t LARGEST_READ = std::size_t{1} << 30;

} // namespace

tbiModuleFile::tbiModuleFile(const std::string& file) : path(file)
{
    const HANDLE handle = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return;
    if (GetFileType(handle) == FILE_TYPE_DISK)
        state = new State{handle};
    else
        CloseHandle(handle);
}

tbiModuleFile::~tbiModuleFile()
{
    if (state)
        CloseHandle(state->handle);
    delete state;
}

bool tbiModuleFile::isOpen() const
{
    return state != nullptr;
}

std::int64_t tbiModuleFile::read(void* bytes, std::size_t size)
{
    DWORD n = 0;
    if (!ReadFile(state->handle, bytes, DWORD(std::min(size, LARGEST_READ)), &n, nullptr))
        return -1;
    return n;
}

// The handle shares reading only.
bool tbiModuleFile::isUnchanged() const
{
    return true;
}
