#include "Packing.h"
#include "Text.h"
#include "TextFile.h"
#include "TextRecord.h"

#include <algorithm>
#include <limits>
#include <map>

namespace native
{

using namespace layout;

namespace
{

constexpr std::uint32_t ANY_WORD = std::numeric_limits<std::uint32_t>::max();

// A text may say that a file is longer than what the text holds, by offsets and by its length.
constexpr std::uint64_t LENGTH_ALLOWED = std::uint64_t{256} << 20;
constexpr std::uint64_t LENGTH_FACTOR = 160;

// A word such as "offset=12".
bool isSetting(const TextToken& token, std::string_view name)
{
    return !token.quoted && token.text.size() > name.size() && token.text[name.size()] == '=' &&
           token.text.substr(0, name.size()) == name;
}

class TextBuilder
{
public:
    explicit TextBuilder(std::string_view characters)
        : reader(characters),
          longest(std::min(LONGEST_FILE, std::max(LENGTH_ALLOWED, LENGTH_FACTOR * characters.size())))
    {
    }

    std::vector<unsigned char> build()
    {
        readTitle();
        if (!reader.atEnd() && reader.peek().is(word::FILE))
        {
            reader.take();
            readBytes(reader, file);
            expectEnd();
            return std::move(file);
        }
        readHeader();
        findLabels();
        file.resize(std::size_t(std::min(tables.getDataStart(labels.getNum()), longest)));
        cursor = file.size();
        while (!reader.atEnd() && reader.peek().is(word::ENTRY))
            readEntry();
        placeTables();
        readLength();
        while (!reader.atEnd() && reader.peek().is(word::RAW))
            readRaw(file);
        expectEnd();
        return std::move(file);
    }

private:
    struct EntrySettings
    {
        bool packed = false;
        bool hasTag = false;
        bool hasOffset = false;
        bool hasSize = false;
        TextToken offset; // for what is said of it
    };

    void readTitle()
    {
        expectWord(word::TITLE);
        expectWord("text");
        const TextToken token = reader.take();
        if (readNumber(reader, token, ANY_WORD) != TEXT_VERSION)
            reader.fail(token, "this version of the text form is not known");
        reader.endLine();
    }

    void readHeader()
    {
        expectWord(word::ORDER);
        const TextToken order = reader.take();
        if (!order.is("little") && !order.is("big"))
            reader.fail(order, "the byte order is little or big");
        tables.order = order.is("little") ? ByteOrder::LITTLE : ByteOrder::BIG;
        reader.endLine();
        expectWord(word::VERSION);
        tables.version = takeWord();
        reader.endLine();
        while (!reader.atEnd() && reader.peek().is(word::TAG))
        {
            reader.take();
            const TextToken token = reader.take();
            addTag(token, readCharacters(reader, token));
            tagsStated = true;
            reader.endLine();
        }
    }

    void addTag(const TextToken& token, const std::string& name)
    {
        if (name.size() >= TAG_NAME_SIZE)
            reader.fail(token, "a class name has at most 63 characters");
        if (tables.tags.size() == LARGEST_COUNT)
            reader.fail(token, "a file holds no more tags");
        tagPlaces.emplace(name, std::uint32_t(tables.tags.size())); // the first of a name
        tables.tags.push_back(name);
    }

    // What the entries are called, and, unless the tags are stated, the tags in the order of their use: both are
    // needed before the first entry is read.
    void findLabels()
    {
        TextReader ahead = reader;
        while (!ahead.atEnd())
        {
            if (ahead.peek().is(word::ENTRY))
            {
                ahead.take();
                const TextToken label = ahead.take();
                if (!labels.add(std::uint32_t(readNumber(ahead, label, ANY_WORD))))
                    ahead.fail(label, "another entry is called so");
                if (labels.getNum() > LARGEST_COUNT)
                    ahead.fail(label, "a file holds no more entries");
                const TextToken name = ahead.take();
                bool hasTag = false;
                while (!ahead.atLineEnd())
                    hasTag = isSetting(ahead.take(), word::TAG) || hasTag;
                const std::string characters = readCharacters(ahead, name);
                if (!tagsStated && !hasTag && !tagPlaces.contains(characters))
                    addTag(name, characters);
            }
            ahead.skipLine();
        }
    }

    void readEntry()
    {
        reader.take();
        reader.take(); // the label, known by now
        const TextToken nameToken = reader.take();
        const std::string name = readCharacters(reader, nameToken);
        ImageEntry entry;
        entry.version = tables.version;
        const EntrySettings settings = readSettings(entry);
        if (!settings.hasTag)
        {
            const auto tag = tagPlaces.find(name);
            if (tag == tagPlaces.end())
                reader.fail(nameToken, "no tag has this name");
            entry.tag = tag->second;
        }
        const bool otherWay = entry.magic == SWAPPED_MAGIC;
        const ByteOrder order = otherWay ? otherOrder(tables.order) : tables.order;
        const std::vector<unsigned char> stored = readContent(name, order, settings, entry);
        placeData(stored, settings, entry);
        tables.entries.push_back(entry);
    }

    EntrySettings readSettings(ImageEntry& entry)
    {
        EntrySettings settings;
        while (!reader.atLineEnd())
        {
            const TextToken token = reader.take();
            const auto value = [&]
            {
                TextToken number = token;
                number.text.remove_prefix(token.text.find('=') + 1);
                return std::uint32_t(readNumber(reader, number, ANY_WORD));
            };
            if (token.is(word::PACKED))
                settings.packed = true;
            else if (token.is(word::SWAPPED))
                entry.magic = SWAPPED_MAGIC;
            else if (isSetting(token, "magic"))
                entry.magic = value();
            else if (isSetting(token, "version"))
                entry.version = value();
            else if (isSetting(token, "compression"))
                entry.compression = value();
            else if (isSetting(token, word::TAG))
            {
                entry.tag = value();
                settings.hasTag = true;
            }
            else if (isSetting(token, "offset"))
            {
                entry.offset = value();
                settings.hasOffset = true;
                settings.offset = token;
            }
            else if (isSetting(token, "size"))
            {
                entry.size = value();
                settings.hasSize = true;
            }
            else
                reader.fail(token, "nothing of this name can be said of an entry");
        }
        reader.endLine();
        return settings;
    }

    // The bytes that the entry has in the file.
    std::vector<unsigned char> readContent(const std::string& name, ByteOrder order,
                                           const EntrySettings& settings, ImageEntry& entry)
    {
        EntryData data(order);
        std::vector<unsigned char>& bytes = data.getBytes();
        const bool none = reader.atEnd() || reader.peek().is(word::ENTRY) || reader.peek().is(word::LENGTH) ||
                          reader.peek().is(word::RAW);
        if (!none && reader.peek().is(word::DATA))
        {
            reader.take();
            readBytes(reader, bytes);
        }
        else if (!none)
            readRecord(reader, name, labels, data);
        while (!none && !reader.atEnd() && reader.peek().is(word::PATCH))
            readRaw(bytes);
        if (!settings.hasSize)
            entry.size = std::uint32_t(bytes.size());
        if (!settings.packed)
            return std::move(bytes);
        const std::vector<unsigned char> packed = pack(bytes);
        if (packed.empty())
            return std::move(bytes);
        entry.compression = RLE;
        std::vector<unsigned char> stored(PACKED_LENGTH_SIZE + packed.size());
        storeWord(stored.data(), std::uint32_t(packed.size()), order);
        std::copy(packed.begin(), packed.end(), stored.begin() + PACKED_LENGTH_SIZE);
        return stored;
    }

    void placeData(const std::vector<unsigned char>& stored, const EntrySettings& settings, ImageEntry& entry)
    {
        if (!settings.hasOffset)
            entry.offset = std::uint32_t(cursor);
        if (stored.empty())
            return;
        const std::uint64_t end = std::uint64_t(entry.offset) + stored.size();
        if (end > longest)
            reader.fail(settings.hasOffset ? settings.offset : reader.peek(),
                        "the file would be longer than " + std::to_string(longest) + " bytes");
        if (end > file.size())
            file.resize(std::size_t(end));
        std::copy(stored.begin(), stored.end(), file.begin() + std::ptrdiff_t(entry.offset));
        cursor = end;
    }

    void placeTables()
    {
        const std::vector<unsigned char> bytes = tables.getBytes();
        if (bytes.size() > file.size())
            reader.fail("the tables would be longer than a file can be");
        std::copy(bytes.begin(), bytes.end(), file.begin());
    }

    void readLength()
    {
        if (reader.atEnd() || !reader.peek().is(word::LENGTH))
            return;
        reader.take();
        const TextToken token = reader.take();
        file.resize(std::size_t(readNumber(reader, token, longest)));
        reader.endLine();
    }

    // Bytes that stand in place of others.
    void readRaw(std::vector<unsigned char>& target)
    {
        reader.take();
        const TextToken token = reader.take();
        const std::uint64_t offset = readNumber(reader, token, target.size());
        std::vector<unsigned char> bytes;
        readBytes(reader, bytes);
        if (bytes.size() > target.size() - offset)
            reader.fail(token, "there are not so many bytes to stand in place of");
        std::copy(bytes.begin(), bytes.end(), target.begin() + std::ptrdiff_t(offset));
    }

    std::uint32_t takeWord()
    {
        const TextToken token = reader.take();
        return std::uint32_t(readNumber(reader, token, ANY_WORD));
    }

    void expectWord(std::string_view expected)
    {
        if (reader.atEnd() || !reader.peek().is(expected))
            reader.fail("\"" + std::string(expected) + "\" should stand here");
        reader.take();
    }

    void expectEnd()
    {
        if (!reader.atEnd())
            reader.fail("nothing that a file has is called so, or not here");
    }

    TextReader reader;
    std::uint64_t longest;
    FileTables tables;
    bool tagsStated = false;
    std::map<std::string, std::uint32_t, std::less<>> tagPlaces;
    EntryLabels labels;
    std::vector<unsigned char> file;
    std::uint64_t cursor = 0;
};

} // namespace

std::vector<unsigned char> buildText(std::string_view text)
{
    return TextBuilder(text).build();
}

} // namespace native
