#pragma once

#include <tamber/kernel/tbMemory.h>

#include <compare>
#include <cstring>

// Where things lie in a file. All integers are 32 bits wide, in the byte order of the writing machine.
namespace tbiFileLayout
{

inline constexpr std::uint32_t MAGIC = 0xBA773265;
inline constexpr std::uint32_t MAGIC_SWAPPED = 0x653277BA;

inline constexpr int HEADER_SIZE = 96;
inline constexpr int HEADER_MAGIC = 0;
inline constexpr int HEADER_VERSION = 4;
inline constexpr int HEADER_ENTRIES = 72;
inline constexpr int HEADER_TAGS = 76;

inline constexpr int TAG_SIZE = 68;
inline constexpr int TAG_INDEX = 0;
inline constexpr int TAG_NAME = 4;
inline constexpr int TAG_NAME_SIZE = 64;

inline constexpr int RECORD_SIZE = 24;
inline constexpr int RECORD_MAGIC = 0;
inline constexpr int RECORD_TAG = 4;
inline constexpr int RECORD_OFFSET = 8;
inline constexpr int RECORD_COMPRESSION = 12;
inline constexpr int RECORD_DATA_SIZE = 16;
inline constexpr int RECORD_VERSION = 20;
inline constexpr int RECORD_SPACE = 112; // of which the record fills its part, zeros the rest

inline constexpr std::int64_t LONGEST_FILE = 0x7FFFFFFF;

inline std::uint16_t swapped(std::uint16_t word)
{
    return std::uint16_t((word << 8) | (word >> 8));
}
inline std::uint32_t swapped(std::uint32_t word)
{
    return (word << 24) | ((word & 0xFF00u) << 8) | ((word >> 8) & 0xFF00u) | (word >> 24);
}
inline std::uint64_t swapped(std::uint64_t word)
{
    return (std::uint64_t(swapped(std::uint32_t(word))) << 32) | swapped(std::uint32_t(word >> 32));
}
inline std::uint8_t swapped(std::uint8_t byte)
{
    return byte;
}

template <class Word>
Word load(const unsigned char* bytes, bool swap)
{
    Word word;
    std::memcpy(&word, bytes, sizeof word);
    return swap ? swapped(word) : word;
}
template <class Word>
void store(unsigned char* bytes, Word word, bool swap = false)
{
    const Word ordered = swap ? swapped(word) : word;
    std::memcpy(bytes, &ordered, sizeof ordered);
}

/// Where a value goes whose place is a multiple of `alignment`, a power of two.
inline std::int64_t aligned(int cursor, int alignment)
{
    return (std::int64_t(cursor) + alignment - 1) & ~std::int64_t(alignment - 1);
}

} // namespace tbiFileLayout

struct tbiFileHeader : tbAllocated<tbiFileHeader>
{
    std::uint32_t version = 0;
    std::uint32_t numEntries = 0;
    std::uint32_t numTags = 0;
};

// By what a tag is found. The order is that of the tags where names are the same.
struct tbiTagName
{
    std::uint64_t hash;
    int tag;

    auto operator<=>(const tbiTagName&) const = default;
};

struct tbiTag : tbAllocated<tbiTag>
{
    int index = 0;
    char name[tbiFileLayout::TAG_NAME_SIZE] = {};
    int firstEntry = -1;
    bool isData = false;          // its entries stand for no objects
    bool reported = false;        // as a class that nobody supplies
    std::uint32_t askedIn = 0;    // number of the graph in which the class was asked for last
    const tbType* type = nullptr; // the answer
    bool isScene = false;         // the answer is a class of scenes
    bool isCollider = false;
};
