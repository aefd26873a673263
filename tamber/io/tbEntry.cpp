#include <tamber/io/tbEntry.h>

#include <tamber/io/tbFile.h>
#include <tamber/io/tbiFileLayout.h>
#include <tamber/io/tbiUnpacker.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <utility>

tbEntry::tbEntry(tbFile* owner, int tagIndex) : tag(tagIndex), file(owner) {}

tbEntry::~tbEntry()
{
    freeData();
}

void tbEntry::freeData()
{
    tbMemory::free(data);
    data = nullptr;
    capacity = available = 0;
    delete std::exchange(unpacker, nullptr);
}

bool tbEntry::bind(const void* object, KIND handleKind)
{
    kind = handleKind;
    failed = false;
    return file->rebind(this, object);
}

void tbEntry::setHandle(const void* object)
{
    bind(object, KIND_OTHER);
}

void tbEntry::setHandle(const tbBase* object)
{
    bind(object, object ? KIND_OBJECT : KIND_OTHER);
}

template <class Word>
Word tbEntry::take(Word marker, int alignment)
{
    const std::int64_t place = tbiFileLayout::aligned(cursor, alignment);
    if (place + std::int64_t(sizeof(Word)) > available) [[unlikely]]
        return takeBeyond(marker, place);
    cursor = int(place) + int(sizeof(Word));
    return tbiFileLayout::load<Word>(data + place, byteSwapped);
}

void tbEntry::copyBytes(int place, void* bytes, int number)
{
    if (unpacker)
        unpacker->read(place, bytes, number);
    else
        std::memcpy(bytes, data + place, std::size_t(number));
}

// Moves bytes, never floats: the words of signalling numbers arrive as they were.
int tbEntry::takeWords(void* words, int n)
{
    const std::int64_t place = tbiFileLayout::aligned(cursor, 4);
    if (!isLoaded() || place + 4 > dataSize || n < 1)
        return 0;
    const int number = std::min(n, (dataSize - int(place)) / 4);
    copyBytes(int(place), words, number * 4);
    auto* bytes = static_cast<unsigned char*>(words);
    if (byteSwapped)
        for (int i = 0; i < number; ++i)
            tbiFileLayout::store(bytes + 4 * i, tbiFileLayout::load<std::uint32_t>(bytes + 4 * i, true));
    cursor = int(place) + number * 4;
    return number;
}

template <class Word>
void tbEntry::put(Word word, int alignment)
{
    if (unsigned char* place = extend(int(sizeof word), alignment))
        tbiFileLayout::store(place, word, byteSwapped);
}

void tbEntry::putWords(const void* words, int n)
{
    const auto* from = static_cast<const unsigned char*>(words);
    for (int i = 0; i < n; ++i)
        put(tbiFileLayout::load<std::uint32_t>(from + 4 * i, false), 4);
}

char tbEntry::readByte()
{
    return char(take(std::uint8_t{0xFF}, 1));
}

short tbEntry::readShort()
{
    return short(take(std::uint16_t{0xFFFF}, 1));
}

int tbEntry::readInt()
{
    return int(take(std::uint32_t{0xFFFFFFFF}, 4));
}

void tbEntry::readInts(int* values, int n)
{
    for (int i = takeWords(values, n); i < n; ++i)
        values[i] = -1;
}

bool tbEntry::readBool()
{
    return take(std::uint32_t{1}, 4) != 0;
}

float tbEntry::readFloat()
{
    return std::bit_cast<float>(take(std::bit_cast<std::uint32_t>(-1.0f), 4));
}

void tbEntry::readFloats(float* values, int n)
{
    for (int i = takeWords(values, n); i < n; ++i)
        values[i] = -1.0f;
}

double tbEntry::readDouble()
{
    return std::bit_cast<double>(take(std::bit_cast<std::uint64_t>(-1.0), 8));
}

int tbEntry::readString(char* text, int len)
{
    const int remaining = getRemaining();
    const int number = std::min(std::max(len, 0), remaining);
    if (len > 0)
    {
        const int most = std::min(number, len - 1);
        if (most > 0)
            copyBytes(cursor, text, most);
        const void* end = std::memchr(text, 0, std::size_t(most));
        const auto length = end ? static_cast<const char*>(end) - text : most;
        std::memset(text + length, 0, std::size_t(len - length));
    }
    cursor += number;
    return remaining > 0 ? std::max(len, 0) : -1;
}

int tbEntry::readChunk(void* bytes, int len)
{
    const int remaining = getRemaining();
    if (remaining == 0)
        return -1;
    const int number = std::min(std::max(len, 0), remaining);
    if (number > 0)
        copyBytes(cursor, bytes, number);
    cursor += number;
    return number;
}

int tbEntry::readCount(int itemSize)
{
    const int count = readInt();
    if (std::int64_t(count) * itemSize <= dataSize - cursor) [[likely]]
        return std::max(count, 0);
    checkItems(count, itemSize);
    return 0;
}

bool tbEntry::checkItems(int count, int itemSize, int alignment)
{
    const std::int64_t end = tbiFileLayout::aligned(cursor, alignment) + std::int64_t(count) * itemSize;
    if (count <= 0 || (isLoaded() && end <= dataSize))
        return true;
    fail("more items than the entry can hold");
    return false;
}

void tbEntry::passOver(const char* rule)
{
    file->report(this, rule);
}

void tbEntry::fail(const char* rule)
{
    if (failed)
        return;
    failed = true;
    file->report(this, rule);
}

bool tbEntry::growTo(std::int64_t end)
{
    const bool whole = !unpacker || unpack();
    if (whole && data && end <= capacity)
        return true;
    if (whole && !data)
        dataSize = 0; // what lies in the file is written anew
    // Half again on top, so that a long entry grows in linear time.
    const std::int64_t wanted =
        data ? end + FIRST_CAPACITY + capacity / 2 : std::max<std::int64_t>(end, FIRST_CAPACITY);
    const int grown = int(std::min<std::int64_t>(wanted, std::numeric_limits<int>::max()));
    void* block = whole && end <= grown ? tbMemory::realloc(data, std::size_t(grown)) : nullptr;
    if (!block)
    {
        file->failWrite("an entry is too large for the memory or for a file");
        return false;
    }
    data = static_cast<unsigned char*>(block);
    std::memset(data + capacity, 0, std::size_t(grown - capacity));
    capacity = grown;
    return true;
}

unsigned char* tbEntry::extend(int len, int alignment)
{
    const std::int64_t place = tbiFileLayout::aligned(cursor, alignment);
    if (!growTo(place + len))
        return nullptr;
    // Data that was set anew may end before the cursor; what lay there does not come back.
    const int gap = std::min(cursor, dataSize);
    std::memset(data + gap, 0, std::size_t(place - gap));
    cursor = int(place) + len;
    available = dataSize = std::max(dataSize, cursor);
    return data + place;
}

void tbEntry::writeByte(char value)
{
    put(std::uint8_t(value), 1);
}

void tbEntry::writeShort(short value)
{
    put(std::uint16_t(value), 1);
}

void tbEntry::writeInt(int value)
{
    put(std::uint32_t(value), 4);
}

void tbEntry::writeInts(const int* values, int n)
{
    putWords(values, n);
}

void tbEntry::writeFloat(float value)
{
    put(std::bit_cast<std::uint32_t>(value), 4);
}

void tbEntry::writeFloats(const float* values, int n)
{
    putWords(values, n);
}

void tbEntry::writeDouble(double value)
{
    put(std::bit_cast<std::uint64_t>(value), 8);
}

void tbEntry::writeString(const char* text)
{
    const std::size_t length = text ? std::strlen(text) : 0;
    if (length >= std::size_t(std::numeric_limits<int>::max()))
    {
        file->failWrite("a text is too long for a file");
        return;
    }
    writeChunk(text, int(length));
    writeByte(0);
}

void tbEntry::writeChunk(const void* bytes, int len)
{
    if (len < 1)
        return;
    if (unsigned char* place = extend(len, 1))
        std::memcpy(place, bytes, std::size_t(len));
}

void tbEntry::setData(const void* bytes, int size)
{
    const int number = bytes ? std::max(size, 0) : 0;
    if (number > 0 && !growTo(number))
        return;
    if (number > 0)
        std::memmove(data, bytes, std::size_t(number));
    delete std::exchange(unpacker, nullptr);
    dataSize = number;
    available = data ? number : 0;
    magicKnown = true;
    byteSwapped = false;
    failed = false;
}

void tbEntry::trim()
{
    if (!data || capacity <= dataSize)
        return;
    if (dataSize == 0)
    {
        freeData();
        return;
    }
    void* block = tbMemory::malloc(std::size_t(dataSize));
    if (!block)
        return;
    std::memcpy(block, data, std::size_t(dataSize));
    tbMemory::free(data);
    data = static_cast<unsigned char*>(block);
    capacity = dataSize;
}
