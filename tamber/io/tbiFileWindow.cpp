#include <tamber/io/tbiFileWindow.h>

#include <tamber/kernel/tbMemory.h>
#include <tamber/platform/tbiFile.h>

#include <algorithm>
#include <cstring>

namespace
{

constexpr std::size_t LARGEST = 256 * 1024;
constexpr std::size_t SMALLEST = 16 * 1024;

// A jump takes as long as reading so many bytes, or so.
constexpr std::int64_t JUMP_BYTES = 16 * 1024;
constexpr std::int64_t LONGEST_HELD = std::int64_t{256} << 20;

} // namespace

void tbiFileWindow::attach(int fileDescriptor, std::int64_t fileLength)
{
    descriptor = fileDescriptor;
    length = fileLength;
    held = 0;
    start = next = jumps = 0;
    ahead = SMALLEST;
}

void tbiFileWindow::detach()
{
    attach(-1, 0);
    tbMemory::free(buffer);
    buffer = nullptr;
    capacity = 0;
}

bool tbiFileWindow::read(void* bytes, std::size_t size, std::int64_t position)
{
    if (position < 0 || position > length || std::int64_t(size) > length - position)
        return false;
    const bool goesOn = position == next;
    next = position + std::int64_t(size);
    auto* to = static_cast<unsigned char*>(bytes);
    if (position >= start && position < start + std::int64_t(held))
    {
        const std::size_t part = std::min(size, held - std::size_t(position - start));
        std::memcpy(to, buffer + (position - start), part);
        to += part;
        position += std::int64_t(part);
        size -= part;
    }
    if (size == 0)
        return true;
    if (!goesOn && size < LARGEST && holdAll())
    {
        std::memcpy(to, buffer + position, size);
        return true;
    }
    if (!goesOn || size >= LARGEST || !fill(size, position))
    {
        ahead = SMALLEST;
        return tbiReadFile(descriptor, to, size, position);
    }
    std::memcpy(to, buffer, size);
    return true;
}

bool tbiFileWindow::reserve(std::size_t size)
{
    if (capacity >= size)
        return true;
    held = 0;
    tbMemory::free(buffer);
    buffer = static_cast<unsigned char*>(tbMemory::malloc(size));
    capacity = buffer ? size : 0;
    return buffer != nullptr;
}

// Tried once, when there have been enough jumps.
bool tbiFileWindow::holdAll()
{
    if (++jumps != length / JUMP_BYTES + 1 || length > LONGEST_HELD || !reserve(std::size_t(length)))
        return false;
    start = 0;
    held = tbiReadFile(descriptor, buffer, std::size_t(length), 0) ? std::size_t(length) : 0;
    return held > 0;
}

// Reads on from `position`, more each time. The file may have shrunk since its length was taken; the caller then reads
// just what it wants.
bool tbiFileWindow::fill(std::size_t wanted, std::int64_t position)
{
    if (!reserve(LARGEST))
        return false;
    const std::size_t size =
        std::size_t(std::min<std::int64_t>(length - position, std::int64_t(std::max(wanted, ahead))));
    ahead = std::min(ahead * 4, LARGEST);
    held = tbiReadFile(descriptor, buffer, size, position) ? size : 0;
    start = position;
    return held > 0;
}
