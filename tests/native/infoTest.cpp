// What a native file tells of itself without its entries being read.
#include <tests/native/Specimen.h>
#include <tests/support/FileBuilder.h>

#include <apps/tamber/native/Info.h>

#include <gtest/gtest.h>

using namespace native;
using tbtest::FileBuilder;

namespace
{
FileInfo infoOf(const std::string& bytes, Findings& findings)
{
    Image image(tbtest::sourceOf(bytes), findings);
    return collectInfo(image, findings);
}
} // namespace

TEST(Info, TagsAreCountedAndPlugInsListed)
{
    Findings findings;
    const FileInfo info = infoOf(tbtest::specimenFile(), findings);
    EXPECT_EQ(findings.count(), 0u);
    EXPECT_EQ(info.length, tbtest::specimenFile().size());
    std::uint64_t entries = 0;
    std::uint64_t bytes = 0;
    for (const TagInfo& tag : info.tags)
    {
        entries += tag.entries;
        bytes += tag.bytes;
    }
    EXPECT_EQ(entries, info.numEntries);
    EXPECT_EQ(bytes, info.bytes);
    EXPECT_TRUE(std::any_of(info.plugIns.begin(), info.plugIns.end(),
                            [](const PlugInInfo& plugIn) {
                                return plugIn.module == "TBPORTABLEKERNEL.DLL" &&
                                       plugIn.name == "Portable classes";
                            }));
}

// Sizes add up beyond 32 bits, names are made printable, and what the directory cannot hold is left out.
TEST(Info, DamagedFilesTellWhatTheyCan)
{
    FileBuilder file;
    for (int i = 0; i < 3; ++i)
    {
        FileBuilder::Entry& entry = file.add("tb\x1B[31m", "data");
        entry.size = 0xFFFFFFFF;
        entry.compression = 1;
    }
    file.add("tbPlugIns", "no").tag = 99;
    file.numEntries = 1'000'000;
    Findings findings;
    const FileInfo info = infoOf(file.build(), findings);
    EXPECT_EQ(findings.count(Kind::TABLES_BEYOND_FILE), 1u);
    ASSERT_EQ(info.tags.size(), 2u);
    EXPECT_EQ(info.tags[0].name, "tb\\x1B[31m");
    EXPECT_GE(info.tags[0].bytes, 3 * std::uint64_t{0xFFFFFFFF});
    EXPECT_GE(info.tags[0].packed, 3u);
    EXPECT_TRUE(info.plugIns.empty());
}
