#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace native
{

// The order of the machine that wrote the bytes.
enum class ByteOrder : unsigned char
{
    LITTLE,
    BIG
};

inline constexpr ByteOrder OWN_ORDER =
    std::endian::native == std::endian::little ? ByteOrder::LITTLE : ByteOrder::BIG;

constexpr ByteOrder otherOrder(ByteOrder order)
{
    return order == ByteOrder::LITTLE ? ByteOrder::BIG : ByteOrder::LITTLE;
}

/// Assembles an unsigned word from as many bytes as it is wide.
template <class Word>
Word loadWord(const unsigned char* bytes, ByteOrder order)
{
    Word word = 0;
    for (unsigned i = 0; i < sizeof(Word); ++i)
    {
        const unsigned shift = order == ByteOrder::LITTLE ? 8 * i : 8 * (unsigned(sizeof(Word)) - 1 - i);
        word = Word(word | Word(Word(bytes[i]) << shift));
    }
    return word;
}

template <class Word>
void storeWord(unsigned char* bytes, Word word, ByteOrder order)
{
    for (unsigned i = 0; i < sizeof(Word); ++i)
    {
        const unsigned shift = order == ByteOrder::LITTLE ? 8 * i : 8 * (unsigned(sizeof(Word)) - 1 - i);
        bytes[i] = static_cast<unsigned char>(word >> shift);
    }
}

} // namespace native
