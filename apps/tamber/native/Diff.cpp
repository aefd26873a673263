#include "Diff.h"

#include "DiffPath.h"
#include "DiffRecord.h"

#include <algorithm>
#include <map>
#include <unordered_set>
#include <utility>

namespace native
{

namespace
{

constexpr std::string_view PLUG_INS = "tbPlugIns";
constexpr std::int32_t NONE = -1;
constexpr std::int32_t PASSED_OVER = -2; // no step came there, and none need

// Objects that stand at several places are read again for each; beyond this in bytes their differences of sharing are
// told and no more.
constexpr std::uint64_t READ_AGAIN_ALLOWED = std::uint64_t{64} << 20;
constexpr std::uint64_t READ_AGAIN_FACTOR = 4;

bool isData(std::string_view className)
{
    const ClassInfo* info = findClass(className);
    return info && info->nature == ClassInfo::DATA;
}

std::int32_t findPlugIns(DiffSide& side)
{
    for (std::uint32_t i = 0; i < side.getNumEntries(); ++i)
        if (side.getClass(std::int32_t(i)) == PLUG_INS)
            return std::int32_t(i);
    return NONE;
}

// Walks two files in step. Each pair of entries is compared once; an entry has one partner, unless it is shared
// in one file and copied in the other.
class DiffWalk
{
public:
    DiffWalk(Image& imageA, Image& imageB, const DiffOptions& diffOptions)
        : a(imageA),
          b(imageB),
          options(diffOptions),
          firstOfA(a.getNumEntries(), NONE),
          firstOfB(b.getNumEntries(), NONE),
          records(
              options.tolerance, a.getNumEntries(), b.getNumEntries(),
              [this](Difference&& difference) { reportOfRecord(std::move(difference)); },
              [this](std::int32_t x, std::int32_t y) { return areAlike(x, y); }),
          readAgain(READ_AGAIN_ALLOWED + READ_AGAIN_FACTOR * (imageA.getLength() + imageB.getLength()))
    {
    }

    DiffResult run()
    {
        const std::int32_t plugInsA = findPlugIns(a);
        const std::int32_t plugInsB = findPlugIns(b);
        walkFrom(0, 0);
        passOverPlugIns(plugInsA, firstOfA);
        passOverPlugIns(plugInsB, firstOfB);
        walkUnreached();
        comparePlugIns(plugInsA, plugInsB);
        return std::move(result);
    }

private:
    static void passOverPlugIns(std::int32_t entry, std::vector<std::int32_t>& first)
    {
        if (entry != NONE && first[std::size_t(entry)] == NONE)
            first[std::size_t(entry)] = PASSED_OVER;
    }

    void walkFrom(std::int32_t entryA, std::int32_t entryB)
    {
        std::vector<std::int32_t> waiting;
        std::vector<ReferencePair> pairs;
        meet({"", NONE, entryA, entryB, false}, NONE, waiting);
        while (!waiting.empty())
        {
            const std::int32_t step = waiting.back();
            waiting.pop_back();
            pairs.clear();
            compareEntries(step, pairs);
            const std::size_t from = waiting.size();
            for (const ReferencePair& pair : pairs)
                meet(pair, step, waiting);
            std::reverse(waiting.begin() + std::ptrdiff_t(from), waiting.end());
        }
    }

    // What hangs below something that the other file has not is told with that.
    static void passOver(DiffSide& side, std::vector<std::int32_t>& waiting, std::vector<std::int32_t>& first)
    {
        std::vector<unsigned char> data;
        while (!waiting.empty())
        {
            const std::int32_t entry = waiting.back();
            waiting.pop_back();
            if (first[std::size_t(entry)] != NONE)
                continue;
            first[std::size_t(entry)] = PASSED_OVER;
            if (side.read(entry, data))
                appendReferences(side, entry, data, waiting);
        }
    }

    static void appendReferences(DiffSide& side, std::int32_t entry, Bytes data,
                                 std::vector<std::int32_t>& to)
    {
        const Record record(side.getClass(entry), data, side.getImage().getOrder(entry));
        for (const Field& field : record.getFields())
            for (std::uint32_t i = 0; isReference(field.kind) && i < field.count; ++i)
                if (const std::int32_t index = record.getInt(field, i);
                    index >= 0 && std::uint32_t(index) < side.getNumEntries())
                    to.push_back(index);
    }

    // What no reference leads to, in the order of the directories, class by class.
    void walkUnreached()
    {
        passOver(a, lonelyOfA, firstOfA);
        passOver(b, lonelyOfB, firstOfB);
        std::map<std::string_view, std::vector<std::int32_t>> left; // of B, the last first
        for (std::uint32_t i = b.getNumEntries(); i > 0; --i)
            if (firstOfB[i - 1] == NONE)
                left[b.getClass(std::int32_t(i - 1))].push_back(std::int32_t(i - 1));
        const auto takeLeft = [&](std::string_view className)
        {
            std::vector<std::int32_t>& entries = left[className];
            while (!entries.empty())
            {
                const std::int32_t entry = entries.back();
                entries.pop_back();
                if (firstOfB[std::size_t(entry)] == NONE)
                    return entry;
            }
            return NONE;
        };
        for (std::uint32_t i = 0; i < a.getNumEntries(); ++i)
        {
            if (firstOfA[i] != NONE)
                continue;
            const std::int32_t match = takeLeft(a.getClass(std::int32_t(i)));
            if (match == NONE)
                reportEntry(i, describe(a, std::int32_t(i)), "none");
            else
                walkFrom(std::int32_t(i), match);
        }
        for (std::uint32_t i = 0; i < b.getNumEntries(); ++i)
        {
            if (firstOfB[i] != NONE)
                continue;
            reportEntry(i, "none", describe(b, std::int32_t(i)));
            lonelyOfB.push_back(std::int32_t(i));
            passOver(b, lonelyOfB, firstOfB);
        }
    }

    // Takes up a pair of entries where they have not met.
    void meet(const ReferencePair& pair, std::int32_t parent, std::vector<std::int32_t>& waiting)
    {
        if (pair.a == NONE || pair.b == NONE)
        {
            if (pair.a == NONE)
                lonelyOfB.push_back(pair.b);
            else
                lonelyOfA.push_back(pair.a);
            return reportMissing(pair, parent);
        }
        std::int32_t& stepOfA = firstOfA[std::size_t(pair.a)];
        std::int32_t& stepOfB = firstOfB[std::size_t(pair.b)];
        if (stepOfA == PASSED_OVER && stepOfB == PASSED_OVER)
            return;
        const bool freshA = stepOfA == NONE;
        const bool freshB = stepOfB == NONE;
        if (!freshA || !freshB)
        {
            const bool met = (stepOfA >= 0 && steps[std::size_t(stepOfA)].b == pair.b) ||
                             (stepOfB >= 0 && steps[std::size_t(stepOfB)].a == pair.a);
            if (met || !others.insert(std::uint64_t(pair.a) << 32 | std::uint32_t(pair.b)).second)
                return;
            reportSharing(pair, parent, stepOfA, stepOfB);
            if ((!freshA && !freshB) || !mayReadAgain(pair, freshA))
                return;
        }
        steps.push_back({parent, pair.field, pair.index, pair.isChild, pair.a, pair.b});
        const auto step = std::int32_t(steps.size() - 1);
        if (freshA)
            stepOfA = step;
        if (freshB)
            stepOfB = step;
        waiting.push_back(step);
    }

    bool mayReadAgain(const ReferencePair& pair, bool freshA)
    {
        const ImageEntry& known = freshA ? b.getImage().getEntries()[std::size_t(pair.b)]
                                         : a.getImage().getEntries()[std::size_t(pair.a)];
        if (known.size > readAgain)
            return false;
        readAgain -= known.size;
        return true;
    }

    void compareEntries(std::int32_t step, std::vector<ReferencePair>& pairs)
    {
        present = step;
        const DiffStep at = steps[std::size_t(step)];
        const std::string_view classA = a.getClass(at.a);
        const std::string_view classB = b.getClass(at.b);
        const bool sameClass = classA == classB;
        if (!sameClass)
            reportOfRecord({Difference::CLASS, {}, {}, printable(classA), printable(classB)});
        const bool readA = a.read(at.a, dataA);
        const bool readB = b.read(at.b, dataB);
        if (!readA || !readB)
        {
            const auto describeRead = [](bool read) { return read ? "can be read" : "cannot be read"; };
            if (readA || readB || !isStoredAlike(at.a, at.b))
                reportOfRecord({Difference::UNREADABLE, {}, {}, describeRead(readA), describeRead(readB)});
            if (readA)
                appendReferences(a, at.a, dataA, lonelyOfA);
            if (readB)
                appendReferences(b, at.b, dataB, lonelyOfB);
            return;
        }
        records.compare(Record(classA, dataA, a.getImage().getOrder(at.a)),
                        Record(classB, dataB, b.getImage().getOrder(at.b)), sameClass, pairs);
    }

    // What cannot be read is the same when its bytes in the files are.
    bool isStoredAlike(std::int32_t entryA, std::int32_t entryB)
    {
        const ImageEntry& recordA = a.getImage().getEntries()[std::size_t(entryA)];
        const ImageEntry& recordB = b.getImage().getEntries()[std::size_t(entryB)];
        const Region regionA = a.getImage().getStored(entryA);
        const Region regionB = b.getImage().getStored(entryB);
        if (recordA.size != recordB.size || recordA.compression != recordB.compression ||
            regionA.size != regionB.size)
            return false;
        return regionA.size == 0 || (a.getImage().readRegion(regionA, dataA) &&
                                     b.getImage().readRegion(regionB, dataB) && dataA == dataB);
    }

    void comparePlugIns(std::int32_t entryA, std::int32_t entryB)
    {
        if (entryA == NONE && entryB == NONE)
            return;
        const bool readA = entryA != NONE && a.read(entryA, dataA);
        const bool readB = entryB != NONE && b.read(entryB, dataB);
        bool differ = readA != readB || (entryA == NONE) != (entryB == NONE);
        if (readA && readB)
        {
            std::vector<ReferencePair> pairs;
            RecordDiff(0.0, 0, 0, [&differ](Difference&&) { differ = true; }, {})
                .compare(Record(PLUG_INS, dataA, a.getImage().getOrder(entryA)),
                         Record(PLUG_INS, dataB, b.getImage().getOrder(entryB)), true, pairs);
        }
        if (differ)
            result.notes.emplace_back("the lists of plug-ins differ");
    }

    bool areAlike(std::int32_t entryA, std::int32_t entryB)
    {
        if (entryA == NONE || entryB == NONE)
            return entryA == entryB;
        return a.hashOf(entryA) == b.hashOf(entryB);
    }

    static std::string describe(DiffSide& side, std::int32_t entry)
    {
        if (entry == NONE)
            return "none";
        const std::string className = printable(side.getClass(entry));
        const std::string label = side.labelOf(entry);
        return label == className ? className : className + " \"" + label + '"';
    }

    // A difference costs no text unless it is listed.
    template <class Make>
    void report(Make make)
    {
        if (result.count++ < options.limit)
            result.listed.push_back(make());
    }

    // Between the records of the present step.
    void reportOfRecord(Difference&& difference)
    {
        report(
            [&]
            {
                const DiffStep& at = steps[std::size_t(present)];
                if (at.parent == NONE || !isData(a.getClass(at.a)))
                {
                    difference.path = pathOf(steps, present, a);
                    return std::move(difference);
                }
                // Arrays are values of what refers to them.
                difference.path = pathOf(steps, at.parent, a);
                std::string& field = difference.field;
                const bool isContent = field.rfind("vertices", 0) == 0 || field.rfind("elements", 0) == 0;
                field = indexed(at.field, at.index) + (isContent       ? field.substr(8)
                                                       : field.empty() ? field
                                                                       : "." + field);
                return std::move(difference);
            });
    }

    void reportMissing(const ReferencePair& pair, std::int32_t parent)
    {
        report(
            [&]
            {
                return Difference{Difference::MISSING, pathOf(steps, parent, a),
                                  indexed(pair.field, pair.index), describe(a, pair.a), describe(b, pair.b)};
            });
    }

    void reportEntry(std::uint32_t entry, const std::string& inA, const std::string& inB)
    {
        report(
            [&] {
                return Difference{Difference::MISSING, "entry " + std::to_string(entry), {}, inA, inB};
            });
    }

    void reportSharing(const ReferencePair& pair, std::int32_t parent, std::int32_t stepOfA,
                       std::int32_t stepOfB)
    {
        const auto describeStep = [this](std::int32_t step)
        { return step < 0 ? std::string("an object of its own") : "the same as " + pathOf(steps, step, a); };
        report(
            [&]
            {
                return Difference{
                    Difference::SHARING, parent == NONE ? std::string() : pathOf(steps, parent, a),
                    indexed(pair.field, pair.index), describeStep(stepOfA), describeStep(stepOfB)};
            });
    }

    DiffSide a;
    DiffSide b;
    const DiffOptions& options;
    std::vector<DiffStep> steps;
    std::vector<std::int32_t> firstOfA; // by entry: the step that came to it first
    std::vector<std::int32_t> firstOfB;
    std::vector<std::int32_t> lonelyOfA; // what only one file has
    std::vector<std::int32_t> lonelyOfB;
    std::unordered_set<std::uint64_t> others; // pairs of entries that have other partners
    RecordDiff records;
    std::uint64_t readAgain;
    std::int32_t present = NONE;
    std::vector<unsigned char> dataA;
    std::vector<unsigned char> dataB;
    DiffResult result;
};

} // namespace

const char* nameOf(Difference::Kind kind)
{
    constexpr const char* NAMES[] = {"value", "count", "class", "missing", "sharing", "unreadable", "more"};
    return NAMES[kind];
}

DiffResult diffImages(Image& a, Image& b, const DiffOptions& options)
{
    return DiffWalk(a, b, options).run();
}

} // namespace native
