#include <tamber/io/tbiFileWindow.h>

#include <tamber/kernel/tbMemory.h>
#include <tamber/platform/tbiFile.h>

#include <algorithm>
#include <cstring>

namespace
{

constexpr std::size_t WINDOW_SIZE = 64 * 1024;

} // namespace

void tbiFileWindow::attach(int fileDescriptor, std::int64_t fileLength)
{
    descriptor = fileDescriptor;
    length = fileLength;
    held = 0;
}

void tbiFileWindow::detach()
{
    attach(-1, 0);
    tbMemory::free(buffer);
    buffer = nullptr;
}

bool tbiFileWindow::read(void* bytes, std::size_t size, std::int64_t position)
{
    if (position < 0 || position > length || std::int64_t(size) > length - position)
        return false;
    const bool inside = position >= start && position - start + std::int64_t(size) <= std::int64_t(held);
    if (!inside && (size >= WINDOW_SIZE || !fill(position)))
        return tbiReadFile(descriptor, bytes, size, position);
    std::memcpy(bytes, buffer + (position - start), size);
    return true;
}

// The file may have shrunk since its length was taken; the caller then reads just what it wants.
bool tbiFileWindow::fill(std::int64_t position)
{
    if (!buffer)
        buffer = static_cast<unsigned char*>(tbMemory::malloc(WINDOW_SIZE));
    if (!buffer)
        return false;
    const std::size_t size = std::size_t(std::min<std::int64_t>(length - position, WINDOW_SIZE));
    held = tbiReadFile(descriptor, buffer, size, position) ? size : 0;
    start = position;
    return held > 0;
}
