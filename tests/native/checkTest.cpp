// Every kind of finding has a damage that brings exactly it about, and files that the library writes have none.
#include <tests/files/Mutator.h>
#include <tests/native/Specimen.h>
#include <tests/support/FileBuilder.h>
#include <tests/support/Messages.h>

#include <apps/tamber/native/FindingText.h>
#include <apps/tamber/native/Packing.h>
#include <tamber/io/tbFile.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbRef.h>
#include <tests/support/TempFile.h>

#include <functional>
#include <limits>

#include <gtest/gtest.h>

using namespace native;
using namespace native::layout;
using tbtest::FileBuilder;
using tbtest::findingsOf;
using tbtest::Specimen;

namespace
{
// Damages whose effects go further than one would list: the kind is there, others may be.
constexpr Kind WHATEVER{};

using Change = std::function<void(Specimen&)>;

struct Damage
{
    Kind kind;
    std::vector<Kind> also; // what cannot but come with it
    Change make;
};

constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();

std::string lengthAnd(const std::string& packed)
{
    return tbtest::Record().integer(int(packed.size())).get() + packed;
}

/// The last entry packed as pairs of one byte each, with its size.
std::string packedLast(const Specimen& file)
{
    std::string packed;
    for (const char c : file.lastStored())
        packed += std::string(1, '\1') + c;
    return packed + '\0';
}

std::string groupData(const std::vector<int>& children)
{
    return tbtest::Record().object().word(0).word(0).list(children);
}

/// Groups one below the other, each `times` in the one above through groups between them.
std::string chain(int levels, bool doubled)
{
    tbtest::Entries entries;
    for (int i = 0, next = 0; i + 1 < levels; ++i)
    {
        next += doubled ? 3 : 1;
        entries.push_back(
            {"tbGroup", groupData(doubled ? std::vector{next - 2, next - 1} : std::vector{next})});
        for (int side = 0; doubled && side < 2; ++side)
            entries.push_back({"tbGroup", groupData({next})});
    }
    entries.push_back({"tbGroup", groupData({})});
    return tbtest::buildFile(entries);
}

/// A group with so many attributes, all of them the root, in little space.
std::string manyReferences(std::size_t number)
{
    FileBuilder file;
    file.add("tbGroup", groupData({1}));
    std::string data = tbtest::Record().integer(0).word(0).integer(int(number));
    data.resize(data.size() + 4 * number);
    const std::vector<unsigned char> packed =
        pack({reinterpret_cast<const unsigned char*>(data.data()), data.size()});
    FileBuilder::Entry& entry = file.add("tbGroup", lengthAnd({packed.begin(), packed.end()}));
    entry.compression = RLE;
    entry.size = std::uint32_t(data.size());
    return file.build();
}

/// Entries on the same bytes, which unpack to more altogether than any reader takes.
std::string overBudget()
{
    FileBuilder file;
    const std::vector<unsigned char> packed = pack(std::vector<unsigned char>(100'000'000));
    FileBuilder::Entry& first = file.add("tbMaterial", lengthAnd({packed.begin(), packed.end()}));
    first.compression = RLE;
    first.size = 100'000'000;
    file.addOnSameBytes("tbMaterial", 2);
    return file.build();
}

/// The last entry stored as these bytes.
Change stored(const std::string& bytes, std::uint32_t size, std::uint32_t compression = RLE)
{
    return [=](Specimen& f) { f.setLastStored(bytes, size, compression); };
}

/// The list of plug-ins holds these modules and says that it holds `number`.
Change plugIns(const std::vector<std::string>& modules, int number)
{
    const std::string list = tbtest::Record().plugIns(modules, number);
    return stored(list, std::uint32_t(list.size()), NO_COMPRESSION);
}

/// The first child of the switch is the class's entry instead.
Change child(const char* className)
{
    return [=](Specimen& f) { f.setValue("tbSwitch", "children", std::uint32_t(f.find(className))); };
}

/// The second value of the field is the first one again.
Change twice(const char* className, const char* field)
{
    return [=](Specimen& f)
    {
        const std::size_t place = f.place(className, field);
        f.bytes.replace(place, 4, f.bytes.substr(place + 4, 4));
    };
}

Change sceneForStyle()
{
    return [](Specimen& f) { f.setRecord(f.find("tbStyle"), RECORD_TAG, f.getRecord(0, RECORD_TAG)); };
}

void moveIntoGap(Specimen& f)
{
    const int entry = f.find("tbMaterial");
    const std::uint32_t size = f.getRecord(entry, RECORD_DATA_SIZE);
    const auto gap = tbtest::imageOf(f.bytes).getGap();
    f.bytes.replace(std::size_t(gap.offset), size, f.bytes.substr(f.getRecord(entry, RECORD_OFFSET), size));
    f.setRecord(entry, RECORD_OFFSET, std::uint32_t(gap.offset));
}

/// The second material begins where the first does, and the other way round when they change places.
Change sameOffset(bool swapped)
{
    return [=](Specimen& f)
    {
        const int first = f.find("tbMaterial");
        const int second = f.find("tbMaterial", 1);
        const std::uint32_t place = f.getRecord(first, RECORD_OFFSET);
        if (swapped)
            f.setRecord(first, RECORD_OFFSET, f.getRecord(second, RECORD_OFFSET));
        f.setRecord(second, RECORD_OFFSET, place);
    };
}

void loseBytes(Specimen& f)
{
    f.bytes.insert(f.bytes.size() - f.lastStored().size(), "lost");
    f.setRecord(f.last(), RECORD_OFFSET, f.getRecord(f.last(), RECORD_OFFSET) + 4);
}

void dropRange(Specimen& f)
{
    const int entry = f.find("tbRangeSwitch");
    const std::uint32_t offset = f.getRecord(entry, RECORD_OFFSET);
    std::string data = f.bytes.substr(offset, f.getRecord(entry, RECORD_DATA_SIZE));
    const std::size_t place = f.countPlace("tbRangeSwitch", "ranges") - offset;
    data.erase(place + 4, 12);
    data.replace(place, 4, tbtest::Record().integer(1).get());
    f.bytes.replace(offset, data.size(), data);
    f.setRecord(entry, RECORD_DATA_SIZE, std::uint32_t(data.size()));
}

void makeStrayArray(Specimen& f)
{
    f.bytes =
        tbtest::buildFile({{"tbGroup", groupData({})}, {"tbArray", tbtest::Record().word(9).integer(0)}});
}

void mixOrders(Specimen& f)
{
    FileBuilder file;
    file.add("tbGroup", groupData({1}));
    file.add("tbGroup", tbtest::Record(true).object().word(0).word(0).list({})).magic = 0x653277BA;
    f.bytes = file.build();
}

// Of four points the last is over.
void makeClosedBezier(Specimen& file)
{
    file.setValue("tbPathAction", "spline.type", 3);
    file.setValue("tbPathAction", "spline.closed", 1);
}

const std::vector<Damage>& damages()
{
    using S = Specimen&;
    using enum Kind;
    static const std::vector<Damage> all = {
        {FILE_EMPTY, {}, [](S f) { f.bytes.clear(); }},
        {HEADER_SHORT, {}, [](S f) { f.bytes.resize(95); }},
        {MAGIC_UNKNOWN, {}, [](S f) { f.setByte(0, 1); }},
        {VERSION_NEWER, {}, [](S f) { f.setWord(HEADER_VERSION, 0x63000000); }},
        {RESERVED_NOT_ZERO, {}, [](S f) { f.setByte(95, 1); }},
        {NO_ENTRIES, {TAG_UNUSED, TRAILING}, [](S f) { f.setWord(HEADER_ENTRIES, 0); }},
        {TABLES_BEYOND_FILE, {WHATEVER}, [](S f) { f.setWord(HEADER_ENTRIES, 100'000); }},
        {TOO_MANY_ENTRIES, {WHATEVER}, [](S f) { f.setWord(HEADER_ENTRIES, LARGEST_COUNT + 1); }},
        {TOO_MANY_TAGS, {WHATEVER}, [](S f) { f.setWord(HEADER_TAGS, 0xFFFFFFFF); }},

        {TAG_INDEX, {}, [](S f) { f.setWord(f.tagPlace("tbMesh"), 99); }},
        {TAG_UNTERMINATED,
         {CLASS_UNKNOWN},
         [](S f) { f.renameTag("tbMaterial", std::string(TAG_NAME_SIZE, 'x').c_str()); }},
        {TAG_EMPTY, {}, [](S f) { f.renameTag("tbMaterial", ""); }},
        {TAG_CONTROL, {}, [](S f) { f.renameTag("tbMaterial", "tb\x1BMaterial"); }},
        {TAG_NOT_ASCII, {}, [](S f) { f.renameTag("tbMaterial", "tb\xC4Material"); }},
        {TAG_DUPLICATE, {SCENE_INSIDE}, [](S f) { f.renameTag("tbStyle", "tbScene"); }},
        {TAG_CASE, {CLASS_CASE, SCENE_INSIDE}, [](S f) { f.renameTag("tbStyle", "tbSCENE"); }},
        {TAG_PADDING, {}, [](S f) { f.setByte(f.tagPlace("tbMesh") + TAG_NAME + 40, 1); }},
        {TAG_UNUSED, {SCENE_INSIDE}, sceneForStyle()},

        {ENTRY_MAGIC, {}, [](S f) { f.setRecord(f.find("tbMaterial"), 0, 0x12345678); }},
        {ENTRY_TAG, {}, [](S f) { f.setRecord(f.find("tbMaterial"), RECORD_TAG, 99); }},
        {OFFSET_ZERO, {LEFTOVER}, [](S f) { f.setRecord(f.find("tbMaterial"), RECORD_OFFSET, 0); }},
        {OFFSET_IN_TABLES, {LEFTOVER}, [](S f) { f.setRecord(f.find("tbMaterial"), RECORD_OFFSET, 100); }},
        {DATA_BEYOND_FILE, {}, [](S f) { f.bytes.pop_back(); }},
        {DATA_IN_GAP, {LEFTOVER, DATA_ORDER}, moveIntoGap},
        {DATA_OVERLAP, {LEFTOVER, DATA_ORDER}, sameOffset(false)},
        {DATA_ORDER, {}, sameOffset(true)},
        {NO_DATA, {LEFTOVER}, [](S f) { f.setRecord(f.find("tbMaterial"), RECORD_DATA_SIZE, 0); }},
        {SIZE_TOO_LARGE, {}, [](S f) { f.setRecord(f.last(), RECORD_DATA_SIZE, 0x80000000); }},
        {COMPRESSION_UNKNOWN, {}, [](S f) { f.setRecord(f.find("tbMaterial"), RECORD_COMPRESSION, 2); }},
        {MIXED_ORDER, {}, mixOrders},
        {BUDGET, {WHATEVER}, [](S f) { f.bytes = overBudget(); }},
        {PLUGIN_LIST_TWICE,
         {UNREACHABLE, WHATEVER},
         [](S f) { f.setRecord(f.find("tbMaterial"), RECORD_TAG, f.getRecord(f.last(), RECORD_TAG)); }},

        {PACKED_LENGTH, {TRAILING}, stored(tbtest::Record().integer(0).bytes("rest"), 10)},
        {PACKED_RATIO, {}, stored(lengthAnd({1, 0, 0}), 1000)},
        {PACKED_NO_END, {}, stored(lengthAnd({4, 0, 4}), 8)},
        {PACKED_OVERFLOW, {}, stored(lengthAnd({4, 0, 5, 0, 0}), 8)},
        {PACKED_SHORT, {}, stored(lengthAnd({2, 0, 0}), 4)},
        {PACKED_TRAILING, {RECORD_UNREAD}, stored(lengthAnd({8, 0, 0, 9}), 8)},
        {PACKED_NEEDLESS,
         {},
         [](S f) { f.setLastStored(lengthAnd(packedLast(f)), std::uint32_t(f.lastStored().size()), RLE); }},
        {GAP_NOT_ZERO, {}, [](S f) { f.setByte(f.getRecord(0, RECORD_OFFSET) - 1, 1); }},
        {LEFTOVER, {}, loseBytes},
        {TRAILING, {}, [](S f) { f.bytes += "more"; }},

        {CLASS_UNKNOWN, {}, [](S f) { f.renameTag("tbMaterial", "tbUnknown"); }},
        {CLASS_NOT_CREATABLE, {RECORD_UNREAD}, [](S f) { f.renameTag("tbMaterial", "tbVisualTrait"); }},
        {CLASS_CASE, {}, [](S f) { f.renameTag("tbMaterial", "TBMATERIAL"); }},
        {RECORD_SHORT,
         {TRAILING},
         [](S f) { f.setRecord(f.last(), RECORD_DATA_SIZE, f.getRecord(f.last(), RECORD_DATA_SIZE) - 4); }},
        {COUNT_BEYOND, {}, [](S f) { f.setCount("tbMaterial", "name", 1'000'000); }},
        {COUNT_NEGATIVE, {}, [](S f) { f.setCount("tbMaterial", "attributes", 0xFFFFFFFE); }},
        {RECORD_UNREAD,
         {},
         [](S f) { f.setLastStored(f.lastStored() + "more", std::uint32_t(f.lastStored().size() + 4), 0); }},
        {PADDING, {}, [](S f) { f.setByte(f.countPlace("tbTransform", "attributes") - 1, 1); }},
        {TEXT_NO_END, {}, [](S f) { f.setByte(f.place("tbTransform", "name", 2), 'x'); }},
        {TEXT_EARLY_END, {}, [](S f) { f.setByte(f.place("tbTransform", "name", 0), 0); }},
        {TEXT_CONTROL, {}, [](S f) { f.setByte(f.place("tbTransform", "name", 0), 7); }},
        {BOOL_VALUE, {}, [](S f) { f.setValue("tbModel", "enabled", 2); }},
        {ENUM_VALUE, {}, [](S f) { f.setValue("tbTransform", "nodeFlags", 9); }},
        {FLAGS_UNDEFINED, {}, [](S f) { f.setValue("tbTransform", "flags", 0x4000); }},
        {NOT_FINITE, {}, [](S f) { f.setNumber("tbTransform", "matrix", NOT_A_NUMBER); }},
        {REFERENCE_RANGE, {UNREACHABLE}, [](S f) { f.setValue("tbSwitch", "children", 9999); }},
        {REFERENCE_NEGATIVE, {UNREACHABLE}, [](S f) { f.setValue("tbSwitch", "children", 0xFFFFFFFE); }},
        {REFERENCE_SELF, {UNREACHABLE}, child("tbSwitch")},
        {REFERENCE_KIND, {UNREACHABLE}, child("tbVertexArray")},
        {REFERENCE_FAMILY, {UNREACHABLE}, child("tbMaterial")},
        {CHILD_TWICE, {UNREACHABLE}, twice("tbSwitch", "children")},
        {TRAIT_TWICE, {UNREACHABLE}, twice("tbStyle", "traits")},

        {STATES_COUNT, {}, [](S f) { f.setCount("tbSwitch", "states", 3); }}, // a byte of the padding
        {RANGES_COUNT, {LEFTOVER}, dropRange},
        {RANGE_NEGATIVE, {}, [](S f) { f.setNumber("tbRangeSwitch", "ranges", -1.0f); }},
        {ITERATOR_ITEM, {}, [](S f) { f.setValue("tbAutoSwitch", "iterator.currentItem", 7); }},
        {ITERATOR_COUNT, {}, [](S f) { f.setValue("tbAutoSwitch", "iterator.numItems", 100); }},
        {ITERATOR_STEP, {}, [](S f) { f.setValue("tbAutoSwitch", "iterator.step", 0); }},
        {ITERATOR_TIME, {}, [](S f) { f.setNumber("tbAutoSwitch", "iterator.itemTimes", -1.0f, 1); }},
        {ITERATOR_FRAMES, {}, [](S f) { f.setValue("tbAutoSwitch", "iterator.totalFrames", 0x80000000); }},
        {MATRIX_TYPE, {}, [](S f) { f.setValue("tbTransform", "matrix.type", 1); }},
        {ARRAY_TYPE, {UNREACHABLE}, makeStrayArray},
        {VERTEX_TYPE, {}, [](S f) { f.setValue("tbVertexArray", "type", 0x19); }},
        {VERTEX_NO_POSITION, {}, [](S f) { f.setValue("tbVertexArray", "type", 0); }},
        {VERTEX_COUNT,
         {RECORD_UNREAD, INDEX_BEYOND},
         [](S f) { f.setCount("tbVertexArray", "vertices", 0x80000000); }},
        {MESH_PRIMITIVE, {}, [](S f) { f.setValue("tbMesh", "primitive", 3); }},
        {INDEX_COUNT, {}, [](S f) { f.setValue("tbMesh", "primitive", 1); }},
        {INDEX_BEYOND, {}, [](S f) { f.setValue("tbMesh", "indices", 8, 2); }},
        {RADIUS_NEGATIVE, {}, [](S f) { f.setNumber("tbSphereFence", "radius", -2.0f); }},
        {BOX_INVERTED, {}, [](S f) { f.setNumber("tbBoxFence", "min", 1.0f, 2); }},
        {IMAGE_SIZE, {}, [](S f) { f.setWord(f.place("tbTexture", "width"), 3); }},
        {MATERIAL_RANGE, {}, [](S f) { f.setNumber("tbMaterial", "opacity", 1.5f); }},
        {DISTANCE_RANGE, {}, [](S f) { f.setNumber("tbEmitter", "minDistance", 1e9f); }},
        {FILE_NAME_LEAVES, {}, [](S f) { f.bytes.replace(f.place("tbEmitter", "waveName"), 3, "../"); }},
        {PLUGIN_NAME, {}, plugIns({"x\\tbA.dll"}, 1)},
        {PLUGIN_TWICE, {}, plugIns({"tbA.dll", "libtbA.so"}, 2)},
        {PLUGIN_COUNT, {RECORD_UNREAD}, plugIns({}, 257)},
        {KEY_ORDER, {}, [](S f) { f.setNumber("tbKeyFrameAction", "positions.keys", 9.0f); }},
        {FRACTION_RANGE, {}, [](S f) { f.setNumber("tbSwitch", "transitionFraction", 1.5f); }},
        {DURATION_NEGATIVE, {}, [](S f) { f.setNumber("tbPathAction", "duration", -1.0f); }},
        {SPLINE_POINTS, {}, makeClosedBezier},
        {IMAGE_NAME_LEAVES,
         {},
         [](S f) { f.bytes.replace(f.place("tbTexture", "fileName", 0, 1), 3, "c:\\"); }},

        {ROOT_CLASS,
         {UNREACHABLE, RECORD_UNREAD, WHATEVER},
         [](S f) { f.renameTag("tbScene", "tbVisualTrait"); }},
        {UNREACHABLE, {}, [](S f) { f.setValue("tbSwitch", "children", 0xFFFFFFFF); }},
        {CYCLE, {UNREACHABLE}, child("tbScene")},
        {TARGET_ABOVE,
         {},
         [](S f) { f.setValue("tbPathAction", "target", std::uint32_t(f.find("tbTransform", 1))); }},
        {TOO_DEEP, {}, [](S f) { f.bytes = chain(1026, false); }},
        {TOO_MANY_PATHS, {}, [](S f) { f.bytes = chain(26, true); }},
        {TOO_MANY_REFERENCES, {WHATEVER}, [](S f) { f.bytes = manyReferences((std::size_t{1} << 24) + 1); }},
        {SCENE_INSIDE, {TAG_UNUSED}, sceneForStyle()},
        {CONTENT_FLAGS, {}, [](S f) { f.setValue("tbTransform", "travFlags", 0); }},
    };
    return all;
}

// Bytes that are announced and cannot be had.
class LongSource : public ImageSource
{
public:
    LongSource(const std::string& content, std::uint64_t announced) : bytes(content), length(announced) {}
    std::uint64_t getLength() const override { return length; }
    bool read(std::uint64_t offset, void* to, std::size_t size) override
    {
        if (offset + size > bytes.size())
            return false;
        std::copy_n(bytes.data() + offset, size, static_cast<char*>(to));
        return true;
    }

private:
    std::string bytes;
    std::uint64_t length;
};

std::set<int> numbersOf(const std::vector<Kind>& kinds)
{
    std::set<int> numbers;
    for (const Kind kind : kinds)
        numbers.insert(int(kind));
    return numbers;
}

bool libraryReads(const std::string& path)
{
    tbFile file;
    if (!file.open(path.c_str(), "r"))
        return false;
    const tbRef<tbBase> root(file.readObject(0));
    return root && file.getLastError() == tbFile::FILE_OK;
}

/// Whether the library refuses the file, which must have an error then.
bool isRefused(const std::string& path)
{
    const bool reads = libraryReads(path);
    const std::set<int> found = findingsOf(tbtest::readAll(path));
    const bool hasError =
        std::any_of(found.begin(), found.end(),
                    [](int number) { return infoOf(Kind(number)).severity == Severity::ERROR; });
    EXPECT_TRUE(reads || hasError) << path;
    return !reads;
}
} // namespace

TEST(Check, EachDamageIsFoundAndNothingElse)
{
    for (const Damage& damage : damages())
    {
        SCOPED_TRACE(infoOf(damage.kind).name);
        Specimen file;
        damage.make(file);
        const std::set<int> found = findingsOf(file.bytes);
        EXPECT_TRUE(found.contains(int(damage.kind)));
        std::set<int> allowed = numbersOf(damage.also);
        allowed.insert(int(damage.kind));
        for (const int number : found)
            EXPECT_TRUE(allowed.contains(number) || allowed.contains(int(WHATEVER)))
                << number << ' ' << infoOf(Kind(number)).name;
    }
}

TEST(Check, EveryKindHasADamage)
{
    std::set<int> kinds = numbersOf({Kind::READ_FAILED, Kind::FILE_TOO_LONG}); // tested below
    for (const Damage& damage : damages())
        EXPECT_TRUE(kinds.insert(int(damage.kind)).second) << int(damage.kind);
    for (const KindInfo& info : allKinds())
        EXPECT_TRUE(kinds.contains(int(info.kind))) << info.name;
    EXPECT_EQ(kinds.size(), allKinds().size());
}

TEST(Check, FilesThatCannotBeReadToTheirEndAreSaidToBe)
{
    const std::string bytes = tbtest::specimenFile();
    const auto check = [&bytes](std::size_t rest, std::uint64_t length)
    { return findingsOf(std::make_unique<LongSource>(bytes.substr(0, rest), length)); };
    EXPECT_TRUE(check(bytes.size(), LONGEST_FILE + 1).contains(int(Kind::FILE_TOO_LONG)));
    for (const std::size_t rest : {std::size_t{50}, std::size_t{100}, std::size_t{1000}, bytes.size() - 1})
        EXPECT_TRUE(check(rest, bytes.size()).contains(int(Kind::READ_FAILED))) << rest;
}

TEST(Check, WhatTheLibraryWritesIsSound)
{
    EXPECT_EQ(findingsOf(tbtest::specimenFile()), std::set<int>());
    // Names with control characters, arrays that no class refers to, and a class of nobody's.
    for (const bool swapped : {false, true})
        for (const bool packed : {false, true})
            EXPECT_EQ(findingsOf(tbtest::everyClassFile(swapped, packed)),
                      numbersOf({Kind::TEXT_CONTROL, Kind::CLASS_UNKNOWN, Kind::UNREACHABLE}));
}

TEST(Check, SplinesHaveThePointsOfWholeSegments)
{
    // Four points are right for every kind of curve, by its number, but for the last when it is closed.
    for (const auto& [type, closed] : {std::pair{0u, 0u}, {0, 1}, {1, 0}, {2, 0}, {2, 1}, {3, 0}, {3, 1}})
    {
        Specimen file;
        file.setValue("tbPathAction", "spline.type", type);
        file.setValue("tbPathAction", "spline.closed", closed);
        EXPECT_EQ(findingsOf(file.bytes).contains(int(Kind::SPLINE_POINTS)), type == 3 && closed == 1)
            << type << closed;
    }
}

TEST(Check, DeepAndSharedGraphsWithinTheLimitsAreSound)
{
    EXPECT_EQ(findingsOf(chain(1025, false)), std::set<int>());
    EXPECT_EQ(findingsOf(chain(20, true)), std::set<int>());
}

TEST(Check, WhatTheLibraryRefusesHasAnError)
{
    tbtest::allowMessages();
    tbtest::Mutator mutator({tbtest::specimenFile()}, 7);
    const tbtest::TempDirectory directory;
    int refused = 0;
    for (int round = 0; round < 500; ++round)
    {
        SCOPED_TRACE(round);
        refused += isRefused(directory.write("mutated.tb", mutator.next()));
    }
    EXPECT_GT(refused, 100);
}

TEST(Check, WhatTheLibraryRefusesOfTheHostileFilesHasAnError)
{
    tbtest::allowMessages();
    int refused = 0;
    for (const auto& file : std::filesystem::directory_iterator(TAMBER_SOURCE "/tests/data/hostile"))
        refused += file.path().extension() == ".tb" && isRefused(file.path().string());
    EXPECT_GT(refused, 50);
}

TEST(Check, FindingsBeyondTheLimitAreCounted)
{
    Findings findings(3);
    Finding finding;
    finding.kind = Kind::COMPRESSION_UNKNOWN;
    for (int i = 0; i < 10; ++i)
        findings.add(finding);
    EXPECT_EQ(findings.getKept().size(), 3u);
    EXPECT_EQ(findings.count(Kind::COMPRESSION_UNKNOWN), 10u);
    EXPECT_EQ(findings.count(Severity::ERROR), 10u);
}

TEST(Check, TheDocumentIsThatOfTheTable)
{
    EXPECT_TRUE(tbtest::readAll(TAMBER_SOURCE "/docs/check.md") == describeKinds())
        << "tamber check --kinds > docs/check.md";
}
