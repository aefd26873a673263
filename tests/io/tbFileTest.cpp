#include <tamber/io/tbFile.h>

#include <tests/support/Cost.h>
#include <tests/support/FileBuilder.h>
#include <tests/support/Messages.h>
#include <tests/support/TempFile.h>

#include <gtest/gtest.h>

using tbtest::FileBuilder;
using tbtest::Record;

namespace
{

class File : public testing::Test
{
protected:
    bool openBytes(const std::string& bytes)
    {
        tbtest::writeAll(path, bytes);
        return file.open(path.c_str(), "r");
    }

    tbtest::TempDirectory directory;
    std::string path = directory.path("file.tb");
    tbFile file;
};

} // namespace

TEST_F(File, RefusesWhatIsNoRegularFile)
{
    EXPECT_FALSE(file.open(nullptr, "r"));
    EXPECT_EQ(file.getLastError(), tbFile::FILE_CANNOT_OPEN);
    std::error_code unsupported;
    std::filesystem::create_symlink(directory.path("loop.tb"), directory.path("loop.tb"), unsupported);
    // Devices of either system; the other has no such files.
    const std::string names[] = {"",
                                 directory.path("absent.tb"),
                                 directory.path("."),
                                 directory.path("loop.tb"),
                                 "/dev/zero",
                                 "CON",
                                 "NUL",
                                 "\\\\.\\pipe\\absent"};
    for (const std::string& name : names)
    {
        EXPECT_FALSE(file.open(name.c_str(), "r")) << name;
        EXPECT_EQ(file.getLastError(), tbFile::FILE_CANNOT_OPEN);
        EXPECT_FALSE(tbFile::isTamberFormat(name.c_str()));
    }
    EXPECT_TRUE(openBytes(tbtest::buildFile({{"tbOne", "data"}})));
    EXPECT_FALSE(file.open(path.c_str(), "w"));
    EXPECT_FALSE(file.open(path.c_str(), nullptr));
    EXPECT_TRUE(file.open(path.c_str(), "rw"));
    file.close();
    EXPECT_FALSE(file.readEntry(nullptr));
    EXPECT_EQ(file.getLastError(), tbFile::FILE_NOT_OPEN);
}

TEST_F(File, FormatIsToldByLengthAndMagic)
{
    const std::string bytes = tbtest::buildFile({{"tbOne", "data"}});
    for (const std::size_t length : {96u, 97u})
    {
        EXPECT_FALSE(openBytes(bytes.substr(0, length))) << length;
        EXPECT_EQ(tbFile::isTamberFormat(path.c_str()), length == 97);
    }
}

TEST_F(File, TagsAreFoundOnSixtyThreeCharacters)
{
    ASSERT_TRUE(file.create(path.c_str()));
    const int tag = file.newTag(std::string(70, 'n').c_str());
    EXPECT_EQ(file.newTag(std::string(80, 'n').c_str()), tag);
    EXPECT_EQ(file.getTagDesc(tag), std::string(63, 'n'));
    EXPECT_EQ(file.findTag(std::string(62, 'n').c_str()), -1);
    EXPECT_EQ(file.findTag("TBONE"), file.findTag(nullptr));
    EXPECT_EQ(file.getNumTags(), 1);
    EXPECT_EQ(file.newEntry(1), nullptr);
}

TEST_F(File, TagsOfOneNameTakeNoLongerThanOthers)
{
    constexpr int NUM = 100'000;
    FileBuilder builder;
    builder.add("tbOne", "data");
    builder.tags.insert(builder.tags.end(), NUM, "tbOne");
    builder.tags.emplace_back("tbTwo");
    const std::string bytes = builder.build();
    const tbtest::Cost cost;
    ASSERT_TRUE(openBytes(bytes));
    EXPECT_EQ(file.findTag("tbOne"), 0);
    EXPECT_EQ(file.findTag("tbTwo"), NUM + 1);
    EXPECT_LT(cost.seconds(), tbtest::mostSeconds(bytes.size()));
}

TEST_F(File, EntriesAreFoundByHandleAndTag)
{
    ASSERT_TRUE(file.create(path.c_str()));
    const int one = file.newTag("tbOne");
    const int two = file.newTag("tbTwo");
    int objects[1000];
    for (int& object : objects)
        file.newEntry(&object - objects == 500 ? two : one)->setHandle(&object);
    for (const int& object : objects)
        ASSERT_EQ(file.findEntry(&object)->getDirNum(), &object - objects);
    file.getEntry(999)->setHandle(&objects[3]);
    EXPECT_EQ(file.findEntry(&objects[3])->getDirNum(), 999) << "the last entry of a handle counts";
    EXPECT_EQ(file.findEntry(&objects[999]), nullptr);
    EXPECT_EQ(file.findEntry(static_cast<void*>(nullptr)), nullptr);
    EXPECT_EQ(file.findEntry(two)->getDirNum(), 500);
    EXPECT_EQ(file.findNextEntry(one, file.getEntry(499))->getDirNum(), 501);
    EXPECT_EQ(file.findNextEntry(two, file.findEntry(two)), nullptr);
    EXPECT_EQ(file.findNextEntry(two, nullptr)->getDirNum(), 500);
}

TEST_F(File, RemovingMovesTheLastEntryIntoTheGap)
{
    ASSERT_TRUE(file.create(path.c_str()));
    int objects[3];
    const int tags[] = {file.newTag("tbOne"), file.newTag("tbTwo")};
    for (int& object : objects)
        file.newEntry(tags[&object == &objects[2]])->setHandle(&object);
    EXPECT_TRUE(file.removeEntry(file.getEntry(0)));
    EXPECT_EQ(file.findEntry(&objects[0]), nullptr);
    EXPECT_EQ(file.findEntry(&objects[2]), file.getEntry(0));
    EXPECT_EQ(file.getEntry(0)->getDirNum(), 0);
    EXPECT_EQ(file.findEntry(tags[1]), file.getEntry(0));
    EXPECT_EQ(file.findEntry(tags[0]), file.getEntry(1));
    EXPECT_TRUE(file.removeEntry(nullptr));
    tbFile other;
    EXPECT_FALSE(other.removeEntry(file.getEntry(0)));
}

TEST_F(File, EntriesOnTheSameBytesHaveABudget)
{
    constexpr int size = 1 << 20;
    tbtest::allowMessages("the entries together hold more");
    tbtest::allowMessages("what else is damaged");
    // As many bytes that unpack to next to nothing have to be read, too.
    const std::string packed = Record().integer(size).get() + std::string(size, '\0');
    for (const bool isPacked : {false, true})
    {
        FileBuilder builder;
        FileBuilder::Entry& first = builder.add("tbOne", isPacked ? packed : std::string(size, 'x'));
        first.size = isPacked ? 1 : size;
        first.compression = isPacked ? tbEntry::RLE : tbEntry::NO_COMPRESSION;
        builder.addOnSameBytes("tbOne", 299);
        ASSERT_TRUE(openBytes(builder.build()));
        int loaded = 0;
        while (tbEntry* entry = file.getEntry(0))
        {
            loaded += file.readEntry(entry) ? 1 : 0;
            file.removeEntry(entry);
        }
        EXPECT_EQ(loaded, isPacked ? 255 : 256);
    }
}

TEST_F(File, ShortenedFileGivesReadErrors)
{
    const std::string bytes = tbtest::buildFile({{"tbOne", std::string(500'000, 'x')}});
    for (const int left : {0, 96, 1000, 400'000})
    {
        ASSERT_TRUE(openBytes(bytes));
        std::filesystem::resize_file(path, std::uintmax_t(left));
        tbtest::expectMessage("the data cannot be read");
        EXPECT_FALSE(file.readEntry(file.getEntry(0))) << left;
        EXPECT_EQ(file.getLastError(), tbFile::FILE_READ_ERROR);
    }
}
