#include <tests/native/Specimen.h>
#include <tests/support/FileBuilder.h>

#include <apps/tamber/native/Text.h>

#include <random>
#include <set>

#include <gtest/gtest.h>

using namespace native;
using tbtest::everyClassFile;

namespace
{
std::string dumped(const std::string& bytes)
{
    Image image = tbtest::imageOf(bytes);
    return dumpText(image);
}

bool hasWholeTables(const std::string& bytes)
{
    Findings findings;
    Image image(tbtest::sourceOf(bytes), findings);
    return findings.count(Kind::TABLES_BEYOND_FILE) == 0;
}

std::string built(std::string_view text)
{
    const std::vector<unsigned char> bytes = buildText(text);
    return {bytes.begin(), bytes.end()};
}

std::string errorOf(std::string_view text)
{
    try
    {
        buildText(text);
    }
    catch (const TextError& error)
    {
        return error.what();
    }
    return {};
}

const std::string HEADER = "tamber text 1\norder little\nversion 0x01020000\n";
} // namespace

TEST(Text, FilesReadBackByteForByteInWords)
{
    for (const bool swapped : {false, true})
        for (const bool packed : {false, true})
        {
            const std::string bytes = everyClassFile(swapped, packed);
            const std::string text = dumped(bytes);
            EXPECT_EQ(built(text), bytes);
            EXPECT_EQ(text.starts_with(HEADER), !swapped);
            EXPECT_EQ(text.find(" packed") != text.npos, packed) << text.substr(0, 1000);
            // A byte between fields that is not zero, or that no field has, would be one of these.
            for (const char* odd :
                 {"\nfile", "raw ", "patch ", "\n  rest", "offset=", "size=", "length ", "tag "})
                EXPECT_EQ(text.find(odd), text.npos) << odd;
            for (const char* line :
                 {"\n  name \"tbMesh\\n\\\"", "\n  primitive triangles\n", "\n  indices 2 1 0\n",
                  "\n  fileName \"../wood.png\"\n", "\n  matrix.type translation\n",
                  "\n    - 1.5 -0.1 1e-20 1\n", "\n  image 0102030405060708\n",
                  "\n  vertices position normal color texCoords0 texCoords1\n", "\n  states off on\n"})
                EXPECT_NE(text.find(line), text.npos) << line;
        }
}

TEST(Text, TheFileOfEveryClassHoldsAllThatAreStored)
{
    const Image image = tbtest::imageOf(everyClassFile());
    std::set<std::string> held;
    for (int i = 0; i < image.getNumEntries(); ++i)
        held.emplace(image.getTagName(i));
    for (const ClassInfo& info : knownClasses())
        EXPECT_EQ(held.contains(info.name),
                  info.nature == ClassInfo::OBJECT || info.nature == ClassInfo::DATA)
            << info.name;
}

// What each byte of a damaged file was goes through the text, too.
TEST(Text, DamagedFilesReadBackByteForByte)
{
    std::mt19937 random(7);
    for (const bool swapped : {false, true})
        for (const bool packed : {false, true})
        {
            const std::string whole = everyClassFile(swapped, packed);
            const auto below = [&random](std::size_t n) { return std::size_t(random() % n); };
            for (int round = 0; round < 500; ++round)
            {
                std::string bytes = whole;
                for (std::size_t changes = 1 + below(4); changes > 0; --changes)
                {
                    // Often in the tables, where a byte does most.
                    const std::size_t place = 4 + below(below(2) == 0 ? bytes.size() - 4 : 6000);
                    bytes[place] = char(below(3) == 0 ? 0xFF : below(256));
                }
                if (below(4) == 0)
                    bytes.resize(96 + below(bytes.size() - 96));
                if (below(8) == 0)
                    bytes += "leftover";
                const std::string text = dumped(bytes);
                ASSERT_EQ(built(text), bytes) << "round " << round;
                EXPECT_EQ(text.find("\nfile") == text.npos, hasWholeTables(bytes)) << "round " << round;
            }
        }
}

TEST(Text, WhatDeviatesIsStated)
{
    const auto object = [] { return tbtest::Record().object(); };
    const std::tuple<const char*, const char*, std::string> cases[] = {
        {"  flags dynamic|0x80\n", "tbGroup", tbtest::Record().integer(0).word(0x81).integer(0)},
        {"  attributes count=-5\n", "tbGroup", tbtest::Record().integer(0).word(0).integer(-5)},
        {"  attributes @0 none 7\n", "tbBase",
         tbtest::Record().integer(0).word(0).integer(3).integer(0).integer(-1).integer(7)},
        {"  name raw \"ab\"\n", "tbBase", tbtest::Record().integer(2).bytes("ab").word(0).integer(0)},
        {"  name raw \"a\\x00\\xe9\\x00\"\n", "tbBase",
         tbtest::Record().integer(4).bytes(std::string("a\0\xE9\0", 4)).word(0).integer(0)},
        {"  name \"\"\n", "tbBase", tbtest::Record().integer(1).byte(0).word(0).integer(0)},
        {"  enabled 7\n", "tbEvent", object().integer(7)},
        {"  patch 6 aabb\n", "tbBase", tbtest::Record().integer(0).word(0).byte(0xAA).byte(0xBB).integer(0)},
        {"  rest ff\n", "tbBase", object().byte(0xFF)},
        {"  name none\n  rest 01\n", "tbBase", tbtest::Record().integer(0).byte(1)},
        {"  rest ffffff7f\n", "tbBase", tbtest::Record().integer(0x7FFFFFFF)},
        {"  scale nan:7fc00001\n", "tbAudioLevelScale", object().word(1).word(1).integer(0x7FC00001)},
        {"  scale -inf\n", "tbAudioLevelScale", object().word(1).word(1).integer(-0x800000)},
        {"  scale -0\n", "tbAudioLevelScale", object().word(1).word(1).integer(int(0x80000000))},
        {"  mode 9\n", "tbAudioLevelScale", object().word(9).word(1).number(1)},
        {"  type dynamicDouble\n  elements 0.1 nan:7ff8000000000001\n", "tbArray",
         tbtest::Record().word(0x8008).integer(2).wide(0.1).integer(1).integer(0x7FF80000)},
        {"  type 77\n  rest 0000", "tbArray", tbtest::Record().word(77).integer(1)},
        {"entry 0 Unknown\n  data 0102\n", "Unknown", tbtest::Record().byte(1).byte(2)},
        {"entry 0 \"tb \\\"\"\n", "tb \"", tbtest::Record().byte(1)},
    };
    for (const auto& [said, className, data] : cases)
    {
        const std::string text = dumped(tbtest::buildFile({{className, data}}));
        EXPECT_NE(text.find(said), text.npos) << said << "\nis not in\n" << text;
    }
}

TEST(Text, EntriesMayBeCalledAnything)
{
    const std::string text = HEADER +
                             "entry 700 tbGroup # the root\n  name none\n  flags 0\n  attributes\n"
                             "  travFlags update|0x1000\n  nodeFlags share\n  children @5\n    - @700\n"
                             "\nentry 5 tbBase\n  name none\n  flags 0\n  attributes @700\n";
    const std::string again = dumped(built(text));
    EXPECT_NE(again.find("  children @1 @0\n"), again.npos) << again;
    EXPECT_NE(again.find("  attributes @0\n"), again.npos) << again;
}

TEST(Text, ErrorsNameThePlaceAndTheRule)
{
    const std::string base = HEADER + "entry 0 tbAudioLevelScale\n  name none\n  flags 0\n  attributes\n";
    const std::pair<std::string, const char*> cases[] = {
        {"", "line 1, column 1: \"tamber\" should stand here"},
        {"tamber text 2\n", "line 1, column 13: this version"},
        {HEADER + "entry 0 tbBase\n  flags 0\n", "line 5, column 3: the field \"name\" should"},
        {base + "  mode loud\n", "line 8, column 8: there is no value called loud"},
        {base + "  mode 65536\n", "line 8, column 8: the number is larger than 65535"},
        {base + "  mode on off\n", "line 8, column 11: more values"},
        {base + "  mode on\n  shareable\n  scale 1\n", "line 9, column 3: fewer values"},
        {base + "  mode on\n  shareable 1\n  scale 1x\n", "line 10, column 9: a number should"},
        {base + "  mode on\n  shareable 1\n  scale 1\n  loud 1\n",
         "line 11, column 3: nothing that a file has"},
        {HEADER + "entry 0 tbBase\n  name \"a\n", "line 5, column 8: a quote is not closed"},
        {HEADER + "entry 0 tbBase\n  name \"\\y\"\n", "line 5, column 8: an escape"},
        {HEADER + "entry 0 tbBase\n  name none\n  flags 0\n  attributes @1\n", "line 7, column 14: no entry"},
        {HEADER + "entry 0 A\nentry 0 A\n", "line 5, column 7: another entry"},
        {HEADER + "entry 0 A\n  data 123\n", "line 5, column 8: bytes are pairs"},
        {HEADER + "entry 0 A offset=2000000000\n  data 12\n", "line 4, column 11: the file would be longer"},
        {HEADER + "entry 0 A loud\n", "line 4, column 11: nothing of this name"},
        {HEADER + "entry 0 A\n  data 12\n  patch 1 12\n", "line 6, column 9: there are not so many"},
        {HEADER + "length 9000000000\n", "line 4, column 8: the number is larger"},
        {HEADER + "raw 96 00\n", "line 4, column 5: there are not so many"},
    };
    for (const auto& [text, error] : cases)
        EXPECT_TRUE(errorOf(text).starts_with(error))
            << text << "gives: " << errorOf(text) << "\nnot: " << error;
}

// Whatever is done to a text, it builds a file or names what is wrong.
TEST(Text, DamagedTextsBuildOrAreRefused)
{
    std::mt19937 random(11);
    const std::string whole = dumped(everyClassFile());
    int refused = 0;
    for (int round = 0; round < 400; ++round)
    {
        std::string text = whole;
        const std::size_t place = random() % text.size();
        if (random() % 2 == 0)
            text[place] = "\"\\- \n0a@#="[random() % 10];
        else
            text.erase(place, 1 + random() % 8);
        const std::string error = errorOf(text);
        if (error.empty())
            EXPECT_EQ(built(dumped(built(text))), built(text));
        else
            ++refused;
    }
    EXPECT_GT(refused, 50);
}
