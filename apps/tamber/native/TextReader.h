#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace native
{

// What is wrong with a text, and where.
class TextError : public std::runtime_error
{
public:
    TextError(std::uint64_t line, std::uint64_t column, const std::string& rule);
};

// A word of a text, or what stands between quotes, escapes and all.
struct TextToken
{
    std::string_view text;
    bool quoted = false;
    std::uint64_t line = 0;
    std::uint64_t column = 0;

    bool is(std::string_view word) const { return !quoted && text == word; }
};

// Takes a text to words. Lines count: what begins on one goes on in the next lines that begin with "-". "#" at the
// beginning of a word makes the rest of the line a comment; empty lines are passed over.
class TextReader
{
public:
    /// Stands on the first line that has words. The text must outlive the reader.
    explicit TextReader(std::string_view text);

    bool atEnd() const { return ended; }
    /// True behind the last word of a line.
    bool atLineEnd() const { return !present; }
    const TextToken& peek() const { return current; }
    TextToken take();
    /// The next word of a field, which may go on in lines that begin with "-". When there is none, false, and the
    /// reader stands on the next line.
    bool takeValue(TextToken& token);
    /// To the next line; nothing may be left of this one.
    void endLine();
    /// To the next line, whatever stands on this one.
    void skipLine();

    [[noreturn]] void fail(const std::string& rule) const;
    [[noreturn]] void fail(const TextToken& token, const std::string& rule) const;

private:
    void scan();
    void scanQuoted();

    std::string_view text;
    std::size_t position = 0; // behind the current word
    std::size_t lineStart = 0;
    std::uint64_t line = 1;
    bool present = false; // a word is current
    bool ended = false;
    TextToken current;
};

} // namespace native
