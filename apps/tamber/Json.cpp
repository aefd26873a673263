#include "Json.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <ostream>

namespace
{
constexpr std::string_view REPLACEMENT = "\xEF\xBF\xBD";

template <class Number>
std::string textOf(Number number)
{
    if (!std::isfinite(number))
        return "null";
    std::array<char, 64> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return {digits.data(), end};
}

bool isContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

/// Bytes of the character that `text` begins with; 0 when it is no UTF-8.
std::size_t lengthOfCharacter(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < 0x80)
        return 1;
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length)
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if (!isContinuation(text[i]))
            return 0;
    const auto second = static_cast<unsigned char>(text[1]);
    const bool overlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool beyond = (first == 0xED && second >= 0xA0) || (first == 0xF4 && second >= 0x90);
    return overlong || beyond ? 0 : length;
}
} // namespace

Json& Json::begin(char bracket)
{
    startValue();
    out << bracket;
    emptyLevels.push_back(true);
    return *this;
}

Json& Json::end(char bracket)
{
    const bool empty = emptyLevels.back();
    emptyLevels.pop_back();
    if (!empty)
        startLine();
    out << bracket;
    if (emptyLevels.empty())
        out << '\n';
    return *this;
}

Json& Json::key(std::string_view name)
{
    startValue();
    quote(name);
    out << ": ";
    keyed = true;
    return *this;
}

Json& Json::value(std::string_view text)
{
    startValue();
    quote(text);
    return *this;
}

Json& Json::value(bool truth)
{
    return raw(truth ? "true" : "false");
}

Json& Json::value(double number)
{
    return raw(textOf(number));
}

Json& Json::value(float number)
{
    return raw(textOf(number));
}

Json& Json::raw(std::string_view text)
{
    startValue();
    out << text;
    return *this;
}

void Json::startValue()
{
    if (keyed)
    {
        keyed = false;
        return;
    }
    if (emptyLevels.empty())
        return;
    if (!emptyLevels.back())
        out << ',';
    emptyLevels.back() = false;
    startLine();
}

void Json::startLine()
{
    out << '\n';
    for (std::size_t i = 0; i < emptyLevels.size(); ++i)
        out << "  ";
}

void Json::quote(std::string_view text)
{
    out << '"';
    while (!text.empty())
    {
        const std::size_t length = lengthOfCharacter(text);
        const char c = text[0];
        if (length == 0)
            out << REPLACEMENT;
        else if (c == '"' || c == '\\')
            out << '\\' << c;
        else if (c == '\n')
            out << "\\n";
        else if (c == '\t')
            out << "\\t";
        else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
        {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04X", unsigned(c));
            out << escape;
        }
        else
            out << text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    out << '"';
}
