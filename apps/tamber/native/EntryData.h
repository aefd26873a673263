#pragma once

#include "ImageBytes.h"

#include <vector>

namespace native
{

// The data of an entry as it is written, value by value. Values of 4 bytes go to multiples of 4, of 8 to multiples of
// 8, others where they come; gaps hold zeros.
class EntryData
{
public:
    explicit EntryData(ByteOrder byteOrder) : order(byteOrder) {}

    ByteOrder getOrder() const { return order; }
    std::vector<unsigned char>& getBytes() { return bytes; }
    const std::vector<unsigned char>& getBytes() const { return bytes; }

    /// Returns where the word stands.
    template <class Word>
    std::size_t put(Word word)
    {
        constexpr std::size_t ALIGNMENT = sizeof(Word) >= 4 ? sizeof(Word) : 1;
        const std::size_t place = (bytes.size() + ALIGNMENT - 1) / ALIGNMENT * ALIGNMENT;
        bytes.resize(place + sizeof(Word));
        storeWord(bytes.data() + place, word, order);
        return place;
    }
    /// Replaces a word that was put before.
    void set(std::size_t place, std::uint32_t word) { storeWord(bytes.data() + place, word, order); }

private:
    ByteOrder order;
    std::vector<unsigned char> bytes;
};

} // namespace native
