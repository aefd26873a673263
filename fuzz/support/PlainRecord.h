#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace tbfuzz
{
/// What an entry promises, value by value and byte by byte.
class PlainRecord
{
public:
    PlainRecord(std::string content, bool otherOrder) : data(std::move(content)), swapped(otherOrder) {}

    /// False, and nothing moved, when the value does not fit whole.
    template <class Word>
    bool read(Word& word, std::size_t alignment)
    {
        const std::size_t place = aligned(alignment);
        if (place + sizeof word > data.size())
            return false;
        word = 0;
        for (std::size_t i = 0; i < sizeof word; ++i)
            word = Word(word | Word(Word(std::uint8_t(data[place + i])) << shift(sizeof word, i)));
        cursor = place + sizeof word;
        return true;
    }
    template <class Word>
    void write(Word word, std::size_t alignment)
    {
        std::string bytes;
        for (std::size_t i = 0; i < sizeof word; ++i)
            bytes += char(word >> shift(sizeof word, i));
        put(bytes, alignment);
    }
    void put(const std::string& bytes, std::size_t alignment)
    {
        if (bytes.empty())
            return;
        const std::size_t place = aligned(alignment);
        data.resize(std::max(data.size(), place + bytes.size()));
        std::fill_n(data.begin() + std::ptrdiff_t(cursor), place - cursor, '\0');
        data.replace(place, bytes.size(), bytes);
        cursor = place + bytes.size();
    }
    std::string take(int length)
    {
        const std::string bytes =
            data.substr(std::min(cursor, data.size()), std::size_t(std::max(length, 0)));
        cursor += bytes.size();
        return bytes;
    }
    std::size_t remaining() const { return cursor < data.size() ? data.size() - cursor : 0; }
    bool holds(long long count, long long itemSize, std::size_t alignment) const
    {
        return count <= 0 || (long long)(aligned(alignment)) + count * itemSize <= (long long)(data.size());
    }

    std::string data;
    std::size_t cursor = 0;
    bool swapped;

private:
    std::size_t aligned(std::size_t alignment) const
    {
        return (cursor + alignment - 1) / alignment * alignment;
    }
    unsigned shift(std::size_t width, std::size_t i) const
    {
        return unsigned(8 * (swapped ? width - 1 - i : i));
    }
};
} // namespace tbfuzz
