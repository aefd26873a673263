// Packed data of an entry: it stays packed while it is read, and is unpacked whole for everything else.
#include <tamber/io/tbEntry.h>

#include <tamber/io/tbiFileLayout.h>
#include <tamber/io/tbiUnpacker.h>

#include <limits>

unsigned char* tbEntry::unpackAll() const
{
    auto* bytes = static_cast<unsigned char*>(tbMemory::malloc(std::size_t(dataSize)));
    if (bytes)
        unpacker->read(0, bytes, dataSize);
    return bytes;
}

bool tbEntry::unpack()
{
    unsigned char* bytes = unpackAll();
    if (!bytes)
        return false;
    freeData();
    takeData(bytes);
    return true;
}

void* tbEntry::getData()
{
    if (unpacker && !unpack())
        passOver("memory is out");
    return data;
}

template <class Word>
Word tbEntry::takeBeyond(Word marker, std::int64_t place)
{
    if (!unpacker || place + std::int64_t(sizeof(Word)) > dataSize)
        return marker;
    cursor = int(place) + int(sizeof(Word));
    unsigned char byte;
    if (unpacker->passSame(int(place), int(sizeof(Word)), byte))
        return Word(byte * Word(std::numeric_limits<Word>::max() / 0xFF));
    unsigned char bytes[sizeof(Word)];
    unpacker->read(int(place), bytes, int(sizeof(Word)));
    return tbiFileLayout::load<Word>(bytes, byteSwapped);
}

template std::uint8_t tbEntry::takeBeyond(std::uint8_t, std::int64_t);
template std::uint16_t tbEntry::takeBeyond(std::uint16_t, std::int64_t);
template std::uint32_t tbEntry::takeBeyond(std::uint32_t, std::int64_t);
template std::uint64_t tbEntry::takeBeyond(std::uint64_t, std::int64_t);
