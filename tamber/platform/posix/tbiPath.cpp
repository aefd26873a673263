#include <tamber/platform/tbiPath.h>

#include <tamber/platform/tbiFile.h>

void tbiToNativePath(char* path) noexcept
{
    for (; *path != 0; ++path)
        if (*path == '\\')
            *path = '/';
}

bool tbiIsReadableFile(const char* path) noexcept
{
    const int descriptor = tbiOpenFile(path);
    tbiCloseFile(descriptor);
    return descriptor > 0;
}
