#define _FILE_OFFSET_BITS 64 // NOLINT: 64-bit positions for 32-bit programs, before any system header

#include <tamber/platform/tbiFile.h>

#include <tamber/kernel/tbiMemoryWatch.h>
#include <tamber/platform/posix/tbiFolderOf.h>
#include <tamber/platform/posix/tbiUntilDone.h>
#include <tamber/platform/tbiPath.h>
#include <tamber/platform/tbiPlace.h>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace
{

constexpr mode_t OWNER_ONLY = S_IRUSR | S_IWUSR;
constexpr mode_t USUAL = OWNER_ONLY | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH; // without the process's umask
constexpr int NAME_ATTEMPTS = 1000;
constexpr int MOST_LINKS = 40;

// Descriptors 0 to 2 are the standard streams, and 0 is not one that callers can tell from none.
int aboveStandardStreams(int descriptor)
{
    if (descriptor < 0 || descriptor > 2)
        return descriptor;
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, 3);
    close(descriptor);
    return moved;
}

int openRegular(const char* path, int access)
{
    if (!path || *path == 0)
        return -1;
    std::string native;
    if (!tbiWithoutThrow(false, [&] { return native = tbiNativePath(path), true; }))
        return -1;
    // Opening a device can act on it, so what stands there is looked at before and, for good, after.
    struct stat status = {};
    if (stat(native.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return -1;
    const int descriptor = aboveStandardStreams(
        tbiUntilDone([&] { return open(native.c_str(), access | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    if (descriptor < 0)
        return -1;
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode))
        return descriptor;
    close(descriptor);
    return -1;
}

bool syncDirectory(const std::string& path)
{
    const std::string folder = tbiFolderOf(path);
    const char* name = folder.empty() ? "." : folder.c_str();
    const int descriptor = tbiUntilDone([=] { return open(name, O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    if (descriptor < 0)
        return false;
    const bool synced = tbiUntilDone([&] { return fsync(descriptor); }) == 0;
    close(descriptor);
    return synced;
}

// Whether the file may be replaced, and the rights that it has if it is there.
bool mayBeReplaced(const std::string& target, std::optional<mode_t>& rights)
{
    struct stat status = {};
    if (stat(target.c_str(), &status) != 0)
        return errno == ENOENT;
    rights = status.st_mode & 07777;
    return S_ISREG(status.st_mode) && access(target.c_str(), W_OK) == 0;
}

enum class LOCK
{
    TAKEN,
    HELD_BY_ANOTHER,
    UNKNOWN // not on this file system
};

// The lock says that whoever makes the file is alive: it goes with the process.
LOCK takeLock(int descriptor)
{
    if (tbiUntilDone([&] { return flock(descriptor, LOCK_EX | LOCK_NB); }) == 0)
        return LOCK::TAKEN;
    return errno == EWOULDBLOCK ? LOCK::HELD_BY_ANOTHER : LOCK::UNKNOWN;
}

bool standsAt(const char* path, int descriptor)
{
    struct stat there = {};
    struct stat open = {};
    return lstat(path, &there) == 0 && fstat(descriptor, &open) == 0 && there.st_dev == open.st_dev &&
           there.st_ino == open.st_ino;
}

// Removes what a save left behind that was killed. One that goes on, or has just become its target, stays.
bool removeAbandoned(const char* path)
{
    const int descriptor =
        tbiUntilDone([&] { return open(path, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC); });
    if (descriptor < 0)
        return false;
    const bool removed =
        takeLock(descriptor) == LOCK::TAKEN && standsAt(path, descriptor) && unlink(path) == 0;
    close(descriptor);
    return removed;
}

// Makes and locks a file; -1 with errno set when it cannot be made, EEXIST when another save has the name.
int makeLocked(const char* path, mode_t rights)
{
    const int descriptor = aboveStandardStreams(
        tbiUntilDone([&] { return open(path, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, rights); }));
    if (descriptor < 0)
        return -1;
    if (takeLock(descriptor) != LOCK::HELD_BY_ANOTHER && standsAt(path, descriptor))
        return descriptor;
    close(descriptor); // taken for an abandoned one before it was locked
    errno = EEXIST;
    return -1;
}

std::string savingName(const std::string& target, int number)
{
    return target + ".saving-" + std::to_string(number);
}

// What killed saves left under the next numbers, when several went on at once.
void removeAbandonedBehind(const std::string& target, int number)
{
    while (removeAbandoned(savingName(target, ++number).c_str()))
    {
    }
}

// The first name beside the target that no other save has.
bool makeBeside(tbiReplacement& replacement, mode_t rights)
{
    for (int number = 1; number <= NAME_ATTEMPTS; ++number)
    {
        replacement.path = savingName(replacement.target, number);
        const char* path = replacement.path.c_str();
        bool again = true;
        while (again)
        {
            replacement.descriptor = makeLocked(path, rights);
            if (replacement.descriptor > 0)
            {
                removeAbandonedBehind(replacement.target, number);
                return true;
            }
            if (errno != EEXIST)
                return false;
            again = removeAbandoned(path);
        }
    }
    return false;
}

// Where links lead to at whose end nothing stands.
std::string endOfLinks(std::string path)
{
    std::error_code none;
    for (int links = 0; links < MOST_LINKS; ++links)
    {
        const std::filesystem::path next = std::filesystem::read_symlink(path, none);
        if (none)
            break;
        path = (std::filesystem::path(path).parent_path() / next).string();
    }
    return path;
}

bool beginReplacement(tbiReplacement& replacement, const char* target, tbiNewFileRights newRights)
{
    replacement.target = tbiFinalPlace(target);
    if (replacement.target.empty()) // nothing stands there yet
        replacement.target = endOfLinks(tbiNativePath(target));
    std::optional<mode_t> rights;
    if (!mayBeReplaced(replacement.target, rights))
        return false;
    if (!makeBeside(replacement, rights || newRights == tbiNewFileRights::OWNER ? OWNER_ONLY : USUAL))
        return false;
    // Where the rights cannot be taken over, the file stays its owner's alone.
    if (rights)
        static_cast<void>(fchmod(replacement.descriptor, *rights) == 0);
    return true;
}

} // namespace

int tbiOpenFile(const char* path) noexcept
{
    return openRegular(path, O_RDONLY);
}

int tbiHoldFile(const char* path) noexcept
{
    return tbiOpenFile(path);
}

int tbiOpenFileForUpdate(const char* path) noexcept
{
    return openRegular(path, O_RDWR);
}

void tbiCloseFile(int descriptor) noexcept
{
    if (descriptor > 0)
        close(descriptor);
}

std::int64_t tbiFileLength(int descriptor) noexcept
{
    struct stat status = {};
    return fstat(descriptor, &status) == 0 ? std::int64_t(status.st_size) : -1;
}

bool tbiReadFile(int descriptor, void* bytes, std::size_t size, std::int64_t position) noexcept
{
    char* to = static_cast<char*>(bytes);
    while (size > 0)
    {
        const ssize_t n = tbiUntilDone([&] { return pread(descriptor, to, size, off_t(position)); });
        if (n <= 0)
            return false;
        to += n;
        size -= std::size_t(n);
        position += n;
    }
    return true;
}

bool tbiWriteFile(int descriptor, const void* bytes, std::size_t size, std::int64_t position) noexcept
{
    const char* from = static_cast<const char*>(bytes);
    while (size > 0)
    {
        const ssize_t n = tbiUntilDone([&] { return pwrite(descriptor, from, size, off_t(position)); });
        if (n <= 0)
            return false;
        from += n;
        size -= std::size_t(n);
        position += n;
    }
    return true;
}

bool tbiBeginReplacement(tbiReplacement& replacement, const char* target, tbiNewFileRights rights) noexcept
{
    if (target && *target != 0 &&
        tbiWithoutThrow(false, [&] { return beginReplacement(replacement, target, rights); }))
        return true;
    tbiAbandonReplacement(replacement); // made before memory ran out
    return false;
}

// The file is renamed while it is locked, so that no other save takes it for an abandoned one. What closing could
// report has been reported by the synchronisation.
bool tbiFinishReplacement(tbiReplacement& replacement, std::int64_t length) noexcept
{
    const int descriptor = std::exchange(replacement.descriptor, -1);
    const char* path = replacement.path.c_str();
    const bool done = tbiUntilDone([&] { return ftruncate(descriptor, off_t(length)); }) == 0 &&
                      tbiUntilDone([&] { return fsync(descriptor); }) == 0 &&
                      std::rename(path, replacement.target.c_str()) == 0;
    if (!done)
        unlink(path);
    close(descriptor);
    if (done) // the new file stands there, whether the directory can be made safe now or not
        tbiWithoutThrow([&] { syncDirectory(replacement.target); });
    return done;
}

void tbiAbandonReplacement(tbiReplacement& replacement) noexcept
{
    if (replacement.descriptor < 0)
        return;
    unlink(replacement.path.c_str());
    close(std::exchange(replacement.descriptor, -1));
}
