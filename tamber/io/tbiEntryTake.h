#pragma once

#include <tamber/io/tbEntry.h>
#include <tamber/io/tbiFileLayout.h>

// How an entry's cursor takes the next value, for those who take many.

inline std::int64_t tbiAligned(int cursor, int alignment)
{
    return (std::int64_t(cursor) + alignment - 1) & ~std::int64_t(alignment - 1);
}

template <class Word>
inline Word tbEntry::take(Word marker, int alignment)
{
    const std::int64_t place = tbiAligned(cursor, alignment);
    if (place + std::int64_t(sizeof(Word)) > available) [[unlikely]]
        return takeBeyond(marker, place);
    cursor = int(place) + int(sizeof(Word));
    return tbiFileLayout::load<Word>(data + place, byteSwapped);
}
