// What differs between the values of two records, and which references of theirs belong together.
#pragma once

#include "Diff.h"
#include "Record.h"

#include <functional>

namespace native
{

/// References at the same place of two records; entries that do not exist are -1.
struct ReferencePair
{
    const char* field;
    std::int32_t index; // among several, -1 for a single one
    std::int32_t a;
    std::int32_t b;
    bool isChild; // of a node
};

bool isReference(FieldKind kind);

class RecordDiff
{
public:
    /// Takes differences; those of objects that are only on one side have the entry's index as value.
    using Report = std::function<void(Difference&&)>;
    /// Whether entry `a` of the one file and `b` of the other look like the same object.
    using Alike = std::function<bool(std::int32_t a, std::int32_t b)>;

    RecordDiff(double numberTolerance, std::uint32_t entriesOfA, std::uint32_t entriesOfB, Report reportTo,
               Alike areAlike);

    /// Compares the fields that have the same names. With `sameClass` fields that only one record has are
    /// differences. References are appended to `pairs` and not followed.
    void compare(const Record& a, const Record& b, bool sameClass, std::vector<ReferencePair>& pairs);

private:
    struct Side
    {
        const Record& record;
        const Field& field;
    };
    /// Values that are compared as one: `count` of a type from `offset` on.
    struct Item
    {
        FieldKind kind;
        std::uint8_t width;
        std::uint32_t count;
        ValueNames names = {};
    };

    void takeLonely(const Side& side, bool isOfA, bool isTold, std::vector<ReferencePair>& pairs);
    void compareField(const Side& a, const Side& b, std::vector<ReferencePair>& pairs);
    void compareTexts(const Side& a, const Side& b);
    void compareValues(const Side& a, const Side& b);
    void compareTables(const Side& a, const Side& b);
    void compareRests(const Record& a, const Record& b);
    void pairReferences(const Side& a, const Side& b, std::vector<ReferencePair>& pairs);
    bool isSameItem(const Record& a, std::uint32_t offsetA, const Record& b, std::uint32_t offsetB,
                    const Item& item) const;
    bool isSameNumber(double a, double b) const;
    std::int32_t entryOf(const Side& side, std::uint32_t i, std::uint32_t numEntries) const;
    void reportItem(const std::string& name, const Record& a, std::uint32_t offsetA, const Record& b,
                    std::uint32_t offsetB, const Item& item);
    void reportCounts(const std::string& name, std::uint32_t a, std::uint32_t b);
    /// Counts a difference among many of one field; true for those that are listed.
    bool listAnother();
    void endField(const std::string& name);

    double tolerance;
    std::uint32_t numEntriesA;
    std::uint32_t numEntriesB;
    Report report;
    Alike alike;
    std::uint32_t differing = 0; // items of the field that is compared
};

} // namespace native
