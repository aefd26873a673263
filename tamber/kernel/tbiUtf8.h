#pragma once

#include <cstddef>
#include <string_view>

/// Bytes of the UTF-8 character that `text`, which is not empty, begins with; 0 when there is none as it should be.
constexpr std::size_t tbiUtf8Length(std::string_view text)
{
    const auto at = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = at(0);
    if (first < 0x80)
        return 1;
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length)
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((at(i) & 0xC0) != 0x80)
            return 0;
    // Longer than needed, half of a pair, or beyond the last character.
    const unsigned char second = at(1);
    const bool isBad = (first == 0xE0 && second < 0xA0) || (first == 0xED && second >= 0xA0) ||
                       (first == 0xF0 && second < 0x90) || (first == 0xF4 && second >= 0x90);
    return isBad ? 0 : length;
}
