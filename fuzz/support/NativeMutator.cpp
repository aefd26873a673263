// Mutations that know the native format: one thing changes, and the tables are laid out anew around it.
#include <fuzz/support/NativeFile.h>

#include <apps/tamber/native/Record.h>
#include <tamber/io/tbiFileLayout.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>
#include <random>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace tbfuzz
{
namespace
{
using Bytes = std::vector<std::uint8_t>;

// Counts and sizes at the borders, and floats that are none.
constexpr std::uint32_t BORDERS[] = {
    0,          1,          2,          3,          0xFF,       0xFFFF,     0x400000,   0x3FFFFFFF,
    0x40000000, 0x7FFFFFFE, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF, 0x20000000, 0x7F800000,
    0x7FC00000, 0x7F800001, 0xFF800000, 0x3F800000, 0x7F7FFFFF, 0x00000001, 0x80000001, 0x501502F9,
};

class Mutation
{
public:
    Mutation(NativeFile& target, unsigned seed) : file(target), random(seed) {}

    void run()
    {
        if (file.entries.empty())
            return addEntry();
        NativeFile::Entry& entry = file.entries[below(file.entries.size())];
        switch (random() % 16)
        {
        case 0:
        case 1:
        case 2:
            return mutateBytes(entry);
        case 3:
        case 4:
        case 5:
            return setWord(entry, BORDERS[below(std::size(BORDERS))]);
        case 6:
        case 7:
        case 8:
            return setWord(entry, std::uint32_t(below(file.entries.size() + 1)));
        case 9:
            return rename(entry);
        case 10:
            return addEntry();
        case 11:
            return file.entries.push_back(NativeFile::Entry(entry));
        case 12:
            file.entries.erase(file.entries.begin() + std::ptrdiff_t(below(file.entries.size())));
            return;
        case 13:
            return swap(entry);
        case 14:
            return pack(entry);
        default:
            return shift(entry);
        }
    }

private:
    std::size_t below(std::size_t count) { return random() % count; }
    const char* anyClass()
    {
        const auto classes = native::knownClasses();
        return classes[below(classes.size())].name;
    }
    static void setData(NativeFile::Entry& entry, Bytes data)
    {
        entry.data = std::move(data);
        if (entry.compression != NativeFile::RLE)
            entry.size = std::uint32_t(entry.data.size());
    }

    static void mutateBytes(NativeFile::Entry& entry)
    {
        Bytes data = entry.data;
        const std::size_t length = data.size();
        data.resize(length + 16);
        data.resize(LLVMFuzzerMutate(data.data(), length, data.size()));
        setData(entry, std::move(data));
    }
    void setWord(NativeFile::Entry& entry, std::uint32_t value)
    {
        if (entry.data.size() >= 4)
            tbiFileLayout::store(entry.data.data() + 4 * below(entry.data.size() / 4), value,
                                 entry.magic == NativeFile::MAGIC_SWAPPED);
    }
    // Another class for the entry, one that the file has or a new one.
    void rename(NativeFile::Entry& entry)
    {
        if (!file.tags.empty() && random() % 2 == 0)
            entry.tag = std::uint32_t(below(file.tags.size()));
        else
        {
            entry.tag = std::uint32_t(file.tags.size());
            file.tags.emplace_back(anyClass());
        }
    }
    void addEntry()
    {
        NativeFile::Entry entry;
        setData(entry, Bytes(4 * below(32)));
        file.add(anyClass(), std::move(entry));
    }
    // The other byte order, of the tables or of one entry, whose words are turned with it.
    void swap(NativeFile::Entry& entry)
    {
        if (random() % 4 == 0)
        {
            file.swapped = !file.swapped;
            return;
        }
        entry.magic = tbiFileLayout::swapped(entry.magic);
        for (std::size_t i = 0; i + 4 <= entry.data.size(); i += 4)
            std::reverse(entry.data.begin() + std::ptrdiff_t(i), entry.data.begin() + std::ptrdiff_t(i + 4));
    }
    static void pack(NativeFile::Entry& entry)
    {
        Bytes packed(4);
        for (std::size_t i = 0, end = 0; i < entry.data.size(); i = end)
        {
            while (end < entry.data.size() && entry.data[end] == entry.data[i] && end - i < 255)
                ++end;
            packed.push_back(std::uint8_t(end - i));
            packed.push_back(entry.data[i]);
        }
        packed.push_back(0);
        tbiFileLayout::store(packed.data(), std::uint32_t(packed.size() - 4),
                             entry.magic == NativeFile::MAGIC_SWAPPED);
        entry.size = std::uint32_t(entry.data.size());
        entry.compression = NativeFile::RLE;
        entry.data = std::move(packed);
    }
    // A word more or less somewhere: all that follows is read as something else.
    void shift(NativeFile::Entry& entry)
    {
        Bytes data = entry.data;
        const auto at = data.begin() + std::ptrdiff_t(4 * below(data.size() / 4 + 1));
        if (random() % 2 == 0)
            data.insert(at, 4, 0);
        else
            data.erase(at, at + std::min<std::ptrdiff_t>(4, data.end() - at));
        setData(entry, std::move(data));
    }

    NativeFile& file;
    std::minstd_rand random;
};

// A border value in one word of header and tables.
void damageTables(std::uint8_t* data, std::size_t size, unsigned seed)
{
    std::minstd_rand random(seed);
    const std::size_t numWords = std::min<std::size_t>(size, 1024) / 4;
    if (numWords == 0)
        return;
    const std::uint32_t value = BORDERS[random() % std::size(BORDERS)];
    tbiFileLayout::store(data + 4 * (random() % numWords), value, random() % 4 == 0);
}

std::size_t give(const Bytes& bytes, std::uint8_t* data, std::size_t maxSize)
{
    if (bytes.size() > maxSize)
        return 0;
    std::copy(bytes.begin(), bytes.end(), data);
    return bytes.size();
}
} // namespace
} // namespace tbfuzz

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed)
{
    if (seed % 8 == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    if (seed % 8 == 1)
    {
        tbfuzz::damageTables(data, size, seed);
        return size;
    }
    std::optional<tbfuzz::NativeFile> file = tbfuzz::NativeFile::take({data, size});
    if (!file)
        return LLVMFuzzerMutate(data, size, maxSize);
    tbfuzz::Mutation mutation(*file, seed);
    for (unsigned i = seed / 8 % 4; i < 4; ++i)
        mutation.run();
    const std::size_t mutated = tbfuzz::give(file->put(), data, maxSize);
    return mutated > 0 ? mutated : LLVMFuzzerMutate(data, size, maxSize);
}

// Entries of the second file, with their classes, behind those of the first.
extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data1, std::size_t size1,
                                                 const std::uint8_t* data2, std::size_t size2,
                                                 std::uint8_t* out, std::size_t maxOutSize, unsigned seed)
{
    std::optional<tbfuzz::NativeFile> file = tbfuzz::NativeFile::take({data1, size1});
    const std::optional<tbfuzz::NativeFile> other = tbfuzz::NativeFile::take({data2, size2});
    if (!file || !other)
        return 0;
    for (std::size_t i = seed % 4; i < other->entries.size(); i += 1 + seed % 3)
    {
        const tbfuzz::NativeFile::Entry& entry = other->entries[i];
        if (entry.tag < other->tags.size())
            file->add(other->tags[entry.tag].c_str(), entry);
    }
    return tbfuzz::give(file->put(), out, maxOutSize);
}
