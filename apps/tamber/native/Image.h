#pragma once

#include "Finding.h"
#include "ImageBytes.h"
#include "ImageLayout.h"
#include "ImageSource.h"

#include <array>
#include <memory>
#include <string_view>
#include <vector>

// A native file as it lies on the disk. Nothing in it is believed: parsing goes as far as it can, what stops it becomes
// a finding, and no memory is taken that the file is not long enough for, except for unpacked data, which has a budget.
namespace native
{

struct Region
{
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
    std::uint64_t end() const { return offset + size; }
};

struct ImageHeader
{
    std::uint32_t version = 0;
    std::uint32_t numEntries = 0; // as the header says; the directory may hold fewer
    std::uint32_t numTags = 0;
    std::array<unsigned char, layout::HEADER_RESERVED_SIZE> reserved{};
    std::array<unsigned char, layout::HEADER_RESERVED_END_SIZE> reservedEnd{};
};

struct ImageTag
{
    std::uint32_t index = 0; // as the record says
    std::array<char, layout::TAG_NAME_SIZE> field{};
    /// The class name: up to the first zero, at most 63 characters.
    std::string_view getName() const;
};

// A directory record. Its words have the file's byte order.
struct ImageEntry
{
    std::uint32_t magic = layout::MAGIC; // in the file's order: reversed when the data has the other order
    std::uint32_t tag = 0;
    std::uint32_t offset = 0;
    std::uint32_t compression = layout::NO_COMPRESSION;
    std::uint32_t size = 0; // of the data when unpacked
    std::uint32_t version = 0;
};

class Image
{
public:
    /// Reads header, tags and directory and no entry.
    Image(std::unique_ptr<ImageSource> bytes, Findings& findings);

    std::uint64_t getLength() const { return length; }
    /// False when the file has no header that makes sense; everything else is empty then.
    bool hasHeader() const { return headerKnown; }
    ByteOrder getOrder() const { return order; }
    const ImageHeader& getHeader() const { return header; }
    const std::vector<ImageTag>& getTags() const { return tags; }
    const std::vector<ImageEntry>& getEntries() const { return entries; }
    int getNumEntries() const { return int(entries.size()); }

    /// Where a tag's and an entry's record lie.
    std::uint64_t getTagOffset(int tag) const;
    std::uint64_t getRecordOffset(int entry) const;
    /// Behind the directory.
    std::uint64_t getTablesEnd() const { return tablesEnd; }
    /// What is reserved behind the directory, as far as file and data leave room for it.
    Region getGap() const { return gap; }

    /// The class name in the entry's tag, empty when the tag does not exist.
    std::string_view getTagName(int entry) const;
    /// The byte order of the entry's data.
    ByteOrder getOrder(int entry) const;
    /// False when the record begins with the magic of neither order.
    bool hasMagic(int entry) const;

    /// Each entry's bytes in the file, which for packed data begin with the packed length. What would leave the file
    /// is cut; an entry that lies nowhere has the size 0. The first call visits the file.
    const std::vector<Region>& getStored();
    const Region& getStored(int entry) { return getStored()[std::size_t(entry)]; }
    /// The entries in the order of their data, which is the order in which reading is cheap.
    std::vector<int> orderByOffset() const;
    bool readRegion(const Region& region, std::vector<unsigned char>& bytes);
    /// The entry's data, unpacked. False, with the reason found, when it cannot be had; a reader of the kernel
    /// refuses exactly those entries.
    bool readData(int entry, std::vector<unsigned char>& data, Findings& findings);
    /// Takes from what all entries together may hold, and may be read for it, what objects need beyond their data.
    /// False when there is not so much left.
    bool spendOnMade(std::uint64_t moreWork, std::uint64_t bytes);
    /// Objects read themselves inside each other, and their stored bytes are there until they end. False when those
    /// are more than there may be at once.
    bool beginReading(int entry);
    void endReading(int entry);
    /// What lies behind the gap and belongs to no entry, in the order of the file.
    std::vector<Region> findLeftovers();

    /// A finding about an entry; `offset` is one in the file.
    Finding makeFinding(Kind kind, int entry, std::uint64_t offset, std::string detail = {}) const;

private:
    bool readHeader(Findings& findings);
    void readTags(Findings& findings);
    void readDirectory(Findings& findings);
    void findGap();
    Region findStored(int entry);
    bool checkRecord(int entry, Findings& findings) const;
    bool spend(int entry, std::uint64_t packedSize, Findings& findings);
    bool readPlain(int entry, std::vector<unsigned char>& data, Findings& findings);
    bool readPacked(int entry, std::vector<unsigned char>& data, Findings& findings);
    bool readPackedLength(int entry, std::uint32_t& packedLength);
    std::uint64_t readBytes(int entry);

    std::unique_ptr<ImageSource> source;
    std::uint64_t length = 0;
    bool headerKnown = false;
    ByteOrder order = OWN_ORDER;
    ImageHeader header;
    std::vector<ImageTag> tags;
    std::vector<ImageEntry> entries;
    std::uint64_t tablesEnd = 0;
    Region gap;
    std::vector<Region> stored; // by entry, once it was asked for
    std::uint64_t budget = 0;   // what all entries together may still unpack to
    std::uint64_t work = 0;     // the same with the bytes that are read for it
    std::uint64_t open = 0;     // bytes of the entries that are being read
    std::vector<bool> spent;    // by entry: stands in the budget
};

} // namespace native
