#include "TextRecord.h"

#include <algorithm>
#include <limits>

namespace native
{

namespace
{

constexpr std::string_view REST = "rest";
constexpr std::string_view RAW = "raw";
constexpr std::string_view COUNT = "count=";
constexpr std::string_view NEW_ROW = "\n    -";

constexpr std::uint32_t MOST_ON_A_LINE = 16; // single values that follow their name on the same line
constexpr std::uint32_t VALUES_IN_A_ROW = 12;
constexpr std::size_t BYTES_IN_A_ROW = 32;

void appendText(std::string& text, const Record& record, const Field& field)
{
    const Bytes bytes = record.getBytes(field);
    const std::string_view all(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (field.counted && field.count == 0)
    {
        text += field.stored == 0 ? " none" : "";
        return;
    }
    const std::string_view characters = record.getText(field);
    // The zero that ends it goes without saying, and so do those that a text of fixed size is filled up with.
    const bool plain = field.counted ? characters.size() + 1 == all.size()
                                     : characters.size() < all.size() &&
                                           all.find_first_not_of('\0', characters.size()) == all.npos;
    if (!plain)
        (text += ' ') += RAW;
    text += ' ';
    appendQuoted(text, plain ? characters : all);
}

void appendValues(std::string& text, const Record& record, const Field& field, std::uint32_t numEntries)
{
    const RecordForm::Type type{field.kind, field.width, field.names, field.family};
    const bool wraps = field.perItem > 1 ? field.count > field.perItem : field.count > MOST_ON_A_LINE;
    const std::uint32_t inRow = !wraps ? field.count : field.perItem > 1 ? field.perItem : VALUES_IN_A_ROW;
    for (std::uint32_t i = 0; i < field.count; ++i)
    {
        if (wraps && i % inRow == 0)
            text += NEW_ROW;
        text += ' ';
        appendValue(text, record, type, field.offset + i * field.width, numEntries);
    }
}

void appendTable(std::string& text, const Record& record, const Field& field, std::uint32_t numEntries)
{
    const auto columns = record.getColumns(field);
    for (const Column& column : columns)
        (text += ' ') += column.name;
    for (std::uint32_t row = 0; row < field.count; ++row)
    {
        text += NEW_ROW;
        for (const Column& column : columns)
        {
            const std::uint32_t offset = field.offset + row * field.width + column.offset;
            for (std::uint32_t i = 0; i < column.count; ++i)
            {
                text += ' ';
                appendValue(text, record, {column.kind, column.width}, offset + i * column.width, numEntries);
            }
        }
    }
}

void appendField(std::string& text, const Record& record, const Field& field, std::uint32_t numEntries)
{
    (text += "  ") += field.name;
    if (field.counted && field.stored < 0)
        appendNumber((text += ' ') += COUNT, field.stored);
    switch (field.kind)
    {
    case FieldKind::TEXT:
        appendText(text, record, field);
        break;
    case FieldKind::BYTES:
        appendBytes(text, record.getBytes(field));
        break;
    case FieldKind::TABLE:
        appendTable(text, record, field, numEntries);
        break;
    default:
        appendValues(text, record, field, numEntries);
    }
    text += '\n';
}

// Reads the values of a record from a text.
class TextForm : public RecordForm
{
public:
    TextForm(TextReader& textReader, const EntryLabels& entryLabels, EntryData& entryData)
        : reader(textReader),
          labels(entryLabels),
          data(entryData)
    {
    }

    std::int32_t values(const char* name, const Type& type, int number) override
    {
        if (!beginField(name))
            return 0;
        std::int32_t first = 0;
        TextToken token;
        int taken = 0;
        for (; reader.takeValue(token); ++taken)
        {
            if (taken == number)
                reader.fail(token, "more values than \"" + std::string(name) + "\" has");
            const std::int32_t value = readValue(reader, token, type, labels, data);
            if (taken == 0)
                first = value;
        }
        if (taken < number)
            reader.fail(field, "fewer values than \"" + std::string(name) + "\" has");
        return first;
    }

    void list(const char* name, const Type& type, int perItem) override
    {
        if (!beginField(name))
            return;
        const std::size_t place = beginCount();
        const std::int32_t stored = readStored();
        if (type.kind == FieldKind::BYTES)
        {
            const std::size_t from = data.getBytes().size();
            readBytes(reader, data.getBytes());
            return setCount(place, stored, data.getBytes().size() - from);
        }
        TextToken token;
        std::size_t taken = 0;
        for (; reader.takeValue(token); ++taken)
            readValue(reader, token, type, labels, data);
        if (taken % std::size_t(perItem) != 0)
            reader.fail(field, "values of \"" + std::string(name) + "\" come by " + std::to_string(perItem));
        setCount(place, stored, taken / std::size_t(perItem));
    }

    void text(const char* name) override
    {
        if (!beginField(name))
            return;
        const std::size_t place = beginCount();
        const std::int32_t stored = readStored();
        const std::size_t from = data.getBytes().size();
        if (stored == 0 && !reader.atLineEnd() && reader.peek().is("none"))
            reader.take();
        else if (stored == 0 && readTextBytes())
            data.getBytes().push_back(0);
        reader.endLine();
        setCount(place, stored, data.getBytes().size() - from);
    }

    void fixedText(const char* name, int size) override
    {
        if (!beginField(name))
            return;
        const std::size_t end = data.getBytes().size() + std::size_t(size);
        const bool plain = readTextBytes();
        const std::size_t taken = data.getBytes().size();
        if (plain ? taken >= end : taken != end)
            reader.fail(field, "the text of \"" + std::string(name) + "\" does not fit into " +
                                   std::to_string(size) + " bytes");
        data.getBytes().resize(end);
        reader.endLine();
    }

    void table(const char* name, std::span<const Column> columns) override
    {
        if (!beginField(name))
            return;
        const std::size_t place = beginCount();
        const std::int32_t stored = readStored();
        for (const Column& column : columns)
            if (const TextToken token = reader.take(); !token.is(column.name))
                reader.fail(token, "the column \"" + std::string(column.name) + "\" should stand here");
        if (!reader.atLineEnd())
            reader.fail("there are no more columns");
        std::size_t rows = 0;
        TextToken token;
        while (reader.takeValue(token))
        {
            readRow(token, columns);
            ++rows;
        }
        setCount(place, stored, rows);
    }

    void rest(const char* name) override
    {
        if (beginField(name))
            readBytes(reader, data.getBytes());
    }

    void beginItem(int) override {}
    bool hasStopped() const override { return stopped; }
    void fail(const char*) override { stopped = true; }

private:
    // False where the fields end early, with the bytes that are left.
    bool beginField(const char* name)
    {
        stopped = stopped || (!reader.atEnd() && reader.peek().is(REST));
        if (stopped)
            return false;
        if (reader.atEnd() || !reader.peek().is(name))
            reader.fail("the field \"" + std::string(name) + "\" should stand here");
        field = reader.take();
        return true;
    }

    std::size_t beginCount() { return data.put(std::uint32_t(0)); }

    // A number below 0 that stands in place of the true one, which is 0 then; else 0.
    std::int32_t readStored()
    {
        if (reader.atLineEnd() || reader.peek().quoted || reader.peek().text.substr(0, COUNT.size()) != COUNT)
            return 0;
        TextToken token = reader.take();
        token.text.remove_prefix(COUNT.size());
        const std::int32_t stored = readInt(reader, token);
        if (stored >= 0)
            reader.fail(token, "the number of values is said only where it is below 0");
        return stored;
    }

    void setCount(std::size_t place, std::int32_t stored, std::size_t number)
    {
        if (number > std::size_t(std::numeric_limits<std::int32_t>::max()))
            reader.fail("more values than a file can hold");
        if (stored < 0 && number > 0)
            reader.fail("no values follow a number below 0");
        data.set(place, stored < 0 ? std::uint32_t(stored) : std::uint32_t(number));
    }

    // True for a text whose end goes without saying, false for one that says every byte.
    bool readTextBytes()
    {
        TextToken token = reader.take();
        const bool raw = token.is(RAW);
        if (raw)
            token = reader.take();
        if (!token.quoted)
            reader.fail(token, "a text should stand here in quotes");
        const std::string characters = readCharacters(reader, token);
        if (!raw && characters.find('\0') != characters.npos)
            reader.fail(token, "a text that holds a zero is a raw one");
        data.getBytes().insert(data.getBytes().end(), characters.begin(), characters.end());
        return !raw;
    }

    void readRow(TextToken token, std::span<const Column> columns)
    {
        bool first = true;
        for (const Column& column : columns)
            for (int i = 0; i < column.count; ++i)
            {
                if (!first)
                    token = reader.take();
                readValue(reader, token, {column.kind, column.width}, labels, data);
                first = false;
            }
    }

    TextReader& reader;
    const EntryLabels& labels;
    EntryData& data;
    TextToken field; // the name of the field that is read
    bool stopped = false;
};

} // namespace

void appendBytes(std::string& text, Bytes bytes)
{
    const bool wraps = bytes.size() > BYTES_IN_A_ROW;
    for (std::size_t i = 0; i < bytes.size(); i += BYTES_IN_A_ROW)
    {
        text += wraps ? NEW_ROW : "";
        text += ' ';
        appendHex(text, bytes.subspan(i, std::min(BYTES_IN_A_ROW, bytes.size() - i)));
    }
}

void appendRecord(std::string& text, const Record& record, std::uint32_t numEntries)
{
    for (const Field& field : record.getFields())
        appendField(text, record, field, numEntries);
    if (record.isWhole())
        return;
    (text += "  ") += REST;
    appendBytes(text, record.getData().subspan(record.getEnd()));
    text += '\n';
}

void readBytes(TextReader& reader, std::vector<unsigned char>& bytes)
{
    TextToken token;
    while (reader.takeValue(token))
        readHex(reader, token, bytes);
}

void readRecord(TextReader& reader, std::string_view className, const EntryLabels& labels, EntryData& data)
{
    TextForm form(reader, labels, data);
    if (!describeRecord(className, form))
        form.rest("data");
    if (reader.atEnd() || !reader.peek().is(REST))
        return;
    reader.take();
    readBytes(reader, data.getBytes());
}

} // namespace native
