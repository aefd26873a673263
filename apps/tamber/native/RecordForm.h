// How the record of a class is described: its values, asked for one after the other.
#pragma once

#include "Record.h"

namespace native
{

/// Takes a description. One form finds the values in the data of an entry, another reads them from a text. Once it has
/// stopped, because values ran out or break a rule, every answer is 0 and nothing more is taken.
class RecordForm
{
public:
    virtual ~RecordForm() = default;

    /// What the values of a field have in common.
    struct Type
    {
        FieldKind kind;
        std::uint8_t width = 4;
        ValueNames names = {};
        const char* family = nullptr;
    };

    /// A fixed number of values. Returns the first, 0 when it is no integer.
    virtual std::int32_t values(const char* name, const Type& type, int number) = 0;
    /// An integer, and so many items of `perItem` values. Below 0 it counts as 0.
    virtual void list(const char* name, const Type& type, int perItem) = 0;
    /// An integer, and so many characters with the zero that ends them.
    virtual void text(const char* name) = 0;
    /// Characters filled up with zeros to `size` bytes.
    virtual void fixedText(const char* name, int size) = 0;
    /// An integer, and so many rows.
    virtual void table(const char* name, std::span<const Column> columns) = 0;
    /// All that is left.
    virtual void rest(const char* name) = 0;
    /// The fields that follow belong to record `index` of records that repeat; -1 for none.
    virtual void beginItem(int index) = 0;
    virtual bool hasStopped() const = 0;
    /// Stops because the field named last breaks `rule`.
    virtual void fail(const char* rule) = 0;

    std::int32_t value(const char* name, const Type& type) { return values(name, type, 1); }
    std::int32_t integer(const char* name) { return value(name, {FieldKind::INT}); }
    std::int32_t boolean(const char* name) { return value(name, {FieldKind::BOOL}); }
    void number(const char* name) { value(name, {FieldKind::FLOAT}); }
    void vector(const char* name, int dimensions) { values(name, {FieldKind::FLOAT}, dimensions); }
    void bits(const char* name) { value(name, {FieldKind::FLAGS}); }
};

/// Describes the record of a class to `form`: false, and nothing said, for an unknown class.
bool describeRecord(std::string_view className, RecordForm& form);

} // namespace native
