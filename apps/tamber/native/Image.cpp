#include "Image.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace native
{

using namespace layout;

namespace
{

// No file whose entries share no bytes unpacks to more.
constexpr std::uint64_t SPARE_BUDGET = std::uint64_t{24} << 20;
// No file whose entries share no bytes reads more inside each other.
constexpr std::uint64_t SPARE_OPEN = std::uint64_t{1} << 20;
// What is read for that comes on top of it.
constexpr std::uint64_t SMALLEST_WORK = std::uint64_t{256} << 20;
constexpr std::uint64_t WORK_FACTOR = 160;

std::uint32_t word(const unsigned char* bytes, ByteOrder order)
{
    return loadWord<std::uint32_t>(bytes, order);
}

} // namespace

std::string_view ImageTag::getName() const
{
    const auto end = std::find(field.begin(), field.end() - 1, '\0');
    return {field.data(), std::size_t(end - field.begin())};
}

Image::Image(std::unique_ptr<ImageSource> bytes, Findings& findings)
    : source(std::move(bytes)),
      length(source->getLength()),
      budget(SPARE_BUDGET + BEST_PACKING * length),
      work(std::max(SMALLEST_WORK, WORK_FACTOR * length))
{
    if (!readHeader(findings))
        return;
    headerKnown = true;
    readTags(findings);
    readDirectory(findings);
    findGap();
}

// Tables

bool Image::readHeader(Findings& findings)
{
    if (length == 0)
    {
        findings.add({Kind::FILE_EMPTY, NO_ENTRY, {}, 0, {}});
        return false;
    }
    unsigned char bytes[HEADER_SIZE];
    if (length < HEADER_SIZE)
    {
        findings.add({Kind::HEADER_SHORT, NO_ENTRY, {}, length, std::to_string(length) + " bytes"});
        return false;
    }
    if (!source->read(0, bytes, HEADER_SIZE))
    {
        findings.add({Kind::READ_FAILED, NO_ENTRY, {}, 0, "the header"});
        return false;
    }
    if (word(bytes, ByteOrder::LITTLE) != MAGIC && word(bytes, ByteOrder::BIG) != MAGIC)
    {
        findings.add({Kind::MAGIC_UNKNOWN, NO_ENTRY, {}, 0, {}});
        return false;
    }
    order = word(bytes, ByteOrder::LITTLE) == MAGIC ? ByteOrder::LITTLE : ByteOrder::BIG;
    header.version = word(bytes + HEADER_VERSION, order);
    header.numEntries = word(bytes + HEADER_ENTRIES, order);
    header.numTags = word(bytes + HEADER_TAGS, order);
    std::copy_n(bytes + HEADER_RESERVED, HEADER_RESERVED_SIZE, header.reserved.begin());
    std::copy_n(bytes + HEADER_RESERVED_END, HEADER_RESERVED_END_SIZE, header.reservedEnd.begin());
    return true;
}

void Image::readTags(Findings& findings)
{
    const std::uint64_t room = (length - HEADER_SIZE) / TAG_SIZE;
    const auto number =
        std::size_t(std::min({std::uint64_t(header.numTags), room, std::uint64_t(LARGEST_COUNT)}));
    tablesEnd = HEADER_SIZE + std::uint64_t(header.numTags) * TAG_SIZE;
    tags.resize(number);
    for (std::size_t i = 0; i < number; ++i)
    {
        unsigned char bytes[TAG_SIZE];
        const std::uint64_t offset = getTagOffset(int(i));
        if (!source->read(offset, bytes, TAG_SIZE))
        {
            findings.add({Kind::READ_FAILED, NO_ENTRY, {}, offset, "a tag"});
            tags.resize(i);
            return;
        }
        tags[i].index = word(bytes, order);
        std::memcpy(tags[i].field.data(), bytes + TAG_NAME, TAG_NAME_SIZE);
    }
}

void Image::readDirectory(Findings& findings)
{
    const std::uint64_t start = tablesEnd;
    const std::uint64_t room = start < length ? (length - start) / RECORD_SIZE : 0;
    const auto number =
        std::size_t(std::min({std::uint64_t(header.numEntries), room, std::uint64_t(LARGEST_COUNT)}));
    tablesEnd += std::uint64_t(header.numEntries) * RECORD_SIZE;
    if (tablesEnd > length)
        findings.add({Kind::TABLES_BEYOND_FILE,
                      NO_ENTRY,
                      {},
                      HEADER_ENTRIES,
                      "they would end at byte " + std::to_string(tablesEnd)});
    entries.resize(number);
    for (std::size_t i = 0; i < number; ++i)
    {
        unsigned char bytes[RECORD_SIZE];
        const std::uint64_t offset = start + i * RECORD_SIZE;
        if (!source->read(offset, bytes, RECORD_SIZE))
        {
            findings.add({Kind::READ_FAILED, NO_ENTRY, {}, offset, "a directory record"});
            entries.resize(i);
            break;
        }
        ImageEntry& entry = entries[i];
        entry.magic = word(bytes, order);
        entry.tag = word(bytes + RECORD_TAG, order);
        entry.offset = word(bytes + RECORD_OFFSET, order);
        entry.compression = word(bytes + RECORD_COMPRESSION, order);
        entry.size = word(bytes + RECORD_DATA_SIZE, order);
        entry.version = word(bytes + RECORD_VERSION, order);
    }
    spent.resize(entries.size());
}

void Image::findGap()
{
    const std::uint64_t start = std::min(tablesEnd, length);
    std::uint64_t end = std::min(start + std::uint64_t(RECORD_GAP) * header.numEntries, length);
    for (const ImageEntry& entry : entries)
        if (entry.size > 0 && entry.offset >= start && entry.offset < end)
            end = entry.offset;
    gap = {start, end - start};
}

std::uint64_t Image::getTagOffset(int tag) const
{
    return HEADER_SIZE + std::uint64_t(tag) * TAG_SIZE;
}

std::uint64_t Image::getRecordOffset(int entry) const
{
    return HEADER_SIZE + std::uint64_t(header.numTags) * TAG_SIZE + std::uint64_t(entry) * RECORD_SIZE;
}

// Entries

std::string_view Image::getTagName(int entry) const
{
    const std::uint32_t tag = entries[std::size_t(entry)].tag;
    return tag < tags.size() ? tags[tag].getName() : std::string_view();
}

ByteOrder Image::getOrder(int entry) const
{
    return entries[std::size_t(entry)].magic == MAGIC || !hasMagic(entry) ? order : otherOrder(order);
}

bool Image::hasMagic(int entry) const
{
    unsigned char bytes[4];
    storeWord(bytes, entries[std::size_t(entry)].magic, order);
    return word(bytes, ByteOrder::LITTLE) == MAGIC || word(bytes, ByteOrder::BIG) == MAGIC;
}

Finding Image::makeFinding(Kind kind, int entry, std::uint64_t offset, std::string detail) const
{
    return {kind, entry, printable(getTagName(entry)), offset, std::move(detail)};
}

bool Image::readPackedLength(int entry, std::uint32_t& packedLength)
{
    unsigned char bytes[PACKED_LENGTH_SIZE];
    if (!source->read(entries[std::size_t(entry)].offset, bytes, sizeof bytes))
        return false;
    packedLength = word(bytes, getOrder(entry));
    return true;
}

std::vector<int> Image::orderByOffset() const
{
    std::vector<int> sequence(entries.size());
    std::iota(sequence.begin(), sequence.end(), 0);
    const auto isBefore = [this](int a, int b)
    { return entries[std::size_t(a)].offset < entries[std::size_t(b)].offset; };
    if (!std::is_sorted(sequence.begin(), sequence.end(), isBefore))
        std::stable_sort(sequence.begin(), sequence.end(), isBefore);
    return sequence;
}

const std::vector<Region>& Image::getStored()
{
    if (stored.empty())
    {
        stored.resize(entries.size());
        for (const int entry : orderByOffset())
            stored[std::size_t(entry)] = findStored(entry);
    }
    return stored;
}

Region Image::findStored(int entry)
{
    const ImageEntry& record = entries[std::size_t(entry)];
    if (record.size == 0 || record.offset < std::min(tablesEnd, length) || record.offset >= length)
        return {record.offset, 0};
    std::uint64_t size = record.size;
    std::uint32_t packedLength = 0;
    if (record.compression == RLE)
        size = readPackedLength(entry, packedLength) ? std::uint64_t(packedLength) + PACKED_LENGTH_SIZE
                                                     : length - record.offset;
    return {record.offset, std::min(size, length - record.offset)};
}

bool Image::readRegion(const Region& region, std::vector<unsigned char>& bytes)
{
    if (region.offset > length || region.size > length - region.offset)
        return false;
    bytes.resize(std::size_t(region.size));
    return source->read(region.offset, bytes.data(), bytes.size());
}

// Entries may share bytes of the file, so what they hold together is limited, not only each of them.
bool Image::spend(int entry, std::uint64_t packedSize, Findings& findings)
{
    if (spent[std::size_t(entry)])
        return true;
    const std::uint64_t size = entries[std::size_t(entry)].size;
    if (size > budget || size + packedSize > work)
    {
        findings.add(makeFinding(Kind::BUDGET, entry, getRecordOffset(entry) + RECORD_DATA_SIZE));
        return false;
    }
    budget -= size;
    work -= size + packedSize;
    spent[std::size_t(entry)] = true;
    return true;
}

bool Image::spendOnMade(std::uint64_t moreWork, std::uint64_t bytes)
{
    if (bytes > budget || moreWork > work)
        return false;
    budget -= bytes;
    work -= moreWork;
    return true;
}

bool Image::beginReading(int entry)
{
    open += readBytes(entry);
    return open <= SPARE_OPEN + length;
}

void Image::endReading(int entry)
{
    open -= readBytes(entry);
}

std::uint64_t Image::readBytes(int entry)
{
    const bool packed = entries[std::size_t(entry)].compression == RLE;
    return getStored(entry).size - (packed ? PACKED_LENGTH_SIZE : 0);
}

// Every word that is wrong, not only the first.
bool Image::checkRecord(int entry, Findings& findings) const
{
    const ImageEntry& record = entries[std::size_t(entry)];
    const std::uint64_t place = getRecordOffset(entry);
    bool good = true;
    const auto refuse = [&](Kind kind, unsigned field, std::string detail = {})
    {
        findings.add(makeFinding(kind, entry, place + field, std::move(detail)));
        good = false;
    };
    if (!hasMagic(entry))
        refuse(Kind::ENTRY_MAGIC, 0);
    if (record.compression != NO_COMPRESSION && record.compression != RLE)
        refuse(Kind::COMPRESSION_UNKNOWN, RECORD_COMPRESSION, std::to_string(record.compression));
    if (record.size == 0)
        refuse(Kind::NO_DATA, RECORD_DATA_SIZE);
    else if (record.size > LARGEST_ENTRY)
        refuse(Kind::SIZE_TOO_LARGE, RECORD_DATA_SIZE, std::to_string(record.size) + " bytes");
    if (record.offset == 0)
        refuse(Kind::OFFSET_ZERO, RECORD_OFFSET);
    else if (record.offset < tablesEnd)
        refuse(Kind::OFFSET_IN_TABLES, RECORD_OFFSET, "offset " + std::to_string(record.offset));
    return good;
}

bool Image::readData(int entry, std::vector<unsigned char>& data, Findings& findings)
{
    data.clear();
    if (!checkRecord(entry, findings))
        return false;
    return entries[std::size_t(entry)].compression == RLE ? readPacked(entry, data, findings)
                                                          : readPlain(entry, data, findings);
}

bool Image::readPlain(int entry, std::vector<unsigned char>& data, Findings& findings)
{
    const ImageEntry& record = entries[std::size_t(entry)];
    const Region region{record.offset, record.size};
    if (region.end() > length)
    {
        findings.add(makeFinding(Kind::DATA_BEYOND_FILE, entry, getRecordOffset(entry) + RECORD_OFFSET,
                                 "it would end at byte " + std::to_string(region.end())));
        return false;
    }
    if (!spend(entry, 0, findings))
        return false;
    if (readRegion(region, data))
        return true;
    findings.add(makeFinding(Kind::READ_FAILED, entry, region.offset));
    return false;
}

bool Image::readPacked(int entry, std::vector<unsigned char>& data, Findings& findings)
{
    const ImageEntry& record = entries[std::size_t(entry)];
    const auto refuse = [&](Kind kind, std::uint64_t offset, std::string detail = {})
    {
        findings.add(makeFinding(kind, entry, offset, std::move(detail)));
        data.clear();
        return false;
    };
    std::uint32_t packedLength = 0;
    if (std::uint64_t(record.offset) + PACKED_LENGTH_SIZE > length)
        return refuse(Kind::DATA_BEYOND_FILE, getRecordOffset(entry) + RECORD_OFFSET);
    if (!readPackedLength(entry, packedLength))
        return refuse(Kind::READ_FAILED, record.offset);
    const Region packedRegion{std::uint64_t(record.offset) + PACKED_LENGTH_SIZE, packedLength};
    if (packedLength == 0 || packedRegion.end() > length)
        return refuse(Kind::PACKED_LENGTH, record.offset, std::to_string(packedLength) + " bytes");
    if (record.size > BEST_PACKING * packedLength)
        return refuse(Kind::PACKED_RATIO, record.offset,
                      std::to_string(packedLength) + " bytes for " + std::to_string(record.size));
    if (!spend(entry, packedLength, findings))
        return false;
    std::vector<unsigned char> packed;
    if (!readRegion(packedRegion, packed))
        return refuse(Kind::READ_FAILED, packedRegion.offset);

    data.resize(record.size);
    std::size_t filled = 0;
    std::size_t i = 0;
    for (; i < packed.size() && packed[i] != 0; i += 2)
    {
        if (i + 1 == packed.size())
            return refuse(Kind::PACKED_NO_END, packedRegion.offset + i, "a pair without its value");
        if (packed[i] > data.size() - filled)
            return refuse(Kind::PACKED_OVERFLOW, packedRegion.offset + i);
        std::memset(data.data() + filled, packed[i + 1], packed[i]);
        filled += packed[i];
    }
    if (i >= packed.size())
        return refuse(Kind::PACKED_NO_END, packedRegion.end());
    if (filled < data.size())
        findings.add(makeFinding(Kind::PACKED_SHORT, entry, packedRegion.offset + i,
                                 std::to_string(filled) + " of " + std::to_string(data.size()) + " bytes"));
    if (i + 1 < packed.size())
        findings.add(makeFinding(Kind::PACKED_TRAILING, entry, packedRegion.offset + i + 1));
    if (packed.size() >= data.size())
        findings.add(makeFinding(Kind::PACKED_NEEDLESS, entry, record.offset));
    return true;
}

std::vector<Region> Image::findLeftovers()
{
    const std::vector<Region>& regions = getStored();
    std::vector<Region> leftovers;
    std::uint64_t covered = gap.end();
    const auto coverTo = [&](const Region& region)
    {
        if (region.offset > covered)
            leftovers.push_back({covered, region.offset - covered});
        covered = std::max(covered, region.end());
    };
    for (const int entry : orderByOffset())
        if (regions[std::size_t(entry)].size > 0)
            coverTo(regions[std::size_t(entry)]);
    coverTo({length, 0});
    return leftovers;
}

} // namespace native
