#include <tests/fault/FileFaults.h>

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#define TB_EXPORTED extern "C" [[gnu::visibility("default")]]

using tbtest::FileFaults;

namespace
{
constinit thread_local long left = -1; // calls that succeed before one fails; below 0 nothing fails
constinit thread_local FileFaults::KIND kind = FileFaults::BROKEN;
constinit thread_local const char* failed = nullptr;

bool isNext(const char* name)
{
    if (left < 0 || left-- > 0)
        return false;
    failed = name;
    return true;
}

// True when the call is to fail, with the reason set.
bool fails(const char* name)
{
    if (!isNext(name))
        return false;
    errno = kind == FileFaults::NO_SPACE ? ENOSPC : kind == FileFaults::BROKEN ? EIO : EINTR;
    const std::string_view call = name;
    const bool canBeInterrupted = call == "open" || call == "fsync" || call == "ftruncate" || call == "flock";
    return kind == FileFaults::NO_SPACE || kind == FileFaults::BROKEN ||
           (kind == FileFaults::INTERRUPTED && canBeInterrupted);
}

template <class Function>
Function* real(Function*, const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// What a transfer of `size` bytes comes to: all of it, a part, or -1.
template <class Transfer>
ssize_t transfer(const char* name, std::size_t size, Transfer call)
{
    if (!isNext(name))
        return call(size);
    if (kind == FileFaults::SHORT)
        return call(size > 1 ? size / 2 : size);
    errno = kind == FileFaults::NO_SPACE ? ENOSPC : kind == FileFaults::BROKEN ? EIO : EINTR;
    return -1;
}
} // namespace

void FileFaults::arm(long n, KIND newKind)
{
    left = n - 1;
    kind = newKind;
    failed = nullptr;
}

const char* FileFaults::disarm()
{
    left = -1;
    return failed;
}

TB_EXPORTED ssize_t pread64(int descriptor, void* bytes, std::size_t size, off64_t position)
{
    return transfer("pread", size,
                    [=](std::size_t n) { return real(&pread64, "pread64")(descriptor, bytes, n, position); });
}

TB_EXPORTED ssize_t pwrite64(int descriptor, const void* bytes, std::size_t size, off64_t position)
{
    return transfer("pwrite", size,
                    [=](std::size_t n)
                    { return real(&pwrite64, "pwrite64")(descriptor, bytes, n, position); });
}

TB_EXPORTED ssize_t read(int descriptor, void* bytes, std::size_t size)
{
    return transfer("read", size, [=](std::size_t n) { return real(&read, "read")(descriptor, bytes, n); });
}

TB_EXPORTED int open64(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return fails("open") ? -1 : real(&open64, "open64")(path, flags, mode);
}

TB_EXPORTED int fsync(int descriptor)
{
    return fails("fsync") ? -1 : real(&fsync, "fsync")(descriptor);
}

TB_EXPORTED int ftruncate64(int descriptor, off64_t length) noexcept
{
    return fails("ftruncate") ? -1 : real(&ftruncate64, "ftruncate64")(descriptor, length);
}

TB_EXPORTED int fchmod(int descriptor, mode_t mode) noexcept
{
    return fails("fchmod") ? -1 : real(&fchmod, "fchmod")(descriptor, mode);
}

TB_EXPORTED int flock(int descriptor, int operation) noexcept
{
    return fails("flock") ? -1 : real(&flock, "flock")(descriptor, operation);
}

TB_EXPORTED int rename(const char* from, const char* to) noexcept
{
    return fails("rename") ? -1 : real(&rename, "rename")(from, to);
}

// The descriptor is gone, whatever is answered.
TB_EXPORTED int close(int descriptor)
{
    const int result = real(&close, "close")(descriptor);
    return fails("close") ? -1 : result;
}
