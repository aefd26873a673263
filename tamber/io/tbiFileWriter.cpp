#include <tamber/io/tbiFileWriter.h>

#include <tamber/kernel/tbMemory.h>

#include <cstring>

namespace
{

constexpr std::size_t BUFFER_SIZE = 256 * 1024;

} // namespace

bool tbiFileWriter::begin(const char* target)
{
    abandon();
    position = 0;
    held = 0;
    good = tbiBeginReplacement(replacement, target);
    return good;
}

bool tbiFileWriter::write(const void* bytes, std::size_t size)
{
    if (size == 0)
        return good;
    if (!buffer)
        buffer = static_cast<unsigned char*>(tbMemory::malloc(BUFFER_SIZE));
    if (!buffer)
        good = false;
    if (held + size > BUFFER_SIZE)
        flush();
    if (!good)
        return false;
    if (size > BUFFER_SIZE)
    {
        good = tbiWriteFile(replacement.descriptor, bytes, size, position);
        position += std::int64_t(size);
        return good;
    }
    std::memcpy(buffer + held, bytes, size);
    held += size;
    return true;
}

bool tbiFileWriter::seek(std::int64_t newPosition)
{
    flush();
    position = newPosition;
    return good;
}

bool tbiFileWriter::flush()
{
    if (good && held > 0)
        good = tbiWriteFile(replacement.descriptor, buffer, held, position);
    position += std::int64_t(held);
    held = 0;
    return good;
}

bool tbiFileWriter::finish(std::int64_t length)
{
    flush();
    freeBuffer();
    if (good)
        return tbiFinishReplacement(replacement, length);
    abandon();
    return false;
}

void tbiFileWriter::abandon()
{
    freeBuffer();
    tbiAbandonReplacement(replacement);
}

void tbiFileWriter::freeBuffer()
{
    tbMemory::free(buffer);
    buffer = nullptr;
    held = 0;
}
