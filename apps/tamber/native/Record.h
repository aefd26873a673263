// What stands in the data of an entry: the record of its class as a sequence of named, typed fields.
#pragma once

#include "ImageBytes.h"

#include <span>
#include <string_view>
#include <vector>

namespace native
{

using Bytes = std::span<const unsigned char>;

enum class FieldKind : std::uint8_t
{
    INT,          // signed, of 4, 2 or 1 bytes
    BOOL,         // 0 or 1, of 4, 2 or 1 bytes
    ENUM,         // one of `names`
    FLAGS,        // bits, of which some have `names`
    FLOAT,        // 4 bytes
    DOUBLE,       // 8 bytes
    TEXT,         // characters and what ends them: one value of `count` bytes
    BYTES,        // one block of `count` bytes
    OBJECT,       // an entry's index, -1 for none
    ARRAY,        // the index of a "tbArray" entry
    VERTEX_ARRAY, // the index of a "tbVertexArray" entry
    TABLE         // rows of columns
};

/// A value of an enumeration, or the bit of a set of flags, by its name.
struct ValueName
{
    std::uint32_t value;
    const char* name;
};
using ValueNames = std::span<const ValueName>;

/// One of the values that every row of a table holds, `count` numbers of `width` bytes from byte `offset` of the row.
/// A kind of FLAGS without names is a word of bits, such as a packed colour.
struct Column
{
    const char* name;
    FieldKind kind;
    std::uint8_t width;
    std::uint8_t count;
    std::uint8_t offset;
};

/// Some values of one name and type. `count` values of `width` bytes each lie from `offset` of the entry's data on;
/// of a TABLE, rows.
struct Field
{
    const char* name;
    FieldKind kind;
    std::uint8_t width;
    std::uint8_t perItem = 1;  // values that make one item: 3 for positions in space
    bool counted = false;      // its number stands before it
    std::int32_t stored = 0;   // that number as it is in the file; below 0 it counts as 0
    std::uint32_t countOffset; // where it stands, where the values begin when there is none
    std::uint32_t offset;
    std::uint32_t count;
    std::int32_t item = -1;       // which of the records that repeat it belongs to (plug-ins), else -1
    ValueNames names;             // of ENUM and FLAGS
    const char* family = nullptr; // of OBJECT: the class that the object must descend from
    std::uint32_t firstColumn = 0;
    std::uint32_t numColumns = 0;

    std::uint32_t end() const { return offset + count * width; }
};

/// What keeps a record from being walked to its end.
struct RecordProblem
{
    enum Cause : std::uint8_t
    {
        NONE,
        TOO_SHORT,  // the data ends before a value
        TOO_MANY,   // a number of items that the data does not hold
        RULE_BROKEN // a value that the class cannot have
    };
    Cause cause = NONE;
    const char* rule = nullptr; // null: nothing does
    const char* field = "";
    std::uint32_t offset = 0;
};

/// What is known of a class.
struct ClassInfo
{
    enum Nature : std::uint8_t
    {
        OBJECT,   // may stand in a file
        ABSTRACT, // only its children may
        SERVICE,  // never saved
        DATA      // no object: an array, a vertex array, the list of plug-ins
    };
    const char* name;
    const char* parent; // null for the root and for data
    Nature nature;
};

/// Every class that is known, parents before children.
std::span<const ClassInfo> knownClasses();
/// Null for an unknown class. As where objects are created, letters of either case are the same.
const ClassInfo* findClass(std::string_view name);
/// True when `name` is `ancestor` or descends from it; false for unknown classes.
bool descendsFrom(std::string_view name, std::string_view ancestor);

/// The record of one entry, walked along the description of its class. The data must outlive it. Takes no more memory
/// than a small multiple of the data, whatever that holds.
class Record
{
public:
    /// `data` is unpacked. The record of an unknown class is one field of bytes.
    Record(std::string_view className, Bytes data, ByteOrder order);

    const std::vector<Field>& getFields() const { return fields; }
    const RecordProblem& getProblem() const { return problem; }
    /// Behind the last field. What follows, up to the data's size, belongs to no field.
    std::uint32_t getEnd() const { return end; }
    bool isKnown() const { return known; }
    /// Walked to its end, and no byte left over.
    bool isWhole() const { return !problem.rule && end == data.size(); }

    Bytes getData() const { return data; }
    ByteOrder getOrder() const { return order; }
    std::span<const Column> getColumns(const Field& field) const
    {
        return std::span(columns).subspan(field.firstColumn, field.numColumns);
    }
    /// Null when the record has no such field.
    const Field* find(std::string_view name) const;

    /// The bytes of a field's values.
    Bytes getBytes(const Field& field) const
    {
        return data.subspan(field.offset, field.end() - field.offset);
    }
    /// Value `i` as an integer, of 4, 2 or 1 bytes; not of FLOAT and DOUBLE.
    std::int32_t getInt(const Field& field, std::uint32_t i = 0) const
    {
        return intAt(field.offset + i * field.width, field.width);
    }
    /// The same as it is told without a sign, which names of ENUM and FLAGS go by.
    std::uint32_t getUnsigned(const Field& field, std::uint32_t i = 0) const
    {
        return unsignedAt(field.offset + i * field.width, field.width);
    }
    float getFloat(const Field& field, std::uint32_t i = 0) const
    {
        return floatAt(field.offset + i * field.width);
    }
    double getDouble(const Field& field, std::uint32_t i = 0) const
    {
        return doubleAt(field.offset + i * field.width);
    }
    /// The characters of a text, without what ends them.
    std::string_view getText(const Field& field) const;

    std::int32_t intAt(std::uint32_t offset, int width) const;
    std::uint32_t unsignedAt(std::uint32_t offset, int width) const;
    float floatAt(std::uint32_t offset) const;
    double doubleAt(std::uint32_t offset) const;

private:
    friend class RecordWalk;

    Bytes data;
    ByteOrder order;
    bool known = false;
    std::uint32_t end = 0;
    RecordProblem problem;
    std::vector<Field> fields;
    std::vector<Column> columns;
};

} // namespace native
