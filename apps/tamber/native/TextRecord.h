// The record of an entry as text: a line for each field, with its name.
#pragma once

#include "TextValues.h"

namespace native
{

/// Appends the fields of a record, and the bytes that belong to none.
void appendRecord(std::string& text, const Record& record, std::uint32_t numEntries);
/// Appends bytes behind what is there already: on the same line when they are few, else in lines of their own.
void appendBytes(std::string& text, Bytes bytes);

/// Reads the fields of a class's record, in their order, and the bytes behind them. Leaves the reader on the line
/// behind them; what is wrong leaves as TextError.
void readRecord(TextReader& reader, std::string_view className, const EntryLabels& labels, EntryData& data);
/// Reads bytes up to the end of the field.
void readBytes(TextReader& reader, std::vector<unsigned char>& bytes);

} // namespace native
