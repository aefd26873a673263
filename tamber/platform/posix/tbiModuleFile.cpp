#define _FILE_OFFSET_BITS 64 // NOLINT: inode numbers of 64 bits for 32-bit programs, before any system header

#include <tamber/platform/tbiModuleFile.h>

#include <tamber/platform/tbiFile.h>
#include <tamber/platform/tbiPath.h>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

struct tbiModuleFile::State
{
    int descriptor;
    struct stat status;
};

namespace
{

bool sameTime(const timespec& a, const timespec& b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

} // namespace

tbiModuleFile::tbiModuleFile(const std::string& file) : path(file)
{
    tbiToNativePath(path.data());
    State opened = {tbiOpenFile(path.c_str()), {}};
    if (opened.descriptor < 0)
        return;
    if (fstat(opened.descriptor, &opened.status) == 0)
        state = new State(opened);
    else
        tbiCloseFile(opened.descriptor);
}

tbiModuleFile::~tbiModuleFile()
{
    if (state)
        tbiCloseFile(state->descriptor);
    delete state;
}

bool tbiModuleFile::isOpen() const
{
    return state != nullptr;
}

std::int64_t tbiModuleFile::read(void* bytes, std::size_t size)
{
    ssize_t n = 0;
    do
        n = ::read(state->descriptor, bytes, size);
    while (n < 0 && errno == EINTR);
    return n;
}

// Writing moves the time of modification, and whoever sets that back moves the time of change, as renaming does.
bool tbiModuleFile::isUnchanged() const
{
    const struct stat& before = state->status;
    struct stat now = {};
    return stat(path.c_str(), &now) == 0 && now.st_dev == before.st_dev && now.st_ino == before.st_ino &&
           now.st_size == before.st_size && sameTime(now.st_mtim, before.st_mtim) &&
           sameTime(now.st_ctim, before.st_ctim);
}
