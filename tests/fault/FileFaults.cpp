#include <tests/fault/FileFaults.h>

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <initializer_list>
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

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names)
{
    for (const std::string_view each : names)
        if (name == each)
            return true;
    return false;
}

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
    return kind == FileFaults::NO_SPACE || kind == FileFaults::BROKEN ||
           (kind == FileFaults::INTERRUPTED && isOneOf(name, {"open", "fsync", "ftruncate", "flock"}));
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
    static auto* const call = real(&pread64, "pread64");
    return transfer("pread", size, [=](std::size_t n) { return call(descriptor, bytes, n, position); });
}

TB_EXPORTED ssize_t pwrite64(int descriptor, const void* bytes, std::size_t size, off64_t position)
{
    static auto* const call = real(&pwrite64, "pwrite64");
    return transfer("pwrite", size, [=](std::size_t n) { return call(descriptor, bytes, n, position); });
}

TB_EXPORTED ssize_t read(int descriptor, void* bytes, std::size_t size)
{
    static auto* const call = real(&read, "read");
    return transfer("read", size, [=](std::size_t n) { return call(descriptor, bytes, n); });
}

TB_EXPORTED int open64(const char* path, int flags, ...)
{
    static auto* const call = real(&open64, "open64");
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return fails("open") ? -1 : call(path, flags, mode);
}

TB_EXPORTED int fsync(int descriptor)
{
    static auto* const call = real(&fsync, "fsync");
    return fails("fsync") ? -1 : call(descriptor);
}

TB_EXPORTED int ftruncate64(int descriptor, off64_t length) noexcept
{
    static auto* const call = real(&ftruncate64, "ftruncate64");
    return fails("ftruncate") ? -1 : call(descriptor, length);
}

TB_EXPORTED int fchmod(int descriptor, mode_t mode) noexcept
{
    static auto* const call = real(&fchmod, "fchmod");
    return fails("fchmod") ? -1 : call(descriptor, mode);
}

TB_EXPORTED int flock(int descriptor, int operation) noexcept
{
    static auto* const call = real(&flock, "flock");
    return fails("flock") ? -1 : call(descriptor, operation);
}

TB_EXPORTED int rename(const char* from, const char* to) noexcept
{
    static auto* const call = real(&rename, "rename");
    return fails("rename") ? -1 : call(from, to);
}

// The descriptor is gone, whatever is answered.
TB_EXPORTED int close(int descriptor)
{
    static auto* const call = real(&close, "close");
    const int result = call(descriptor);
    return fails("close") ? -1 : result;
}
