// What holds for the records of all classes: the kinds of their fields.
#include "CheckState.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace native
{

namespace
{

// Every bit of these tells of some content; modules may use those that have no name here.
constexpr std::uint32_t CONTENT_FLAGS = 0x7E00;

class FieldCheck
{
public:
    explicit FieldCheck(const EntryRecord& entryRecord)
        : entry(entryRecord),
          state(entryRecord.state),
          record(entryRecord.record)
    {
    }

    void run()
    {
        for (const Field& field : record.getFields())
        {
            checkPadding(field);
            if (field.counted && field.stored < 0 && !isVertexArray())
                entry.add(Kind::COUNT_NEGATIVE, field.countOffset,
                          std::string(field.name) + ": " + std::to_string(field.stored));
            checkValues(field);
        }
        checkEnd();
    }

private:
    bool isVertexArray() const { return std::string_view(entry.facts.info->name) == "tbVertexArray"; }

    void checkPadding(const Field& field)
    {
        if (field.counted)
        {
            expectZeros(behind, field.countOffset);
            behind = field.countOffset + 4;
        }
        expectZeros(behind, field.offset);
        behind = field.end();
    }

    void expectZeros(std::uint32_t from, std::uint32_t to)
    {
        const Bytes data = record.getData();
        for (std::uint32_t i = from; i < to; ++i)
            if (data[i] != 0)
                return entry.add(Kind::PADDING, i);
    }

    void checkEnd()
    {
        const RecordProblem& problem = record.getProblem();
        const std::string where = std::string(problem.field) + ": " + (problem.rule ? problem.rule : "");
        switch (problem.cause)
        {
        case RecordProblem::NONE:
            if (!record.isWhole())
                entry.add(Kind::RECORD_UNREAD, record.getEnd(),
                          std::to_string(record.getData().size() - record.getEnd()) + " bytes");
            return;
        case RecordProblem::TOO_SHORT:
            return entry.add(Kind::RECORD_SHORT, problem.offset, where);
        case RecordProblem::TOO_MANY:
            return entry.add(Kind::COUNT_BEYOND, problem.offset, where);
        case RecordProblem::RULE_BROKEN:
            return entry.add(std::string_view(entry.facts.info->name) == "tbArray" ? Kind::ARRAY_TYPE
                                                                                   : Kind::PLUGIN_COUNT,
                             problem.offset);
        }
    }

    void checkValues(const Field& field)
    {
        switch (field.kind)
        {
        case FieldKind::INT:
        case FieldKind::BYTES:
            return;
        case FieldKind::BOOL:
            return checkEach(field, Kind::BOOL_VALUE, [](std::uint32_t value) { return value > 1; });
        case FieldKind::ENUM:
            return checkChoice(field);
        case FieldKind::FLAGS:
            return checkFlags(field);
        case FieldKind::FLOAT:
            return checkNumbers(field);
        case FieldKind::DOUBLE:
            for (std::uint32_t i = 0; i < field.count; ++i)
                if (!std::isfinite(record.getDouble(field, i)))
                    return entry.add(Kind::NOT_FINITE, field.offset + i * field.width, field.name);
            return;
        case FieldKind::TEXT:
            return checkText(field);
        case FieldKind::OBJECT:
        case FieldKind::ARRAY:
        case FieldKind::VERTEX_ARRAY:
            return checkReferences(field);
        case FieldKind::TABLE:
            for (const Column& column : record.getColumns(field))
                checkColumn(field, column);
            return;
        }
    }

    /// Reports the first value of a field that is bad, and how many are.
    template <class IsBad>
    void checkEach(const Field& field, Kind kind, IsBad isBad)
    {
        std::uint32_t number = 0;
        std::uint32_t first = 0;
        for (std::uint32_t i = 0; i < field.count; ++i)
            if (isBad(record.getUnsigned(field, i)) && number++ == 0)
                first = i;
        if (number == 0)
            return;
        std::string detail = std::string(field.name) + ": " + std::to_string(record.getInt(field, first));
        if (number > 1)
            detail += " and " + std::to_string(number - 1) + " more";
        entry.add(kind, field.offset + first * field.width, std::move(detail));
    }

    void checkChoice(const Field& field)
    {
        const std::string_view name = field.name;
        if (name == "primitive" || (name == "type" && record.getProblem().rule))
            return; // the class says more of these
        checkEach(field, Kind::ENUM_VALUE,
                  [&field](std::uint32_t value)
                  {
                      return std::none_of(field.names.begin(), field.names.end(),
                                          [value](const ValueName& known) { return known.value == value; });
                  });
    }

    void checkFlags(const Field& field)
    {
        if (field.names.empty())
            return;
        std::uint32_t known = std::string_view(field.name) == "travFlags" ? CONTENT_FLAGS : 0;
        for (const ValueName& name : field.names)
            known |= name.value;
        checkEach(field, Kind::FLAGS_UNDEFINED,
                  [known](std::uint32_t value) { return (value & ~known) != 0; });
    }

    void checkNumbers(const Field& field)
    {
        for (std::uint32_t i = 0; i < field.count; ++i)
            if (!std::isfinite(record.getFloat(field, i)))
                return entry.add(Kind::NOT_FINITE, field.offset + 4 * i, field.name);
    }

    void checkColumn(const Field& field, const Column& column)
    {
        // A range without a width has an infinite inverse, which is meant.
        if (column.kind != FieldKind::FLOAT || std::string_view(column.name) == "inverseWidth")
            return;
        for (std::uint32_t row = 0; row < field.count; ++row)
            for (std::uint32_t i = 0; i < column.count; ++i)
            {
                const std::uint32_t offset = field.offset + row * field.width + column.offset + 4 * i;
                if (!std::isfinite(record.floatAt(offset)))
                    return entry.add(Kind::NOT_FINITE, offset, column.name);
            }
    }

    void checkText(const Field& field)
    {
        const Bytes bytes = record.getBytes(field);
        if (bytes.empty())
            return;
        const auto end = std::find(bytes.begin(), bytes.end(), 0);
        const auto length = std::uint32_t(end - bytes.begin());
        if (end == bytes.end())
            entry.add(Kind::TEXT_NO_END, field);
        else if (field.counted && length + 1 < field.count)
            entry.add(Kind::TEXT_EARLY_END, field.offset + length, field.name);
        const auto control =
            std::find_if(bytes.begin(), end, [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; });
        if (control != end)
            entry.add(Kind::TEXT_CONTROL, field.offset + std::uint32_t(control - bytes.begin()), field.name);
    }

    void checkReferences(const Field& field)
    {
        const Edge::Role role = roleOf(field);
        const ClassInfo* family = field.family ? findClass(field.family) : nullptr;
        for (std::uint32_t i = 0; i < field.count; ++i)
            checkReference(field, i, role, family);
    }

    static Edge::Role roleOf(const Field& field)
    {
        if (field.kind != FieldKind::OBJECT)
            return Edge::DATA;
        const std::string_view name = field.name;
        return name == "children" ? Edge::CHILD
               : name == "traits" ? Edge::TRAIT
               : name == "target" ? Edge::TARGET
                                  : Edge::ATTRIBUTE;
    }

    void checkReference(const Field& field, std::uint32_t i, Edge::Role role, const ClassInfo* family)
    {
        const std::int32_t target = record.getInt(field, i);
        const auto report = [&](Kind kind)
        {
            if (!state.findings.countOnly(kind))
                entry.add(kind, field.offset + 4 * i,
                          std::string(field.name) + ": entry " + std::to_string(target));
        };
        if (target == -1)
            return;
        if (target < 0)
            return report(Kind::REFERENCE_NEGATIVE);
        if (target >= state.image.getNumEntries())
            return report(Kind::REFERENCE_RANGE);
        if (target == entry.entry)
            return report(Kind::REFERENCE_SELF);
        const ClassInfo* info = state.facts[std::size_t(target)].info;
        if (role == Edge::DATA)
        {
            const char* wanted = field.kind == FieldKind::ARRAY ? "tbArray" : "tbVertexArray";
            if (state.image.getTagName(target) != wanted)
                return report(Kind::REFERENCE_KIND);
        }
        else if (info && info->nature == ClassInfo::DATA)
            return report(Kind::REFERENCE_KIND);
        else if (info && family && !isOf(info, family))
        {
            report(Kind::REFERENCE_FAMILY);
            role = Edge::ATTRIBUTE; // it is read all the same
        }
        else if (isSecond(role, target, info))
            report(role == Edge::CHILD ? Kind::CHILD_TWICE : Kind::TRAIT_TWICE);
        if (state.edges.size() < CheckState::MOST_EDGES)
            state.edges.emplace_back(target, role);
        else if (!std::exchange(state.edgesFull, true))
            entry.add(Kind::TOO_MANY_REFERENCES, field);
    }

    bool isSecond(Edge::Role role, int target, const ClassInfo* info)
    {
        if (role == Edge::CHILD)
            return std::exchange(state.lastParent[std::size_t(target)], entry.entry) == entry.entry;
        if (role != Edge::TRAIT || !info)
            return false;
        const auto place = std::size_t(info - knownClasses().data());
        traitClasses.resize(knownClasses().size());
        const bool second = traitClasses[place];
        traitClasses[place] = true;
        return second;
    }

    const EntryRecord& entry;
    CheckState& state;
    const Record& record;
    std::uint32_t behind = 0; // the values that have been checked
    std::vector<bool> traitClasses;
};

} // namespace

void checkFields(const EntryRecord& entry)
{
    if (entry.facts.info)
        FieldCheck(entry).run();
}

} // namespace native
