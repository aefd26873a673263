#include "RecordForm.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace native
{

namespace
{

constexpr std::uint64_t aligned(std::uint64_t offset, std::uint32_t alignment)
{
    return (offset + alignment - 1) / alignment * alignment;
}

// 4-byte values stand at multiples of 4, doubles at multiples of 8, everything else is packed.
constexpr std::uint32_t alignmentOf(std::uint32_t width)
{
    return width == 4 || width == 8 ? width : 1;
}

std::uint32_t rowSizeOf(std::span<const Column> columns)
{
    std::uint32_t size = 0;
    for (const Column& column : columns)
        size += std::uint32_t(column.width) * column.count;
    return size;
}

} // namespace

// Finds the values of a record in the data of an entry.
class RecordWalk : public RecordForm
{
public:
    explicit RecordWalk(Record& target) : record(target), data(target.data) {}

    std::int32_t values(const char* name, const Type& type, int number) override
    {
        Field* field = place(name, type, record.end, std::uint32_t(number), type.width);
        if (!field)
            return 0;
        constexpr int ROW = 4; // of a matrix
        field->perItem = std::uint8_t(number > ROW && number % ROW == 0 ? ROW : number);
        const bool isNumber = type.kind == FieldKind::FLOAT || type.kind == FieldKind::DOUBLE;
        return isNumber ? 0 : record.getInt(*field);
    }

    void list(const char* name, const Type& type, int perItem) override
    {
        const Count count = takeCount(name);
        Field* field = placeCounted(name, type, count, std::uint32_t(perItem), type.width);
        if (field)
            field->perItem = std::uint8_t(perItem);
    }

    void text(const char* name) override
    {
        const Count count = takeCount(name);
        placeCounted(name, {FieldKind::TEXT, 1}, count, 1, 1);
    }

    void fixedText(const char* name, int size) override
    {
        place(name, {FieldKind::TEXT, 1}, record.end, std::uint32_t(size), 1);
    }

    void table(const char* name, std::span<const Column> columns) override
    {
        const Count count = takeCount(name);
        const std::uint32_t rowSize = rowSizeOf(columns);
        Field* field = placeCounted(name, {FieldKind::TABLE, std::uint8_t(rowSize)}, count, 1, rowSize);
        if (!field)
            return;
        field->firstColumn = std::uint32_t(record.columns.size());
        field->numColumns = std::uint32_t(columns.size());
        record.columns.insert(record.columns.end(), columns.begin(), columns.end());
    }

    void rest(const char* name) override
    {
        place(name, {FieldKind::BYTES, 1}, record.end, std::uint32_t(data.size()) - record.end, 1);
    }

    void beginItem(int index) override { item = index; }
    bool hasStopped() const override { return record.problem.rule != nullptr; }

    void fail(const char* rule) override
    {
        if (record.fields.empty())
            return stop(RecordProblem::RULE_BROKEN, "", record.end, rule);
        const Field& field = record.fields.back();
        stop(RecordProblem::RULE_BROKEN, field.name, field.offset, rule);
    }

private:
    struct Count
    {
        std::int32_t stored = 0;
        std::uint32_t offset = 0;
        bool taken = false;
    };

    void stop(RecordProblem::Cause cause, const char* name, std::uint32_t offset, const char* rule)
    {
        if (!hasStopped())
            record.problem = {cause, rule, name, offset};
    }

    // Reads the number that stands before items; the record goes on behind it once the items are found, too.
    Count takeCount(const char* name)
    {
        const std::uint64_t offset = aligned(record.end, 4);
        if (hasStopped())
            return {};
        if (offset + 4 > data.size())
        {
            stop(RecordProblem::TOO_SHORT, name, record.end, "the data ends before the number of items");
            return {};
        }
        return {record.intAt(std::uint32_t(offset), 4), std::uint32_t(offset), true};
    }

    Field* placeCounted(const char* name, const Type& type, const Count& count, std::uint32_t perItem,
                        std::uint32_t width)
    {
        if (!count.taken)
            return nullptr;
        const std::uint64_t number = count.stored > 0 ? std::uint64_t(count.stored) * perItem : 0;
        const std::uint64_t from = aligned(count.offset + 4, number > 0 ? alignmentOf(type.width) : 1);
        if (from + number * width > data.size())
        {
            stop(RecordProblem::TOO_MANY, name, count.offset, "more items than the data holds");
            return nullptr;
        }
        Field* field = place(name, type, count.offset + 4, std::uint32_t(number), width);
        if (!field)
            return nullptr;
        field->counted = true;
        field->stored = count.stored;
        field->countOffset = count.offset;
        return field;
    }

    Field* place(const char* name, const Type& type, std::uint32_t from, std::uint32_t number,
                 std::uint32_t width)
    {
        if (hasStopped())
            return nullptr;
        const std::uint32_t alignment = type.kind == FieldKind::TABLE ? 4 : alignmentOf(width);
        const std::uint64_t offset = number > 0 ? aligned(from, alignment) : from;
        if (offset + std::uint64_t(number) * width > data.size())
        {
            stop(RecordProblem::TOO_SHORT, name, record.end, "the data ends before the value");
            return nullptr;
        }
        Field field = {};
        field.name = name;
        field.kind = type.kind;
        field.width = std::uint8_t(width);
        field.countOffset = field.offset = std::uint32_t(offset);
        field.count = number;
        field.item = item;
        field.names = type.names;
        field.family = type.family;
        record.fields.push_back(field);
        record.end = field.end();
        return &record.fields.back();
    }

    Record& record;
    Bytes data;
    int item = -1;
};

Record::Record(std::string_view className, Bytes bytes, ByteOrder byteOrder) : data(bytes), order(byteOrder)
{
    constexpr std::size_t LARGEST = std::numeric_limits<std::int32_t>::max();
    if (data.size() > LARGEST)
        data = data.first(LARGEST);
    RecordWalk walk(*this);
    known = describeRecord(className, walk);
    if (!known)
        walk.rest("data");
}

const Field* Record::find(std::string_view name) const
{
    const auto place =
        std::find_if(fields.begin(), fields.end(), [name](const Field& field) { return field.name == name; });
    return place != fields.end() ? &*place : nullptr;
}

std::string_view Record::getText(const Field& field) const
{
    const Bytes bytes = getBytes(field);
    const auto* characters = reinterpret_cast<const char*>(bytes.data());
    const char* stop = std::find(characters, characters + bytes.size(), '\0');
    return {characters, std::size_t(stop - characters)};
}

std::uint32_t Record::unsignedAt(std::uint32_t offset, int width) const
{
    const unsigned char* bytes = data.data() + offset;
    switch (width)
    {
    case 1:
        return *bytes;
    case 2:
        return loadWord<std::uint16_t>(bytes, order);
    default:
        return loadWord<std::uint32_t>(bytes, order);
    }
}

std::int32_t Record::intAt(std::uint32_t offset, int width) const
{
    const std::uint32_t word = unsignedAt(offset, width);
    return width == 2 ? std::int16_t(word) : width == 1 ? std::int8_t(word) : std::int32_t(word);
}

float Record::floatAt(std::uint32_t offset) const
{
    return std::bit_cast<float>(unsignedAt(offset, 4));
}

double Record::doubleAt(std::uint32_t offset) const
{
    return std::bit_cast<double>(loadWord<std::uint64_t>(data.data() + offset, order));
}

} // namespace native
