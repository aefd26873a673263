#include "Json.h"

#include <tamber/kernel/tbiUtf8.h>

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
        const std::size_t length = tbiUtf8Length(text);
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
