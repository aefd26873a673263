#include <tamber/platform/tbiPath.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

void tbiToNativePath(char* path) noexcept
{
    for (; *path != 0; ++path)
        if (*path == '\\')
            *path = '/';
}

bool tbiIsReadableFile(const char* path) noexcept
{
    const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    struct stat status = {};
    const bool regular = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    close(descriptor);
    return regular;
}
