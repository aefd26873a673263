#define _FILE_OFFSET_BITS 64 // NOLINT: inode numbers of 64 bits for 32-bit programs, before any system header

#include <tamber/platform/tbiModuleFile.h>

#include <tamber/platform/tbiPath.h>

#include <sys/stat.h>

namespace
{

// Writing moves the time of modification, and whoever sets that back moves the time of change, as renaming does.
std::array<std::int64_t, 7> markOf(const struct stat& status)
{
    return {std::int64_t(status.st_dev),          std::int64_t(status.st_ino),
            std::int64_t(status.st_size),         std::int64_t(status.st_mtim.tv_sec),
            std::int64_t(status.st_mtim.tv_nsec), std::int64_t(status.st_ctim.tv_sec),
            std::int64_t(status.st_ctim.tv_nsec)};
}

} // namespace

tbiModuleFile::tbiModuleFile(const std::string& file)
    : path(tbiNativePath(file.c_str())),
      descriptor(tbiHoldFile(file.c_str()))
{
    struct stat status = {};
    if (fstat(descriptor, &status) == 0)
        mark = markOf(status);
}

bool tbiModuleFile::isUnchanged() const
{
    struct stat now = {};
    return stat(path.c_str(), &now) == 0 && markOf(now) == mark;
}
