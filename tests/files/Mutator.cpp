#include <tests/files/Mutator.h>

#include <tamber/io/tbiFileLayout.h>

#include <algorithm>

namespace tbtest
{
namespace layout = tbiFileLayout;

std::string Mutator::next()
{
    std::string bytes = files[below(files.size())];
    swapped = !bytes.empty() && static_cast<unsigned char>(bytes[0]) == 0xBA;
    for (std::size_t number = 1 + below(8); number > 0; --number)
        change(bytes);
    return bytes;
}

void Mutator::change(std::string& bytes)
{
    if (bytes.size() < 8)
    {
        bytes += files[below(files.size())];
        return;
    }
    const std::size_t place = below(bytes.size());
    switch (below(16))
    {
    case 0:
    case 1:
    case 2:
        bytes[place] = char(bytes[place] ^ (1 << below(8)));
        return;
    case 3:
        bytes[place] = "\x00\x01\x7F\x80\xFF"[below(5)];
        return;
    case 4:
        bytes.resize(place);
        return;
    case 5:
        bytes.erase(place, 1 + below(64));
        return;
    case 6:
        bytes.insert(place, piece(bytes));
        return;
    case 7:
    {
        const std::string other = piece(files[below(files.size())]);
        bytes.replace(place, std::min(other.size(), bytes.size() - place), other);
        return;
    }
    case 8:
    case 9:
    case 10:
        changeRecord(bytes);
        return;
    default: // where most fields are, and where some are after texts
        changeWord(bytes, below(4) == 0 ? std::min(place, bytes.size() - 4) : place / 4 * 4);
    }
}

// A field of a directory record gets the value of another record's, or one that tends to do harm.
void Mutator::changeRecord(std::string& bytes)
{
    constexpr std::size_t SIZE = layout::RECORD_SIZE;
    if (bytes.size() < layout::HEADER_SIZE)
        return;
    const std::size_t number = load(bytes, layout::HEADER_ENTRIES);
    const std::size_t numTags = load(bytes, layout::HEADER_TAGS);
    const std::size_t start = layout::HEADER_SIZE + layout::TAG_SIZE * numTags;
    const bool tooMany = numTags > bytes.size() / layout::TAG_SIZE || number > bytes.size() / SIZE;
    if (number == 0 || tooMany || start + SIZE * number > bytes.size())
        return changeWord(bytes, 4 * below(layout::HEADER_SIZE / 4));
    const std::size_t field = 4 * below(SIZE / 4);
    const std::size_t place = start + SIZE * below(number) + field;
    if (below(2) == 0)
        store(bytes, place, load(bytes, start + SIZE * below(number) + field));
    else
        changeWord(bytes, place);
}

void Mutator::changeWord(std::string& bytes, std::size_t place)
{
    if (place + 4 > bytes.size())
        return;
    const std::uint32_t word = load(bytes, place);
    switch (below(4))
    {
    case 0:
        return store(bytes, place, word + std::uint32_t(below(9)) - 4);
    case 1:
        return store(bytes, place, word * 2);
    default:
        return store(bytes, place, interestingWord(bytes));
    }
}

std::uint32_t Mutator::interestingWord(const std::string& bytes)
{
    constexpr std::uint32_t NOT_A_NUMBER = 0x7FC00000, INFINITE = 0x7F800000, MINUS_INFINITE = 0xFF800000;
    constexpr std::uint32_t WORDS[] = {0,
                                       1,
                                       2,
                                       0xFFFFFFFF,
                                       0x7FFFFFFF,
                                       0x80000000,
                                       0x40000001,
                                       0x20000000,
                                       NOT_A_NUMBER,
                                       INFINITE,
                                       MINUS_INFINITE};
    const std::size_t others[] = {bytes.size(), below(bytes.size()), below(64), std::size_t(random())};
    const std::size_t which = below(std::size(WORDS) + std::size(others));
    return which < std::size(WORDS) ? WORDS[which] : std::uint32_t(others[which - std::size(WORDS)]);
}

std::string Mutator::piece(const std::string& bytes)
{
    return bytes.substr(below(bytes.size()), 1 + below(256));
}

std::uint32_t Mutator::load(const std::string& bytes, std::size_t place) const
{
    return layout::load<std::uint32_t>(reinterpret_cast<const unsigned char*>(bytes.data()) + place, swapped);
}

void Mutator::store(std::string& bytes, std::size_t place, std::uint32_t word) const
{
    layout::store(reinterpret_cast<unsigned char*>(bytes.data()) + place, word, swapped);
}
} // namespace tbtest
