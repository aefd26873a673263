#include "DiffRecord.h"

#include "TextValues.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace native
{

namespace
{

constexpr std::uint32_t MOST_ITEMS_OF_A_FIELD = 3;

// What stands there between updates only, and is made anew from the rest.
constexpr std::string_view TRAV_FLAGS = "travFlags";
constexpr std::uint32_t PASSING_TRAV_FLAGS = 0x00F7;
constexpr std::string_view MATRIX_TYPE = "matrix.type";

constexpr std::string_view CHILDREN = "children";

// The field's name as it is listed: with the number of the record that repeats it.
std::string nameOf(const Field& field)
{
    const std::string name = field.name;
    return field.item < 0 ? name : "[" + std::to_string(field.item) + "]." + name;
}

const Field* findMatch(const Record& record, const Field& field, std::size_t place)
{
    const auto& fields = record.getFields();
    const auto matches = [&field](const Field& other)
    { return other.item == field.item && std::strcmp(other.name, field.name) == 0; };
    if (place < fields.size() && matches(fields[place]))
        return &fields[place];
    if (field.item >= 0)
        return nullptr; // records that repeat have the same fields in the same places
    const auto found = std::find_if(fields.begin(), fields.end(), matches);
    return found != fields.end() ? &*found : nullptr;
}

const Column* findColumn(std::span<const Column> columns, const char* name)
{
    const auto found =
        std::find_if(columns.begin(), columns.end(),
                     [name](const Column& column) { return std::strcmp(column.name, name) == 0; });
    return found != columns.end() ? &*found : nullptr;
}

} // namespace

bool isReference(FieldKind kind)
{
    return kind == FieldKind::OBJECT || kind == FieldKind::ARRAY || kind == FieldKind::VERTEX_ARRAY;
}

RecordDiff::RecordDiff(double numberTolerance, std::uint32_t entriesOfA, std::uint32_t entriesOfB,
                       Report reportTo, Alike areAlike)
    : tolerance(numberTolerance),
      numEntriesA(entriesOfA),
      numEntriesB(entriesOfB),
      report(std::move(reportTo)),
      alike(std::move(areAlike))
{
}

void RecordDiff::compare(const Record& a, const Record& b, bool sameClass, std::vector<ReferencePair>& pairs)
{
    const auto& fieldsA = a.getFields();
    const auto& fieldsB = b.getFields();
    for (std::size_t i = 0; i < fieldsA.size(); ++i)
    {
        const Field* match = findMatch(b, fieldsA[i], i);
        if (match)
            compareField({a, fieldsA[i]}, {b, *match}, pairs);
        else
            takeLonely({a, fieldsA[i]}, true, sameClass, pairs);
    }
    for (std::size_t i = 0; i < fieldsB.size(); ++i)
        if (!findMatch(a, fieldsB[i], i))
            takeLonely({b, fieldsB[i]}, false, sameClass, pairs);
    if (sameClass)
        compareRests(a, b);
}

// A field that only one of the records has.
void RecordDiff::takeLonely(const Side& side, bool isOfA, bool isTold, std::vector<ReferencePair>& pairs)
{
    const Field& field = side.field;
    if (!isReference(field.kind))
    {
        if (isTold)
            report(
                {Difference::MISSING, {}, nameOf(field), isOfA ? "there" : "none", isOfA ? "none" : "there"});
        return;
    }
    for (std::uint32_t i = 0; i < field.count; ++i)
    {
        const std::int32_t entry = entryOf(side, i, isOfA ? numEntriesA : numEntriesB);
        if (entry != -1)
            pairs.push_back({field.name, field.counted ? std::int32_t(i) : -1, isOfA ? entry : -1,
                             isOfA ? -1 : entry, false});
    }
}

void RecordDiff::compareField(const Side& a, const Side& b, std::vector<ReferencePair>& pairs)
{
    const Field& field = a.field;
    // What is told by another field, of another type, differs there already.
    if (field.kind != b.field.kind || (field.kind != FieldKind::TABLE && field.width != b.field.width))
        return;
    differing = 0;
    if (isReference(field.kind))
        pairReferences(a, b, pairs);
    else if (field.kind == FieldKind::TEXT)
        compareTexts(a, b);
    else if (field.kind == FieldKind::TABLE)
        compareTables(a, b);
    else
        compareValues(a, b);
    endField(nameOf(field));
}

void RecordDiff::compareTexts(const Side& a, const Side& b)
{
    const std::string_view textA = a.record.getText(a.field);
    const std::string_view textB = b.record.getText(b.field);
    if (textA == textB)
        return;
    Difference difference{Difference::VALUE, {}, nameOf(a.field), {}, {}};
    appendQuoted(difference.a, textA);
    appendQuoted(difference.b, textB);
    report(std::move(difference));
}

void RecordDiff::compareValues(const Side& a, const Side& b)
{
    const Field& field = a.field;
    if (field.count != b.field.count)
        return reportCounts(nameOf(field), field.count / field.perItem, b.field.count / b.field.perItem);
    if (field.name == MATRIX_TYPE && tolerance > 0.0)
        return;
    if (field.name == TRAV_FLAGS &&
        ((a.record.getUnsigned(field) ^ b.record.getUnsigned(b.field)) & ~PASSING_TRAV_FLAGS) == 0)
        return;
    const Bytes bytesA = a.record.getBytes(field);
    const Bytes bytesB = b.record.getBytes(b.field);
    if (a.record.getOrder() == b.record.getOrder() &&
        std::equal(bytesA.begin(), bytesA.end(), bytesB.begin()))
        return;
    const bool isBlock = field.kind == FieldKind::BYTES;
    const Item item{isBlock ? FieldKind::FLAGS : field.kind, field.width, field.perItem, field.names};
    const std::uint32_t size = std::uint32_t(field.perItem) * field.width;
    const std::uint32_t number = field.count / field.perItem;
    for (std::uint32_t i = 0; i < number; ++i)
    {
        const std::uint32_t offsetA = field.offset + i * size;
        const std::uint32_t offsetB = b.field.offset + i * size;
        if (!isSameItem(a.record, offsetA, b.record, offsetB, item) && listAnother())
            reportItem(nameOf(field) + (number > 1 || field.counted ? "[" + std::to_string(i) + "]" : ""),
                       a.record, offsetA, b.record, offsetB, item);
    }
}

void RecordDiff::compareTables(const Side& a, const Side& b)
{
    const Field& field = a.field;
    if (field.count != b.field.count)
        return reportCounts(nameOf(field), field.count, b.field.count);
    const auto columnsA = a.record.getColumns(field);
    const auto columnsB = b.record.getColumns(b.field);
    const Bytes bytesA = a.record.getBytes(field);
    const Bytes bytesB = b.record.getBytes(b.field);
    if (a.record.getOrder() == b.record.getOrder() && columnsA.size() == columnsB.size() &&
        bytesA.size() == bytesB.size() && std::equal(bytesA.begin(), bytesA.end(), bytesB.begin()))
        return;
    // Columns that only one has are told by another field.
    std::vector<std::pair<const Column*, const Column*>> columns;
    for (const Column& column : columnsA)
        if (const Column* match = findColumn(columnsB, column.name))
            columns.emplace_back(&column, match);
    for (std::uint32_t row = 0; row < field.count; ++row)
        for (const auto& [columnA, columnB] : columns)
        {
            const Item item{columnA->kind, columnA->width, columnA->count};
            const std::uint32_t offsetA = field.offset + row * field.width + columnA->offset;
            const std::uint32_t offsetB = b.field.offset + row * b.field.width + columnB->offset;
            if (!isSameItem(a.record, offsetA, b.record, offsetB, item) && listAnother())
                reportItem(nameOf(field) + "[" + std::to_string(row) + "]." + columnA->name, a.record,
                           offsetA, b.record, offsetB, item);
        }
}

void RecordDiff::compareRests(const Record& a, const Record& b)
{
    const Bytes restA = a.getData().subspan(a.getEnd());
    const Bytes restB = b.getData().subspan(b.getEnd());
    if (restA.size() == restB.size() && std::equal(restA.begin(), restA.end(), restB.begin()))
        return;
    const auto describe = [](Bytes rest) { return std::to_string(rest.size()) + " bytes behind the record"; };
    report({Difference::VALUE, {}, {}, describe(restA), describe(restB)});
}

bool RecordDiff::isSameNumber(double a, double b) const
{
    if (a == b || (std::isnan(a) && std::isnan(b)))
        return true;
    return std::isfinite(a) && std::isfinite(b) &&
           std::abs(a - b) <= tolerance * std::max({1.0, std::abs(a), std::abs(b)});
}

bool RecordDiff::isSameItem(const Record& a, std::uint32_t offsetA, const Record& b, std::uint32_t offsetB,
                            const Item& item) const
{
    for (std::uint32_t i = 0; i < item.count; ++i, offsetA += item.width, offsetB += item.width)
    {
        bool same = false;
        if (item.kind == FieldKind::FLOAT)
            same = isSameNumber(a.floatAt(offsetA), b.floatAt(offsetB));
        else if (item.kind == FieldKind::DOUBLE)
            same = isSameNumber(a.doubleAt(offsetA), b.doubleAt(offsetB));
        else
            same = a.unsignedAt(offsetA, item.width) == b.unsignedAt(offsetB, item.width);
        if (!same)
            return false;
    }
    return true;
}

std::int32_t RecordDiff::entryOf(const Side& side, std::uint32_t i, std::uint32_t numEntries) const
{
    const std::int32_t index = side.record.getInt(side.field, i);
    return index >= 0 && std::uint32_t(index) < numEntries ? index : -1;
}

// By place. Where one list is longer, what looks alike at both ends belongs together first, so that one object more
// does not shift all others.
void RecordDiff::pairReferences(const Side& a, const Side& b, std::vector<ReferencePair>& pairs)
{
    const std::uint32_t countA = a.field.count;
    const std::uint32_t countB = b.field.count;
    const bool isChild = a.field.name == CHILDREN;
    const bool single = !a.field.counted || (countA == 1 && countB == 1);
    const auto add = [&](std::uint32_t i, std::int32_t entryA, std::int32_t entryB)
    {
        if (entryA != -1 || entryB != -1)
            pairs.push_back({a.field.name, single ? -1 : std::int32_t(i), entryA, entryB, isChild});
    };
    const auto inA = [&](std::uint32_t i) { return entryOf(a, i, numEntriesA); };
    const auto inB = [&](std::uint32_t i) { return entryOf(b, i, numEntriesB); };
    const std::uint32_t shorter = std::min(countA, countB);
    std::uint32_t front = shorter;
    std::uint32_t back = 0;
    if (countA != countB)
    {
        reportCounts(nameOf(a.field), countA, countB);
        for (front = 0; front < shorter && alike(inA(front), inB(front));)
            ++front;
        while (back < shorter - front && alike(inA(countA - 1 - back), inB(countB - 1 - back)))
            ++back;
        front = shorter - back;
    }
    for (std::uint32_t i = 0; i < front; ++i)
        add(i, inA(i), inB(i));
    for (std::uint32_t i = front; i < countA - back; ++i)
        add(i, inA(i), -1);
    for (std::uint32_t i = front; i < countB - back; ++i)
        add(i, -1, inB(i));
    for (std::uint32_t i = back; i > 0; --i)
        add(countA - i, inA(countA - i), inB(countB - i));
}

void RecordDiff::reportItem(const std::string& name, const Record& a, std::uint32_t offsetA, const Record& b,
                            std::uint32_t offsetB, const Item& item)
{
    const RecordForm::Type type{item.kind, item.width, item.names};
    const auto spell = [&](const Record& record, std::uint32_t offset)
    {
        std::string text;
        for (std::uint32_t i = 0; i < item.count; ++i)
        {
            text += i > 0 ? " " : "";
            appendValue(text, record, type, offset + i * item.width, 0);
        }
        return text;
    };
    report({Difference::VALUE, {}, name, spell(a, offsetA), spell(b, offsetB)});
}

void RecordDiff::reportCounts(const std::string& name, std::uint32_t a, std::uint32_t b)
{
    report({Difference::COUNT, {}, name, std::to_string(a), std::to_string(b)});
}

bool RecordDiff::listAnother()
{
    return ++differing <= MOST_ITEMS_OF_A_FIELD;
}

void RecordDiff::endField(const std::string& name)
{
    if (differing > MOST_ITEMS_OF_A_FIELD)
        report({Difference::MORE, {}, name, std::to_string(differing - MOST_ITEMS_OF_A_FIELD), {}});
}

} // namespace native
