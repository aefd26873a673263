#include "tbiJson.h"

#include <charconv>
#include <cmath>

namespace
{
/// Bytes of the UTF-8 character at the start of `text`; 0 when there is none as it should be.
std::size_t characterLength(std::string_view text)
{
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = at(0);
    if (first < 0x80)
        return 1;
    const std::size_t length = first >= 0xC2 && first < 0xE0 ? 2 : first >= 0xE0 && first < 0xF0 ? 3 : 4;
    if (first < 0xC2 || first > 0xF4 || text.size() < length)
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((at(i) & 0xC0) != 0x80)
            return 0;
    // Overlong forms, surrogates and what lies beyond the last character.
    const unsigned char second = at(1);
    const bool isBad = (first == 0xE0 && second < 0xA0) || (first == 0xED && second >= 0xA0) ||
                       (first == 0xF0 && second < 0x90) || (first == 0xF4 && second >= 0x90);
    return isBad ? 0 : length;
}

void appendEscape(std::string& text, unsigned char c)
{
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\u%04x", c);
    text += escape;
}
} // namespace

bool tbiIsUtf8(std::string_view text)
{
    while (!text.empty())
    {
        const std::size_t length = characterLength(text);
        if (length == 0)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

tbiJson& tbiJson::string(std::string_view value)
{
    separate();
    text += '"';
    const bool isUtf8 = tbiIsUtf8(value);
    for (const char c : value)
    {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\')
            text += {'\\', c};
        else if (byte < 0x20 || byte == 0x7F || (byte >= 0x80 && !isUtf8))
            appendEscape(text, byte);
        else
            text += c;
    }
    text += '"';
    return *this;
}

tbiJson& tbiJson::number(float value)
{
    char digits[32];
    const std::to_chars_result end =
        std::to_chars(digits, digits + sizeof digits, std::isfinite(value) ? value : 0.0f);
    return raw(std::string_view(digits, std::size_t(end.ptr - digits)));
}

tbiJson& tbiJson::numbers(const float* values, int count)
{
    beginArray();
    for (int i = 0; i < count; ++i)
        number(values[i]);
    return endArray();
}

tbiJson& tbiJson::integers(const std::vector<int>& values)
{
    beginArray();
    for (const int value : values)
        integer(value);
    return endArray();
}
