#include <tests/files/Mutator.h>
#include <tests/native/Specimen.h>
#include <tests/support/FileBuilder.h>

#include <apps/tamber/native/Diff.h>

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

using native::DiffOptions;
using native::DiffResult;
using tbtest::Entries;
using tbtest::everyClassFile;
using tbtest::Record;

namespace
{
DiffResult diff(const std::string& a, const std::string& b, const DiffOptions& options = {})
{
    native::Image imageA = tbtest::imageOf(a);
    native::Image imageB = tbtest::imageOf(b);
    return diffImages(imageA, imageB, options);
}

DiffResult diff(const Entries& a, const Entries& b, const DiffOptions& options = {})
{
    return diff(tbtest::buildFile(a), tbtest::buildFile(b), options);
}

std::string textOf(const DiffResult& result)
{
    std::string text;
    for (const native::Difference& found : result.listed)
        text += std::string(nameOf(found.kind)) + ' ' + found.path + ' ' + found.field + ": " + found.a +
                " -> " + found.b + '\n';
    return text;
}

// The record of a group; what derives from it goes on behind it.
Record group(const std::string& name, const std::vector<int>& children)
{
    Record record;
    if (name.empty())
        record.integer(0);
    else
        record.name(name);
    return record.word(0).integer(0).word(0).word(0).list(children);
}

Record scale(float value)
{
    return Record().object().word(1).word(1).number(value);
}

Entries mesh(const std::vector<float>& positions, const std::vector<int>& indices)
{
    Record vertices = Record().word(1).integer(int(positions.size() / 3));
    for (const float number : positions)
        vertices.number(number);
    return {{"tbGroup", group("root", {1})},
            {"tbMesh", group("wheel", {}).integer(2).integer(2).list(indices)},
            {"tbVertexArray", vertices}};
}
} // namespace

// Every way in which one model is written.
TEST(Diff, TheSameModelIsEqualHoweverItIsWritten)
{
    const std::string plain = everyClassFile();
    for (const bool swapped : {false, true})
        for (const bool packed : {false, true})
        {
            const DiffResult result = diff(plain, everyClassFile(swapped, packed));
            EXPECT_EQ(result.count, 0u) << textOf(result);
            EXPECT_TRUE(result.notes.empty());
        }
    const Entries one = {
        {"tbGroup", group("r", {1, 2})}, {"tbGroup", group("a", {})}, {"tbStyle", group("b", {}).integer(0)}};
    const Entries two = {{"tbGroup", group("r", {2, 1})}, one[2], one[1]};
    EXPECT_EQ(diff(one, two).count, 0u);
}

TEST(Diff, ListsWhatDiffersWithItsPlace)
{
    const Entries base = {{"tbGroup", group("root", {1, 2})},
                          {"tbGroup", group("", {})},
                          {"tbStyle", group("b", {}).integer(1).integer(3)},
                          {"tbAudioLevelScale", scale(1)}};
    const auto with = [&base](std::size_t entry, const std::string& className, const std::string& data)
    {
        Entries entries = base;
        entries.resize(std::max(entries.size(), entry + 1));
        entries[entry] = {className, data};
        return entries;
    };
    Entries longer = with(5, "tbGroup", group("below", {}));
    longer[4] = {"tbGroup", group("new", {5})};
    longer[0].second = group("root", {4, 1, 2});
    const std::pair<Entries, std::string> cases[] = {
        {with(3, "tbAudioLevelScale", scale(2)), "value /root/b[1].traits scale: 1 -> 2\n"},
        {with(1, "tbGroup", group("x", {})), "value /root/tbGroup[0] name: \"\" -> \"x\"\n"},
        {with(1, "tbGroup", group("", {}).byte(7)),
         "value /root/tbGroup[0] : 0 bytes behind the record -> 1 bytes behind the record\n"},
        {with(1, "tbStyle", group("", {}).integer(0)), "class /root/tbGroup[0] : tbGroup -> tbStyle\n"},
        {with(0, "tbGroup", group("root", {1, -1})),
         "missing /root children[1]: tbStyle \"b\" -> none\nmissing entry 2 : none -> tbStyle \"b\"\n"},
        {with(2, "tbStyle", group("b", {}).integer(0)),
         "count /root/b[1] traits: 1 -> 0\nmissing /root/b[1] traits[0]: tbAudioLevelScale -> none\n"
         "missing entry 3 : none -> tbAudioLevelScale\n"},
        {longer, "count /root children: 2 -> 3\nmissing /root children[0]: none -> tbGroup \"new\"\n"},
        {with(0, "tbGroup", group("root", {1, 1})),
         "sharing /root children[1]: an object of its own -> the same as /root/tbGroup[0]\n"
         "class /root/b[1] : tbStyle -> tbGroup\nvalue /root/b[1] name: \"b\" -> \"\"\n"
         "missing /root/b[1] traits[0]: tbAudioLevelScale -> none\nmissing entry 2 : none -> tbStyle "
         "\"b\"\n"},
        {with(4, "tbGroup", group("lost", {})), "missing entry 4 : none -> tbGroup \"lost\"\n"},
    };
    for (const auto& [other, differences] : cases)
        EXPECT_EQ(textOf(diff(base, other)), differences);
    EXPECT_EQ(textOf(diff(mesh({0, 1, 2, 3, 4, 5}, {0, 1, 0}), mesh({0, 1, 2, 3, 4, 6}, {0, 1, 1}))),
              "value /root/wheel indices[2]: 0 -> 1\n"
              "value /root/wheel vertices[1].position: 3 4 5 -> 3 4 6\n");
    EXPECT_EQ(textOf(diff(mesh({0, 1, 2}, {0, 0, 0, 0, 0, 0}), mesh({0, 1, 2}, {1, 1, 1, 1, 1, 1}))),
              "value /root/wheel indices[0]: 0 -> 1\nvalue /root/wheel indices[1]: 0 -> 1\n"
              "value /root/wheel indices[2]: 0 -> 1\nmore /root/wheel indices: 3 -> \n");
}

TEST(Diff, ToleranceIsAbsoluteForSmallNumbersAndRelativeForLarge)
{
    const float infinity = std::numeric_limits<float>::infinity();
    const std::tuple<float, float, double, bool> cases[] = {
        {0, 1e-7f, 0, false},
        {0, 1e-7f, 1e-6, true},
        {0.5f, 0.51f, 0.02, true},
        {0.5f, 0.53f, 0.02, false},
        {1000, 1010, 0.02, true},
        {1000, 1030, 0.02, false},
        {NAN, NAN, 0, true},
        {NAN, 1, 1e9, false},
        {infinity, infinity, 0, true},
        {infinity, 1, 1e9, false},
        {infinity, -infinity, 10, false},
        {0.0f, -0.0f, 0, true},
    };
    for (const auto& [a, b, tolerance, equal] : cases)
    {
        const Entries one = {{"tbAudioLevelScale", scale(a)}};
        const Entries other = {{"tbAudioLevelScale", scale(b)}};
        EXPECT_EQ(diff(one, other, {tolerance, 50}).count == 0, equal) << a << ' ' << b;
    }
}

TEST(Diff, ListsUpToTheLimitAndCountsAll)
{
    Entries a = {{"tbGroup", group("root", {1, 2, 3})}};
    Entries b = a;
    a.resize(4, {"tbGroup", group("a", {})});
    b.resize(4, {"tbGroup", group("b", {})});
    const DiffResult result = diff(a, b, {0.0, 2});
    EXPECT_EQ(result.count, 3u);
    EXPECT_EQ(result.listed.size(), 2u);
}

TEST(Diff, ListsOfPlugInsAreOnlyNoted)
{
    const Entries a = {{"tbGroup", group("r", {})}, {"tbPlugIns", Record().integer(0)}};
    const DiffResult result = diff(a, {a[0]});
    EXPECT_EQ(result.count, 0u);
    EXPECT_EQ(result.notes.size(), 1u);
    EXPECT_TRUE(diff(a, a).notes.empty());
    // Not even where something refers to them that nothing refers to.
    const Entries lost = {a[0], a[1], {"tbBase", Record().object({1})}};
    EXPECT_EQ(diff(lost, lost).count, 0u);
}

// A chain as deep as the file is long, a node that is its own child, and two nodes under which all others are.
TEST(Diff, HostileGraphsTakeNeitherStackNorTime)
{
    constexpr int DEPTH = 200000;
    Entries chain;
    for (int i = 0; i < DEPTH; ++i)
        chain.push_back({"tbGroup", group("", {i + 1 < DEPTH ? i + 1 : 0})});
    Entries other = chain;
    other.back().second = group("end", {0});
    const DiffResult result = diff(chain, other);
    EXPECT_EQ(result.count, 1u);
    EXPECT_LT(textOf(result).size(), 500u);
    EXPECT_NE(textOf(result).find("more)..."), std::string::npos) << textOf(result);

    constexpr int LEVELS = 60; // two nodes each, both under both of the level above
    Entries lattice;
    for (int i = 0; i < 2 * LEVELS; ++i)
        lattice.push_back(
            {"tbGroup", group("", {(i / 2 * 2 + 2) % (2 * LEVELS), (i / 2 * 2 + 3) % (2 * LEVELS)})});
    Entries tree = lattice;
    std::swap(tree[5].second, tree[8].second);
    EXPECT_EQ(diff(lattice, lattice).count, 0u);
    EXPECT_GT(diff(lattice, tree).count, 0u);
}

// Damage never goes unseen where the kernel would read something else, and nothing crashes.
TEST(Diff, DamagedFilesEqualThemselvesAndNotOthers)
{
    const std::string whole = everyClassFile();
    tbtest::Mutator mutator({whole}, 5);
    for (int round = 0; round < 300; ++round)
    {
        const std::string bytes = mutator.next();
        if (tbtest::imageOf(bytes).getNumEntries() == 0)
            continue; // without a root
        EXPECT_EQ(diff(bytes, bytes).count, 0u) << "round " << round;
        diff(whole, bytes);
        diff(bytes, whole);
    }
}
