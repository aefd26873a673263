#include "NativeFile.h"

#include <apps/tamber/native/ImageBytes.h>
#include <apps/tamber/native/ImageLayout.h>

#include <filesystem>

using namespace native;

bool isForeignFile(const std::string& path)
{
    if (std::filesystem::path(path).extension() == ".tb")
        return false;
    try
    {
        unsigned char magic[4];
        return !openFileSource(path)->read(0, magic, sizeof magic) ||
               (loadWord<std::uint32_t>(magic, ByteOrder::LITTLE) != layout::MAGIC &&
                loadWord<std::uint32_t>(magic, ByteOrder::BIG) != layout::MAGIC);
    }
    catch (const SourceError&)
    {
        return false;
    }
}
