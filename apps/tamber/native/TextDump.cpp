#include "Packing.h"
#include "Text.h"
#include "TextFile.h"
#include "TextRecord.h"

#include <algorithm>
#include <map>

namespace native
{

using namespace layout;

namespace
{

// Data that is spelt out is longer than what lies in the file, packed data above all: what all entries together may
// unpack to.
constexpr std::uint64_t SPELT_ALLOWED = std::uint64_t{16} << 20;
constexpr std::uint64_t SPELT_FACTOR = 16;

constexpr std::size_t WINDOW = 64 * 1024;
constexpr std::size_t SHORTEST_BREAK = 16; // equal bytes that part two pieces

// Bytes of the file that are spelt out, as pieces that do not overlap.
class Covered
{
public:
    /// False, and nothing added, when some of the piece is covered.
    bool add(const Region& region)
    {
        const auto next = pieces.lower_bound(region.offset);
        if (next != pieces.end() && next->first < region.end())
            return false;
        if (next != pieces.begin() && std::prev(next)->second > region.offset)
            return false;
        pieces.emplace_hint(next, region.offset, region.end());
        return true;
    }
    const std::map<std::uint64_t, std::uint64_t>& get() const { return pieces; }

private:
    std::map<std::uint64_t, std::uint64_t> pieces; // start to end
};

// Calls `say(offset, bytes)` for each piece of `bytes` that differs from `expected`.
template <class Say>
void findDifferences(Bytes bytes, Bytes expected, Say say)
{
    std::size_t start = 0;
    std::size_t end = 0; // of the piece that is open; none where it is not behind the start
    for (std::size_t i = 0; i < bytes.size(); ++i)
    {
        if (bytes[i] == expected[i])
            continue;
        if (end > start && i - end >= SHORTEST_BREAK)
        {
            say(start, bytes.subspan(start, end - start));
            end = start;
        }
        if (end <= start)
            start = i;
        end = i + 1;
    }
    if (end > start)
        say(start, bytes.subspan(start, end - start));
}

class TextDumper
{
public:
    explicit TextDumper(Image& source) : image(source), ignored(0) {}

    std::string dump()
    {
        if (!areTablesWhole())
            return dumpBytes();
        tables.order = image.getOrder();
        tables.version = image.getHeader().version;
        tables.entries = image.getEntries();
        for (const ImageTag& tag : image.getTags())
            tables.tags.emplace_back(tag.getName());
        for (std::size_t i = 0; i < tables.tags.size(); ++i)
            tagPlaces.emplace(tables.tags[i], std::uint32_t(i));
        speltAllowed = std::max(SPELT_ALLOWED, SPELT_FACTOR * image.getLength());

        appendHeader();
        length = cursor = tables.getDataStart(tables.entries.size());
        for (int i = 0; i < image.getNumEntries(); ++i)
            appendEntry(i);
        if (length != image.getLength())
            appendNumber((text += word::LENGTH) += ' ', std::int64_t(image.getLength())), text += '\n';
        appendTableDifferences();
        appendRest();
        return std::move(text);
    }

    /// The bytes of the file and no more.
    std::string dumpBytes()
    {
        text.clear();
        appendTitle();
        text += word::FILE;
        std::vector<unsigned char> bytes;
        read({0, image.getLength()}, bytes);
        appendBytes(text, bytes);
        text += '\n';
        return std::move(text);
    }

private:
    bool areTablesWhole() const
    {
        return image.getTags().size() == image.getHeader().numTags &&
               image.getEntries().size() == image.getHeader().numEntries;
    }

    void read(const Region& region, std::vector<unsigned char>& bytes)
    {
        if (!image.readRegion(region, bytes))
            throw SourceError("cannot be read");
    }

    void appendTitle()
    {
        ((text += word::TITLE) += " text ") += std::to_string(TEXT_VERSION);
        text += '\n';
    }

    void appendHeader()
    {
        appendTitle();
        ((text += word::ORDER) += tables.order == ByteOrder::LITTLE ? " little\n" : " big\n");
        appendHexNumber((text += word::VERSION) += ' ', tables.version, 8);
        text += '\n';
        if (areTagsImplied())
            return;
        for (const std::string& tag : tables.tags)
        {
            appendWord((text += word::TAG) += ' ', tag);
            text += '\n';
        }
    }

    // True when the tags are those of the entries, in the order of their first use.
    bool areTagsImplied() const
    {
        std::uint32_t used = 0;
        for (const ImageEntry& entry : tables.entries)
        {
            if (entry.tag > used || entry.tag >= tables.tags.size())
                return false;
            used += entry.tag == used ? 1 : 0;
        }
        return used == tables.tags.size() && tagPlaces.size() == tables.tags.size();
    }

    void appendEntry(int i)
    {
        const ImageEntry& entry = tables.entries[std::size_t(i)];
        const std::string_view name = image.getTagName(i);
        const Region region = image.getStored(i);
        content.clear();
        contentSize = 0;
        packed = false;
        if (!spellContent(i, name, region))
            content.clear();

        appendNumber((text += word::ENTRY) += ' ', i);
        appendWord(text += ' ', name);
        const auto tag = tagPlaces.find(name);
        if (tag == tagPlaces.end() || tag->second != entry.tag)
            appendSetting(word::TAG, entry.tag);
        if (entry.magic == SWAPPED_MAGIC)
            (text += ' ') += word::SWAPPED;
        else if (entry.magic != MAGIC)
            appendHexSetting("magic", entry.magic);
        if (entry.version != tables.version)
            appendHexSetting("version", entry.version);
        if (packed)
            (text += ' ') += word::PACKED;
        else if (entry.compression != NO_COMPRESSION)
            appendSetting("compression", entry.compression);
        if (entry.offset != cursor)
            appendSetting("offset", entry.offset);
        if (entry.size != contentSize)
            appendSetting("size", entry.size);
        text += '\n';
        text += content;
        if (content.empty())
            return;
        cursor = region.end();
        length = std::max(length, cursor);
    }

    // False when the entry has no bytes in the file, or shares them with another.
    bool spellContent(int i, std::string_view name, const Region& region)
    {
        const ImageEntry& entry = tables.entries[std::size_t(i)];
        std::vector<unsigned char> data;
        if (region.size == 0 || entry.size > speltAllowed || !image.readData(i, data, ignored) ||
            !covered.add(region))
            return false;
        speltAllowed -= entry.size;
        contentSize = entry.size;
        if (entry.compression == RLE)
        {
            std::vector<unsigned char> stored;
            read(region, stored);
            const std::vector<unsigned char> own = pack(data);
            packed = !own.empty() && own.size() + PACKED_LENGTH_SIZE == stored.size() &&
                     std::equal(own.begin(), own.end(), stored.begin() + PACKED_LENGTH_SIZE);
            if (!packed)
            {
                contentSize = std::uint32_t(stored.size());
                spellBytes(stored);
                return true;
            }
        }
        if (!findClass(name) || !spellRecord(i, name, data))
            spellBytes(data);
        return true;
    }

    void spellBytes(Bytes bytes)
    {
        content.assign("  ").append(word::DATA);
        appendBytes(content, bytes);
        content += '\n';
    }

    // False when the record does not read back from its text.
    bool spellRecord(int i, std::string_view name, Bytes data)
    {
        const ByteOrder order = image.getOrder(i);
        const auto numEntries = std::uint32_t(tables.entries.size());
        appendRecord(content, Record(name, data, order), numEntries);
        EntryData built(order);
        TextReader reader(content);
        readRecord(reader, name, EntryLabels(numEntries), built);
        if (built.getBytes().size() != data.size())
            return false;
        // What differs lies between the values.
        findDifferences(data, built.getBytes(),
                        [this](std::size_t offset, Bytes bytes)
                        { appendPiece(content += "  ", word::PATCH, offset, bytes); });
        return true;
    }

    static void appendPiece(std::string& to, std::string_view name, std::uint64_t offset, Bytes bytes)
    {
        appendNumber((to += name) += ' ', std::int64_t(offset));
        appendBytes(to, bytes);
        to += '\n';
    }

    void appendSetting(std::string_view name, std::uint32_t value)
    {
        appendNumber(((text += ' ') += name) += '=', value);
    }

    void appendHexSetting(std::string_view name, std::uint32_t value)
    {
        appendHexNumber(((text += ' ') += name) += '=', value, 8);
    }

    void appendTableDifferences()
    {
        const std::vector<unsigned char> expected = tables.getBytes();
        std::vector<unsigned char> bytes;
        read({0, expected.size()}, bytes);
        findDifferences(bytes, expected,
                        [this](std::size_t offset, Bytes piece)
                        { appendPiece(text, word::RAW, offset, piece); });
    }

    // What lies behind the tables and in no entry that is spelt out, where it is not zero.
    void appendRest()
    {
        std::uint64_t start = image.getTablesEnd();
        for (const auto& [from, end] : covered.get())
        {
            appendRest(start, from);
            start = std::max(start, end);
        }
        appendRest(start, image.getLength());
    }

    void appendRest(std::uint64_t start, std::uint64_t end)
    {
        const std::vector<unsigned char> zeros(WINDOW);
        std::vector<unsigned char> bytes;
        for (; start < end; start += bytes.size())
        {
            read({start, std::min(end - start, std::uint64_t(WINDOW))}, bytes);
            findDifferences(bytes, zeros,
                            [&](std::size_t offset, Bytes piece)
                            { appendPiece(text, word::RAW, start + offset, piece); });
        }
    }

    Image& image;
    Findings ignored;
    FileTables tables;
    std::map<std::string, std::uint32_t, std::less<>> tagPlaces; // the first of a name
    Covered covered;
    std::uint64_t speltAllowed = 0;
    std::uint64_t cursor = 0; // where the next entry's data lies when nothing is said
    std::uint64_t length = 0; // of the file when nothing is said
    std::string text;

    // Of the entry that is being spelt.
    std::string content;
    std::uint32_t contentSize = 0;
    bool packed = false;
};

bool readsBack(Image& image, const std::string& text)
{
    std::vector<unsigned char> built;
    try
    {
        built = buildText(text);
    }
    catch (const TextError&)
    {
        return false;
    }
    if (built.size() != image.getLength())
        return false;
    std::vector<unsigned char> bytes;
    for (std::uint64_t start = 0; start < built.size(); start += bytes.size())
    {
        if (!image.readRegion({start, std::min(built.size() - start, std::uint64_t(WINDOW))}, bytes))
            throw SourceError("cannot be read");
        if (!std::equal(bytes.begin(), bytes.end(), built.begin() + std::ptrdiff_t(start)))
            return false;
    }
    return true;
}

} // namespace

std::string dumpText(Image& image)
{
    std::string text = TextDumper(image).dump();
    if (!readsBack(image, text))
        text = TextDumper(image).dumpBytes();
    return text;
}

} // namespace native
