// How values are spelt in a text.
#pragma once

#include "EntryData.h"
#include "EntryLabels.h"
#include "RecordForm.h"
#include "TextReader.h"

#include <string>

namespace native
{

// Spelling.

/// Numbers in the shortest form that reads back the same.
void appendNumber(std::string& text, std::int64_t value);
void appendHexNumber(std::string& text, std::uint32_t value, int digits);
/// In quotes, all but printable ASCII escaped.
void appendQuoted(std::string& text, std::string_view characters);
/// As it is where it is a plain word, else in quotes.
void appendWord(std::string& text, std::string_view word);
void appendHex(std::string& text, Bytes bytes);
/// The value at `offset` of the record's data; references below `numEntries` as "@5".
void appendValue(std::string& text, const Record& record, const RecordForm::Type& type, std::uint32_t offset,
                 std::uint32_t numEntries);

// Reading. What cannot be read leaves as TextError.

/// The characters of a word, or of what is quoted with its escapes resolved.
std::string readCharacters(const TextReader& reader, const TextToken& token);
/// Decimal, or hexadecimal behind "0x".
std::uint64_t readNumber(const TextReader& reader, const TextToken& token, std::uint64_t largest);
std::int32_t readInt(const TextReader& reader, const TextToken& token);
/// Appends the bytes that pairs of hexadecimal digits stand for.
void readHex(const TextReader& reader, const TextToken& token, std::vector<unsigned char>& bytes);
/// Appends the value that a word stands for. Returns it, 0 when it is no integer.
std::int32_t readValue(const TextReader& reader, const TextToken& token, const RecordForm::Type& type,
                       const EntryLabels& labels, EntryData& data);

} // namespace native
