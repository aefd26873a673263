#include <fuzz/support/NativeFile.h>

#include <tamber/io/tbiFileLayout.h>

#include <algorithm>

namespace tbfuzz
{
using namespace tbiFileLayout;

namespace
{
NativeFile::Entry takeEntry(std::span<const std::uint8_t> bytes, const std::uint8_t* record, bool swapped)
{
    NativeFile::Entry entry;
    entry.magic = load<std::uint32_t>(record + RECORD_MAGIC, false);
    entry.tag = load<std::uint32_t>(record + RECORD_TAG, swapped);
    entry.compression = load<std::uint32_t>(record + RECORD_COMPRESSION, swapped);
    entry.size = load<std::uint32_t>(record + RECORD_DATA_SIZE, swapped);
    entry.version = load<std::uint32_t>(record + RECORD_VERSION, swapped);
    const std::size_t offset = load<std::uint32_t>(record + RECORD_OFFSET, swapped);
    if (offset >= bytes.size())
        return entry;
    const std::span<const std::uint8_t> rest = bytes.subspan(offset);
    std::size_t length = entry.size;
    if (entry.compression == NativeFile::RLE && rest.size() >= 4)
        length = 4 + std::size_t(load<std::uint32_t>(rest.data(), entry.magic == MAGIC_SWAPPED));
    const auto data = rest.first(std::min(length, rest.size()));
    entry.data.assign(data.begin(), data.end());
    return entry;
}
} // namespace

std::optional<NativeFile> NativeFile::take(std::span<const std::uint8_t> bytes)
{
    if (bytes.size() < HEADER_SIZE)
        return std::nullopt;
    NativeFile file;
    const auto magic = load<std::uint32_t>(bytes.data(), false);
    file.swapped = magic == MAGIC_SWAPPED;
    if (magic != MAGIC && !file.swapped)
        return std::nullopt;
    file.version = load<std::uint32_t>(bytes.data() + HEADER_VERSION, file.swapped);
    const std::uint64_t numEntries = load<std::uint32_t>(bytes.data() + HEADER_ENTRIES, file.swapped);
    const std::uint64_t numTags = load<std::uint32_t>(bytes.data() + HEADER_TAGS, file.swapped);
    if (HEADER_SIZE + TAG_SIZE * numTags + RECORD_SIZE * numEntries > bytes.size())
        return std::nullopt;
    const std::uint8_t* record = bytes.data() + HEADER_SIZE;
    for (std::uint64_t i = 0; i < numTags; ++i, record += TAG_SIZE)
    {
        const char* name = reinterpret_cast<const char*>(record + TAG_NAME);
        file.tags.emplace_back(name, TAG_NAME_SIZE);
    }
    for (std::uint64_t i = 0; i < numEntries; ++i, record += RECORD_SIZE)
        file.entries.push_back(takeEntry(bytes, record, file.swapped));
    return file;
}

std::vector<std::uint8_t> NativeFile::put() const
{
    std::size_t place = HEADER_SIZE + TAG_SIZE * tags.size() + RECORD_SPACE * entries.size();
    std::vector<std::uint8_t> bytes(place);
    store(bytes.data() + HEADER_MAGIC, MAGIC, swapped);
    store(bytes.data() + HEADER_VERSION, version, swapped);
    store(bytes.data() + HEADER_ENTRIES, std::uint32_t(entries.size()), swapped);
    store(bytes.data() + HEADER_TAGS, std::uint32_t(tags.size()), swapped);
    std::uint8_t* record = bytes.data() + HEADER_SIZE;
    for (std::size_t i = 0; i < tags.size(); ++i, record += TAG_SIZE)
    {
        store(record + TAG_INDEX, std::uint32_t(i), swapped);
        std::copy_n(tags[i].begin(), std::min(tags[i].size(), std::size_t(TAG_NAME_SIZE)), record + TAG_NAME);
    }
    for (const Entry& entry : entries)
    {
        store(record + RECORD_MAGIC, entry.magic);
        store(record + RECORD_TAG, entry.tag, swapped);
        store(record + RECORD_OFFSET, std::uint32_t(place), swapped);
        store(record + RECORD_COMPRESSION, entry.compression, swapped);
        store(record + RECORD_DATA_SIZE, entry.size, swapped);
        store(record + RECORD_VERSION, entry.version, swapped);
        record += RECORD_SIZE;
        place += entry.data.size();
    }
    for (const Entry& entry : entries)
        bytes.insert(bytes.end(), entry.data.begin(), entry.data.end());
    return bytes;
}

void NativeFile::add(const std::string& tag, Entry entry)
{
    const auto known =
        std::find_if(tags.begin(), tags.end(), [&](const std::string& name) { return tag == name.c_str(); });
    entry.tag = std::uint32_t(known - tags.begin());
    if (known == tags.end())
        tags.push_back(tag);
    entries.push_back(std::move(entry));
}
} // namespace tbfuzz
