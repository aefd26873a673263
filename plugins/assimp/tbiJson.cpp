#include "tbiJson.h"

#include <tamber/kernel/tbiUtf8.h>

#include <charconv>
#include <cmath>

namespace
{
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
        const std::size_t length = tbiUtf8Length(text);
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
    const std::string_view shortest(digits, std::size_t(end.ptr - digits));
    // Readers take whole numbers for integers, of 32 bits where they are negative.
    const bool isLong = std::fabs(value) >= 0x1p31f && shortest.find_first_of(".e") == std::string_view::npos;
    return raw(isLong && std::isfinite(value) ? std::string(shortest) + ".0" : std::string(shortest));
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
