#include "TextValues.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

namespace native
{

namespace
{

constexpr char DIGITS[] = "0123456789abcdef";

int digitOf(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

template <class Word>
void appendHexDigits(std::string& text, Word value, int digits)
{
    for (int i = digits - 1; i >= 0; --i)
        text += DIGITS[(value >> (4 * i)) & 0xF];
}

template <class Number>
void appendShortest(std::string& text, Number value)
{
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    text.append(buffer, end);
}

template <class Number, class Word>
void appendReal(std::string& text, Number value, Word bits)
{
    if (std::isnan(value))
    {
        text += "nan:";
        appendHexDigits(text, bits, int(2 * sizeof bits));
    }
    else if (std::isinf(value))
        text += value < 0 ? "-inf" : "inf";
    else
        appendShortest(text, value);
}

template <class Number, class Word>
Word readReal(const TextReader& reader, const TextToken& token)
{
    const std::string_view text = token.text;
    Number value = 0;
    const char* end = text.data() + text.size();
    if (text.substr(0, 4) == "nan:")
    {
        Word bits = 0;
        const auto result = std::from_chars(text.data() + 4, end, bits, 16);
        if (text.size() != 4 + 2 * sizeof bits || result.ptr != end ||
            !std::isnan(std::bit_cast<Number>(bits)))
            reader.fail(token, "\"nan:\" and all bits of one that is not a number belong together");
        return bits;
    }
    if (text == "inf" || text == "-inf")
        value = text == "inf" ? std::numeric_limits<Number>::infinity()
                              : -std::numeric_limits<Number>::infinity();
    else
    {
        const auto result = std::from_chars(text.data(), end, value);
        if (token.quoted || result.ec != std::errc() || result.ptr != end || !std::isfinite(value))
            reader.fail(token, "a number should stand here, not " + std::string(text.substr(0, 40)));
    }
    return std::bit_cast<Word>(value);
}

void appendFlags(std::string& text, std::uint32_t bits, ValueNames names, int width)
{
    if (names.empty())
        return appendHexNumber(text, bits, 2 * width);
    if (bits == 0)
    {
        text += '0';
        return;
    }
    const char* separator = "";
    for (const ValueName& name : names)
        if ((bits & name.value) != 0)
        {
            text += separator;
            text += name.name;
            separator = "|";
            bits &= ~name.value;
        }
    if (bits == 0)
        return;
    text += separator;
    appendHexNumber(text, bits, 1);
}

void appendEnum(std::string& text, std::uint32_t value, ValueNames names)
{
    for (const ValueName& name : names)
        if (name.value == value)
        {
            text += name.name;
            return;
        }
    appendNumber(text, value);
}

std::uint64_t largestOf(int width)
{
    return (std::uint64_t{1} << (8 * width)) - 1;
}

const ValueName* findName(ValueNames names, std::string_view word)
{
    const auto place =
        std::find_if(names.begin(), names.end(), [word](const ValueName& name) { return word == name.name; });
    return place != names.end() ? &*place : nullptr;
}

// Numbers begin with a digit, names do not.
std::uint32_t readNamed(const TextReader& reader, const TextToken& token, const RecordForm::Type& type)
{
    if (const ValueName* name = findName(type.names, token.text))
        return name->value;
    if (token.quoted || token.text.empty() || digitOf(token.text[0]) < 0 || token.text[0] > '9')
        reader.fail(token, "there is no value called " + std::string(token.text.substr(0, 40)));
    return std::uint32_t(readNumber(reader, token, largestOf(type.width)));
}

std::uint32_t readFlags(const TextReader& reader, const TextToken& token, const RecordForm::Type& type)
{
    std::uint32_t bits = 0;
    std::string_view rest = token.text;
    while (true)
    {
        TextToken part = token;
        const std::size_t end = rest.find('|');
        part.text = rest.substr(0, end);
        part.column += std::uint64_t(part.text.data() - token.text.data());
        bits |= readNamed(reader, part, type);
        if (end == std::string_view::npos)
            return bits;
        rest.remove_prefix(end + 1);
    }
}

std::uint32_t readReference(const TextReader& reader, const TextToken& token, const EntryLabels& labels)
{
    if (token.is("none"))
        return std::uint32_t(-1);
    if (token.quoted || token.text.empty() || token.text[0] != '@')
        return std::uint32_t(readInt(reader, token));
    TextToken label = token;
    label.text.remove_prefix(1);
    std::uint32_t entry = 0;
    if (!labels.find(std::uint32_t(readNumber(reader, label, std::numeric_limits<std::uint32_t>::max())),
                     entry))
        reader.fail(token, "no entry is called " + std::string(label.text));
    return entry;
}

std::int32_t putWord(EntryData& data, std::uint32_t word, int width)
{
    switch (width)
    {
    case 1:
        data.put(std::uint8_t(word));
        return std::int8_t(word);
    case 2:
        data.put(std::uint16_t(word));
        return std::int16_t(word);
    default:
        data.put(word);
        return std::int32_t(word);
    }
}

std::int32_t readSigned(const TextReader& reader, const TextToken& token, int width)
{
    const std::int32_t value = readInt(reader, token);
    const std::int64_t least = -(std::int64_t{1} << (8 * width - 1));
    if (value < least || value > -(least + 1))
        reader.fail(token, "the number does not fit into " + std::to_string(width) + " bytes");
    return value;
}

} // namespace

void appendNumber(std::string& text, std::int64_t value)
{
    appendShortest(text, value);
}

void appendHexNumber(std::string& text, std::uint32_t value, int digits)
{
    text += "0x";
    int needed = digits;
    while (needed < 8 && (value >> (4 * needed)) != 0)
        ++needed;
    appendHexDigits(text, value, needed);
}

void appendQuoted(std::string& text, std::string_view characters)
{
    text += '"';
    for (const char c : characters)
    {
        const auto code = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\')
            (text += '\\') += c;
        else if (c == '\n')
            text += "\\n";
        else if (c == '\t')
            text += "\\t";
        else if (code < 0x20 || code > 0x7E)
            appendHexDigits(text += "\\x", code, 2);
        else
            text += c;
    }
    text += '"';
}

void appendWord(std::string& text, std::string_view word)
{
    const bool plain = !word.empty() && std::all_of(word.begin(), word.end(),
                                                    [](char c) {
                                                        return c == '_' || (c >= '0' && c <= '9') ||
                                                               (c >= 'a' && c <= 'z') ||
                                                               (c >= 'A' && c <= 'Z');
                                                    });
    if (plain)
        text += word;
    else
        appendQuoted(text, word);
}

void appendHex(std::string& text, Bytes bytes)
{
    for (const unsigned char byte : bytes)
        appendHexDigits(text, byte, 2);
}

void appendValue(std::string& text, const Record& record, const RecordForm::Type& type, std::uint32_t offset,
                 std::uint32_t numEntries)
{
    switch (type.kind)
    {
    case FieldKind::FLOAT:
        return appendReal(text, record.floatAt(offset), record.unsignedAt(offset, 4));
    case FieldKind::DOUBLE:
    {
        const double value = record.doubleAt(offset);
        return appendReal(text, value, std::bit_cast<std::uint64_t>(value));
    }
    case FieldKind::BOOL:
    {
        const std::int32_t value = record.intAt(offset, type.width);
        if (value != 0 && value != 1)
            return appendNumber(text, value);
        text += value == 0 ? "false" : "true";
        return;
    }
    case FieldKind::ENUM:
        return appendEnum(text, record.unsignedAt(offset, type.width), type.names);
    case FieldKind::FLAGS:
        return appendFlags(text, record.unsignedAt(offset, type.width), type.names, type.width);
    case FieldKind::OBJECT:
    case FieldKind::ARRAY:
    case FieldKind::VERTEX_ARRAY:
    {
        const std::int32_t index = record.intAt(offset, type.width);
        if (index == -1)
        {
            text += "none";
            return;
        }
        if (index >= 0 && std::uint32_t(index) < numEntries)
            text += '@';
        return appendNumber(text, index);
    }
    default:
        return appendNumber(text, record.intAt(offset, type.width));
    }
}

std::string readCharacters(const TextReader& reader, const TextToken& token)
{
    if (!token.quoted)
        return std::string(token.text);
    std::string characters;
    characters.reserve(token.text.size());
    for (std::size_t i = 0; i < token.text.size(); ++i)
    {
        const char c = token.text[i];
        if (c != '\\')
        {
            characters += c;
            continue;
        }
        const char escape = ++i < token.text.size() ? token.text[i] : '\0';
        if (escape == 'x' && i + 2 < token.text.size() && digitOf(token.text[i + 1]) >= 0 &&
            digitOf(token.text[i + 2]) >= 0)
        {
            characters += char(16 * digitOf(token.text[i + 1]) + digitOf(token.text[i + 2]));
            i += 2;
        }
        else if (escape == '"' || escape == '\\')
            characters += escape;
        else if (escape == 'n')
            characters += '\n';
        else if (escape == 't')
            characters += '\t';
        else
            reader.fail(token, "an escape is \\\", \\\\, \\n, \\t or \\x with two digits");
    }
    return characters;
}

std::uint64_t readNumber(const TextReader& reader, const TextToken& token, std::uint64_t largest)
{
    std::string_view digits = token.text;
    const bool isHex = digits.substr(0, 2) == "0x";
    if (isHex)
        digits.remove_prefix(2);
    std::uint64_t value = 0;
    const char* end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, value, isHex ? 16 : 10);
    if (token.quoted || digits.empty() || result.ec != std::errc() || result.ptr != end)
        reader.fail(token, "a number should stand here, not " + std::string(token.text.substr(0, 40)));
    if (value > largest)
        reader.fail(token, "the number is larger than " + std::to_string(largest));
    return value;
}

std::int32_t readInt(const TextReader& reader, const TextToken& token)
{
    std::int32_t value = 0;
    const char* end = token.text.data() + token.text.size();
    const auto result = std::from_chars(token.text.data(), end, value);
    if (token.quoted || result.ec != std::errc() || result.ptr != end)
        reader.fail(token, "a whole number should stand here, not " + std::string(token.text.substr(0, 40)));
    return value;
}

void readHex(const TextReader& reader, const TextToken& token, std::vector<unsigned char>& bytes)
{
    if (token.quoted || token.text.size() % 2 != 0)
        reader.fail(token, "bytes are pairs of hexadecimal digits");
    for (std::size_t i = 0; i < token.text.size(); i += 2)
    {
        const int high = digitOf(token.text[i]);
        const int low = digitOf(token.text[i + 1]);
        if (high < 0 || low < 0)
            reader.fail(token, "bytes are pairs of hexadecimal digits");
        bytes.push_back(static_cast<unsigned char>(16 * high + low));
    }
}

std::int32_t readValue(const TextReader& reader, const TextToken& token, const RecordForm::Type& type,
                       const EntryLabels& labels, EntryData& data)
{
    switch (type.kind)
    {
    case FieldKind::FLOAT:
        data.put(readReal<float, std::uint32_t>(reader, token));
        return 0;
    case FieldKind::DOUBLE:
        data.put(readReal<double, std::uint64_t>(reader, token));
        return 0;
    case FieldKind::BOOL:
        if (token.is("false") || token.is("true"))
            return putWord(data, token.is("true") ? 1 : 0, type.width);
        return putWord(data, std::uint32_t(readSigned(reader, token, type.width)), type.width);
    case FieldKind::ENUM:
        return putWord(data, readNamed(reader, token, type), type.width);
    case FieldKind::FLAGS:
        return putWord(data, readFlags(reader, token, type), type.width);
    case FieldKind::OBJECT:
    case FieldKind::ARRAY:
    case FieldKind::VERTEX_ARRAY:
        return putWord(data, readReference(reader, token, labels), type.width);
    default:
        return putWord(data, std::uint32_t(readSigned(reader, token, type.width)), type.width);
    }
}

} // namespace native
