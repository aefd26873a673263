#include <tests/native/Specimen.h>
#include <tests/support/FileBuilder.h>

#include <apps/tamber/native/Diff.h>

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

using native::Difference;
using native::DiffOptions;
using native::DiffResult;
using tbtest::everyClassFile;
using tbtest::FileBuilder;
using tbtest::Record;

namespace
{
DiffResult diff(const std::string& a, const std::string& b, const DiffOptions& options = {})
{
    native::Image imageA = tbtest::imageOf(a);
    native::Image imageB = tbtest::imageOf(b);
    return diffImages(imageA, imageB, options);
}

std::string textOf(const Difference& difference)
{
    return std::string(nameOf(difference.kind)) + ' ' + difference.path + ' ' + difference.field + ": " +
           difference.a + " -> " + difference.b;
}

std::string textOf(const DiffResult& result)
{
    std::string text;
    for (const Difference& difference : result.listed)
        text += textOf(difference) + '\n';
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
    record.word(0).integer(0).word(0).word(0).integer(int(children.size()));
    for (const int child : children)
        record.integer(child);
    return record;
}

Record scale(float value)
{
    return Record().object().word(1).word(1).number(value);
}

// A root with the given children, then entries.
struct Graph
{
    std::vector<std::pair<std::string, std::string>> entries;
    std::string build() const
    {
        FileBuilder file;
        for (const auto& [className, data] : entries)
            file.add(className, data);
        return file.build();
    }
};

Graph mesh(const std::vector<float>& positions, const std::vector<int>& indices)
{
    Record geometry = group("wheel", {}).integer(2).integer(2).integer(int(indices.size()));
    for (const int index : indices)
        geometry.integer(index);
    Record vertices = Record().word(1).integer(int(positions.size() / 3));
    for (const float number : positions)
        vertices.number(number);
    return {{{"tbGroup", group("root", {1})}, {"tbMesh", geometry}, {"tbVertexArray", vertices}}};
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
    const Graph one{{{"tbGroup", group("r", {1, 2})},
                     {"tbGroup", group("a", {})},
                     {"tbStyle", group("b", {}).integer(0)}}};
    const Graph two{{{"tbGroup", group("r", {2, 1})},
                     {"tbStyle", group("b", {}).integer(0)},
                     {"tbGroup", group("a", {})}}};
    EXPECT_EQ(diff(one.build(), two.build()).count, 0u);
}

TEST(Diff, ListsWhatDiffersWithItsPlace)
{
    const Graph base{{{"tbGroup", group("root", {1, 2})},
                      {"tbGroup", group("", {})},
                      {"tbStyle", group("b", {}).integer(1).integer(3)},
                      {"tbAudioLevelScale", scale(1)}}};
    const auto with = [&base](std::size_t entry, const std::string& className, const std::string& data)
    {
        Graph graph = base;
        graph.entries[entry] = {className, data};
        return graph.build();
    };
    Graph longer = base;
    longer.entries[0].second = group("root", {4, 1, 2});
    longer.entries.push_back({"tbGroup", group("new", {5})});
    longer.entries.push_back({"tbGroup", group("below", {})});
    Graph further = base;
    further.entries.push_back({"tbGroup", group("lost", {})});
    const struct
    {
        std::string other;
        std::string differences;
    } cases[] = {
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
        {longer.build(),
         "count /root children: 2 -> 3\nmissing /root children[0]: none -> tbGroup \"new\"\n"},
        {with(0, "tbGroup", group("root", {1, 1})),
         "sharing /root children[1]: an object of its own -> the same as /root/tbGroup[0]\n"
         "class /root/b[1] : tbStyle -> tbGroup\nvalue /root/b[1] name: \"b\" -> \"\"\n"
         "missing /root/b[1] traits[0]: tbAudioLevelScale -> none\nmissing entry 2 : none -> tbStyle "
         "\"b\"\n"},
        {further.build(), "missing entry 4 : none -> tbGroup \"lost\"\n"},
    };
    for (const auto& example : cases)
        EXPECT_EQ(textOf(diff(base.build(), example.other)), example.differences);
    EXPECT_EQ(textOf(diff(mesh({0, 1, 2, 3, 4, 5}, {0, 1, 0}).build(),
                          mesh({0, 1, 2, 3, 4, 6}, {0, 1, 1}).build())),
              "value /root/wheel indices[2]: 0 -> 1\n"
              "value /root/wheel vertices[1].position: 3 4 5 -> 3 4 6\n");
    EXPECT_EQ(textOf(diff(mesh({0, 1, 2}, {0, 0, 0, 0, 0, 0}).build(),
                          mesh({0, 1, 2}, {1, 1, 1, 1, 1, 1}).build())),
              "value /root/wheel indices[0]: 0 -> 1\nvalue /root/wheel indices[1]: 0 -> 1\n"
              "value /root/wheel indices[2]: 0 -> 1\nmore /root/wheel indices: 3 -> \n");
}

TEST(Diff, ToleranceIsAbsoluteForSmallNumbersAndRelativeForLarge)
{
    const float infinity = std::numeric_limits<float>::infinity();
    const struct
    {
        float a;
        float b;
        double tolerance;
        bool equal;
    } cases[] = {
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
    for (const auto& example : cases)
    {
        const Graph a{{{"tbAudioLevelScale", scale(example.a)}}};
        const Graph b{{{"tbAudioLevelScale", scale(example.b)}}};
        EXPECT_EQ(diff(a.build(), b.build(), {example.tolerance, 50}).count == 0, example.equal)
            << example.a << ' ' << example.b;
    }
}

TEST(Diff, ListsUpToTheLimitAndCountsAll)
{
    Graph a{{{"tbGroup", group("root", {1, 2, 3})}}};
    Graph b = a;
    for (int i = 0; i < 3; ++i)
    {
        a.entries.push_back({"tbGroup", group("a", {})});
        b.entries.push_back({"tbGroup", group("b", {})});
    }
    const DiffResult result = diff(a.build(), b.build(), {0.0, 2});
    EXPECT_EQ(result.count, 3u);
    EXPECT_EQ(result.listed.size(), 2u);
}

TEST(Diff, ListsOfPlugInsAreOnlyNoted)
{
    const Graph a{{{"tbGroup", group("r", {})}, {"tbPlugIns", Record().integer(0)}}};
    const Graph b{{{"tbGroup", group("r", {})}}};
    const DiffResult result = diff(a.build(), b.build());
    EXPECT_EQ(result.count, 0u);
    EXPECT_EQ(result.notes.size(), 1u);
    EXPECT_TRUE(diff(a.build(), a.build()).notes.empty());
    // Not even where something refers to them that nothing refers to.
    Graph lost = a;
    lost.entries.push_back({"tbBase", Record().object({1})});
    EXPECT_EQ(diff(lost.build(), lost.build()).count, 0u);
}

// A chain as deep as the file is long, a node that is its own child, and two nodes under which all others are.
TEST(Diff, HostileGraphsTakeNeitherStackNorTime)
{
    constexpr int DEPTH = 200000;
    Graph chain;
    for (int i = 0; i < DEPTH; ++i)
        chain.entries.push_back({"tbGroup", group("", {i + 1 < DEPTH ? i + 1 : 0})});
    Graph other = chain;
    other.entries.back().second = group("end", {0});
    const DiffResult result = diff(chain.build(), other.build());
    EXPECT_EQ(result.count, 1u);
    EXPECT_LT(textOf(result).size(), 500u);
    EXPECT_NE(textOf(result).find("more)..."), std::string::npos) << textOf(result);

    constexpr int LEVELS = 60; // two nodes each, both under both of the level above
    Graph lattice;
    for (int i = 0; i < LEVELS; ++i)
        for (int k = 0; k < 2; ++k)
            lattice.entries.push_back(
                {"tbGroup", group("", {(2 * i + 2) % (2 * LEVELS), (2 * i + 3) % (2 * LEVELS)})});
    Graph tree = lattice;
    std::swap(tree.entries[5].second, tree.entries[8].second);
    EXPECT_EQ(diff(lattice.build(), lattice.build()).count, 0u);
    EXPECT_GT(diff(lattice.build(), tree.build()).count, 0u);
}

// Damage never goes unseen where the kernel would read something else, and nothing crashes.
TEST(Diff, DamagedFilesEqualThemselvesAndNotOthers)
{
    std::mt19937 random(5);
    const std::string whole = everyClassFile();
    for (int round = 0; round < 300; ++round)
    {
        std::string bytes = whole;
        for (int changes = 0; changes < 3; ++changes)
            bytes[96 + random() % (bytes.size() - 96)] = char(random());
        if (random() % 4 == 0)
            bytes.resize(6000 + random() % (bytes.size() - 6000));
        EXPECT_EQ(diff(bytes, bytes).count, 0u);
        diff(whole, bytes);
        diff(bytes, whole);
    }
}
