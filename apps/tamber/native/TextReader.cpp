#include "TextReader.h"

namespace native
{

namespace
{

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r';
}

} // namespace

TextError::TextError(std::uint64_t line, std::uint64_t column, const std::string& rule)
    : std::runtime_error("line " + std::to_string(line) + ", column " + std::to_string(column) + ": " + rule)
{
}

TextReader::TextReader(std::string_view characters) : text(characters)
{
    scan();
    if (!present)
        skipLine();
}

void TextReader::fail(const std::string& rule) const
{
    throw TextError(line, present ? current.column : position - lineStart + 1, rule);
}

void TextReader::fail(const TextToken& token, const std::string& rule) const
{
    throw TextError(token.line, token.column, rule);
}

// Makes the next word of the line current.
void TextReader::scan()
{
    while (position < text.size() && isBlank(text[position]))
        ++position;
    present = position < text.size() && text[position] != '\n' && text[position] != '#';
    if (!present)
        return;
    current.line = line;
    current.column = position - lineStart + 1;
    current.quoted = text[position] == '"';
    if (current.quoted)
        return scanQuoted();
    const std::size_t start = position;
    while (position < text.size() && !isBlank(text[position]) && text[position] != '\n')
        ++position;
    current.text = text.substr(start, position - start);
}

void TextReader::scanQuoted()
{
    const std::size_t start = ++position;
    while (position < text.size() && text[position] != '"' && text[position] != '\n')
    {
        const bool escaped =
            text[position] == '\\' && position + 1 < text.size() && text[position + 1] != '\n';
        position += escaped ? 2 : 1;
    }
    if (position >= text.size() || text[position] != '"')
        fail("a quote is not closed on its line");
    current.text = text.substr(start, position - start);
    ++position;
    if (position < text.size() && !isBlank(text[position]) && text[position] != '\n')
        fail("a blank follows a closing quote");
}

// To the next line that has words.
void TextReader::skipLine()
{
    present = false;
    while (!present && !ended)
    {
        const std::size_t end = text.find('\n', position);
        ended = end == std::string_view::npos;
        if (ended)
            return;
        position = lineStart = end + 1;
        ++line;
        scan();
    }
}

TextToken TextReader::take()
{
    if (!present)
        fail("something is missing here");
    const TextToken taken = current;
    scan();
    return taken;
}

bool TextReader::takeValue(TextToken& token)
{
    while (!present)
    {
        skipLine();
        if (ended || !current.is("-"))
            return false;
        scan();
    }
    token = take();
    return true;
}

void TextReader::endLine()
{
    if (present)
        fail("the line should end here");
    skipLine();
}

} // namespace native
