// Plays the input as reads and writes on an entry of either byte order, and beside it on a plain record of bytes.
#include <fuzz/support/Check.h>
#include <fuzz/support/InputFile.h>
#include <fuzz/support/NativeFile.h>
#include <fuzz/support/PlainRecord.h>
#include <fuzz/support/Program.h>

#include <tamber/io/tbEntry.h>
#include <tamber/io/tbFile.h>

#include <cstring>
#include <vector>

using tbfuzz::check;
using tbfuzz::InputFile;
using tbfuzz::NativeFile;
using tbfuzz::PlainRecord;
using tbfuzz::Program;

namespace
{
constexpr int LONGEST = 1 << 14; // of a chunk that is written

class Player
{
public:
    Player(tbEntry& played, PlainRecord& plain, Program& input) : entry(played), record(plain), program(input)
    {
    }

    void run()
    {
        while (!program.hasEnded())
        {
            const int operation = program.index(22);
            if (operation < 9)
                readValue(operation);
            else if (operation < 18)
                writeValue(operation);
            else
                change(operation);
            check(entry.getDataSize() == int(record.data.size()), "the entry is as long as what was written");
            check(entry.getRemaining() == int(record.remaining()), "the cursor is where it belongs");
        }
    }

private:
    template <class Word, class Value>
    void expect(Value value, std::size_t alignment, Word marker)
    {
        Word word;
        if (!record.read(word, alignment))
            word = marker;
        check(std::memcmp(&value, &word, sizeof word) == 0, "a value reads as it lies there");
    }
    void readValue(int operation)
    {
        switch (operation)
        {
        case 0:
            return expect<std::uint8_t>(entry.readByte(), 1, 0xFF);
        case 1:
            return expect<std::uint16_t>(entry.readShort(), 1, 0xFFFF);
        case 2:
            return expect<std::uint32_t>(entry.readInt(), 4, 0xFFFFFFFF);
        case 3:
            return expect<std::uint32_t>(entry.readFloat(), 4, 0xBF800000);
        case 4:
            return expect<std::uint64_t>(entry.readDouble(), 8, 0xBFF0000000000000);
        case 5:
            return readInts(program.index(200) - 2);
        case 6:
            return readText(program.index(200) - 2);
        case 7:
            return readChunk(program.index(200) - 2);
        default:
            return readCount(program.index(40), program.amount());
        }
    }
    void readInts(int n)
    {
        std::vector<int> values(std::size_t(std::max(n, 0)), 77);
        entry.readInts(values.data(), n);
        for (const int value : values)
            expect<std::uint32_t>(value, 4, 0xFFFFFFFF);
    }
    void readText(int length)
    {
        std::vector<char> text(std::size_t(std::max(length, 0)), 'x');
        const bool atEnd = record.remaining() == 0;
        const int result = entry.readString(text.data(), length);
        check(result == (atEnd ? -1 : std::max(length, 0)), "a text has the length that was asked for");
        std::string expected = record.take(length).c_str();
        if (length > 0)
        {
            expected.resize(std::size_t(length), '\0');
            expected.back() = 0;
        }
        check(std::equal(text.begin(), text.end(), expected.begin(), expected.end()),
              "a text reads as it lies");
    }
    void readChunk(int length)
    {
        std::vector<char> bytes(std::size_t(std::max(length, 0)));
        const bool atEnd = record.remaining() == 0;
        const int result = entry.readChunk(bytes.data(), length);
        const std::string expected = record.take(length);
        check(result == (atEnd ? -1 : int(expected.size())), "a chunk is as long as what is left");
        check(std::equal(expected.begin(), expected.end(), bytes.begin()), "a chunk reads as it lies");
    }
    void readCount(int itemSize, int items)
    {
        check(entry.checkItems(items, itemSize, 8) == record.holds(items, itemSize, 8),
              "items fit or do not");
        const int count = entry.readCount(itemSize);
        std::uint32_t word = 0;
        record.read(word, 4);
        const bool given = int(word) > 0 && record.holds(int(word), itemSize, 1);
        check(count == (given ? int(word) : 0), "a count whose items are not there is none");
        check(given || int(word) <= 0 || entry.hasFailed(), "a count that cannot be fails the entry");
    }
    void writeValue(int operation)
    {
        const std::uint64_t word = (std::uint64_t(program.word()) << 32) | std::uint64_t(program.byte());
        switch (operation)
        {
        case 9:
            entry.writeByte(char(word));
            return record.write(std::uint8_t(word), 1);
        case 10:
            entry.writeShort(short(word >> 30));
            return record.write(std::uint16_t(word >> 30), 1);
        case 11:
            entry.writeInt(int(word >> 32));
            return record.write(std::uint32_t(word >> 32), 4);
        case 12:
            entry.writeBool(word % 2 != 0);
            return record.write(std::uint32_t(word % 2), 4);
        case 13:
            entry.writeFloat(float(word));
            return writeFloatBits(float(word));
        case 14:
            entry.writeDouble(double(word));
            return writeDoubleBits(double(word));
        case 15:
            return writeInts(int(word % 60));
        case 16:
            return writeText(program.bytes(int(word % 60)));
        default:
            return writeChunk(std::string(std::size_t(word >> 32) % LONGEST, char(word)));
        }
    }
    void writeFloatBits(float value)
    {
        std::uint32_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        record.write(bits, 4);
    }
    void writeDoubleBits(double value)
    {
        std::uint64_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        record.write(bits, 8);
    }
    void writeInts(int n)
    {
        std::vector<int> values;
        for (int i = 0; i < n; ++i)
            values.push_back(program.byte() - 100);
        entry.writeInts(values.data(), n);
        for (const int value : values)
            record.write(std::uint32_t(value), 4);
    }
    void writeText(const std::string& text)
    {
        entry.writeString(text.c_str());
        record.put(std::string(text.c_str()) + '\0', 1);
    }
    void writeChunk(const std::string& bytes)
    {
        if (record.data.size() > LONGEST)
            return;
        entry.writeChunk(bytes.data(), int(bytes.size()));
        record.put(bytes, 1);
    }
    void change(int operation)
    {
        if (operation == 18)
        {
            const std::string bytes = program.bytes(program.index(60));
            entry.setData(bytes.data(), int(bytes.size()));
            record.data = bytes;
            record.swapped = false;
        }
        else
        {
            entry.reset();
            record.cursor = 0;
        }
        check(entry.isByteSwapped() == record.swapped, "data that is set is in this machine's order");
    }

    tbEntry& entry;
    PlainRecord& record;
    Program& program;
};

// The entry's bytes in a file, packed or not.
void makeFile(const InputFile& input, const std::string& data, bool swapped)
{
    NativeFile file;
    NativeFile::Entry entry;
    entry.magic = swapped ? NativeFile::MAGIC_SWAPPED : NativeFile::MAGIC;
    entry.size = std::uint32_t(data.size());
    entry.data.assign(data.begin(), data.end());
    file.add("tbAnything", entry);
    input.set(file.put());
}

void checkSaved(const InputFile& input, const PlainRecord& record)
{
    tbFile file;
    check(file.open(input.path(), "r"), "what was saved opens");
    tbEntry* entry = file.getEntry(0);
    const bool read = file.readEntry(entry);
    check(read == !record.data.empty(), "what was saved can be read, when it has data");
    check(!read || (entry->getDataSize() == int(record.data.size()) &&
                    std::memcmp(entry->getData(), record.data.data(), record.data.size()) == 0),
          "what was saved reads back as the same");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static const InputFile input("entry.tb");
    Program program(bytes, size);
    const int mode = program.byte();
    const bool swapped = mode % 2 != 0;
    const std::string data = program.bytes(1 + program.byte()) + 'x';
    makeFile(input, data, swapped);

    tbFile file;
    check(file.open(input.path(), "rw"), "a sound file opens");
    tbEntry* entry = file.getEntry(0);
    check(file.readEntry(entry), "a sound entry can be read");
    PlainRecord record(data, swapped);
    Player(*entry, record, program).run();
    if ((mode & 6) != 0)
        return 0;
    entry->setCompression((mode & 8) != 0 ? tbEntry::RLE : tbEntry::NO_COMPRESSION);
    check(file.write(), "the file can be saved");
    checkSaved(input, record);
    return 0;
}
