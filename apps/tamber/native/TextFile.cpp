#include "TextFile.h"

#include <algorithm>

namespace native
{

using namespace layout;

std::uint64_t FileTables::getDataStart(std::uint64_t numEntries) const
{
    return HEADER_SIZE + std::uint64_t(TAG_SIZE) * tags.size() +
           std::uint64_t(RECORD_SIZE + RECORD_GAP) * numEntries;
}

std::vector<unsigned char> FileTables::getBytes() const
{
    std::vector<unsigned char> bytes(HEADER_SIZE + TAG_SIZE * tags.size() + RECORD_SIZE * entries.size());
    unsigned char* to = bytes.data();
    const auto put = [this](unsigned char* place, std::uint32_t value) { storeWord(place, value, order); };
    put(to, MAGIC);
    put(to + HEADER_VERSION, version);
    put(to + HEADER_ENTRIES, std::uint32_t(entries.size()));
    put(to + HEADER_TAGS, std::uint32_t(tags.size()));
    to += HEADER_SIZE;
    for (std::size_t i = 0; i < tags.size(); ++i, to += TAG_SIZE)
    {
        put(to, std::uint32_t(i));
        std::copy_n(tags[i].begin(), std::min(tags[i].size(), std::size_t(TAG_NAME_SIZE)), to + TAG_NAME);
    }
    for (const ImageEntry& entry : entries)
    {
        put(to, entry.magic);
        put(to + RECORD_TAG, entry.tag);
        put(to + RECORD_OFFSET, entry.offset);
        put(to + RECORD_COMPRESSION, entry.compression);
        put(to + RECORD_DATA_SIZE, entry.size);
        put(to + RECORD_VERSION, entry.version);
        to += RECORD_SIZE;
    }
    return bytes;
}

} // namespace native
