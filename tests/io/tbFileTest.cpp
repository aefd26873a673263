#include <tamber/io/tbFile.h>

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
    tbFile::FILE_ERROR openBytes(const std::string& bytes)
    {
        tbtest::writeAll(path, bytes);
        return file.open(path.c_str(), "r") ? tbFile::FILE_OK : file.getLastError();
    }

    tbtest::TempDirectory directory;
    std::string path = directory.path("file.tb");
    tbFile file;
};

FileBuilder twoEntries(bool swapped = false)
{
    FileBuilder builder(swapped);
    builder.add("tbOne", builder.record().integer(1).number(0.25f).wide(-0.5).word(-7));
    builder.add("tbTwo", builder.record().name("second"));
    return builder;
}

} // namespace

TEST_F(File, ReadsBothByteOrdersAlike)
{
    for (const bool swapped : {false, true})
    {
        ASSERT_EQ(openBytes(twoEntries(swapped).build()), tbFile::FILE_OK);
        EXPECT_EQ(file.getNumEntries(), 2);
        EXPECT_EQ(file.getVersion(), 0x01020000u);
        tbEntry* entry = file.findEntry("tbOne");
        ASSERT_TRUE(entry && file.readEntry(entry));
        EXPECT_EQ(entry->isByteSwapped(), swapped);
        EXPECT_EQ(entry->readInt(), 1);
        EXPECT_EQ(entry->readFloat(), 0.25f);
        EXPECT_EQ(entry->readDouble(), -0.5);
        EXPECT_EQ(entry->readShort(), -7);
        EXPECT_TRUE(tbFile::isTamberFormat(path.c_str()));
    }
}

TEST_F(File, RefusesWhatIsNoRegularFile)
{
    EXPECT_FALSE(file.open(nullptr, "r"));
    EXPECT_EQ(file.getLastError(), tbFile::FILE_CANNOT_OPEN);
    std::error_code unsupported;
    std::filesystem::create_symlink(directory.path("loop.tb"), directory.path("loop.tb"), unsupported);
    // Devices of either system; the other has no such files.
    for (const std::string& name : {std::string(), directory.path("absent.tb"), directory.path("."),
                                    directory.path("loop.tb"), std::string("/dev/zero"), std::string("CON"),
                                    std::string("NUL"), std::string("\\\\.\\pipe\\absent")})
    {
        EXPECT_FALSE(file.open(name.c_str(), "r")) << name;
        EXPECT_EQ(file.getLastError(), tbFile::FILE_CANNOT_OPEN);
        EXPECT_FALSE(tbFile::isTamberFormat(name.c_str()));
    }
    tbtest::writeAll(path, twoEntries().build());
    EXPECT_FALSE(file.open(path.c_str(), "w"));
    EXPECT_FALSE(file.open(path.c_str(), nullptr));
    EXPECT_TRUE(file.open(path.c_str(), "rw"));
}

TEST_F(File, EveryHeaderFaultHasItsError)
{
    EXPECT_EQ(openBytes(""), tbFile::FILE_EMPTY);
    const std::string good = twoEntries().build();
    EXPECT_EQ(openBytes(good.substr(0, 95)), tbFile::FILE_READ_ERROR);
    EXPECT_EQ(openBytes("x" + good), tbFile::FILE_BAD_FORMAT);
    FileBuilder builder = twoEntries();
    builder.numEntries = 0;
    EXPECT_EQ(openBytes(builder.build()), tbFile::FILE_READ_ERROR);
    // Numbers whose tables wrap in 32 bits, and whose tables the file cannot hold.
    for (const std::int64_t number : {0xAAAAAABLL, 0x80000000LL, 0xFFFFFFFFLL, 100LL})
    {
        builder.numEntries = number;
        EXPECT_EQ(openBytes(builder.build()), tbFile::FILE_READ_ERROR) << number;
    }
    builder = twoEntries();
    for (const std::int64_t number : {0x3C3C3C4LL, 0xFFFFFFFFLL, 5LL})
    {
        builder.numTags = number;
        EXPECT_EQ(openBytes(builder.build()), tbFile::FILE_READ_ERROR) << number;
    }
    std::string wrongIndex = good;
    wrongIndex[96 + 68] = 7;
    EXPECT_EQ(openBytes(wrongIndex), tbFile::FILE_READ_ERROR);
    EXPECT_FALSE(file.isOpen());
    EXPECT_NE(std::string(file.getErrorText()).find("file.tb: tag 1, byte 164: a tag stands"),
              std::string::npos);
}

TEST_F(File, FormatIsToldByLengthAndMagic)
{
    std::string bytes = twoEntries().build();
    tbtest::writeAll(path, bytes.substr(0, 96));
    EXPECT_FALSE(tbFile::isTamberFormat(path.c_str()));
    tbtest::writeAll(path, bytes.substr(0, 97));
    EXPECT_TRUE(tbFile::isTamberFormat(path.c_str()));
}

TEST_F(File, NewerVersionGivesOneWarning)
{
    FileBuilder builder = twoEntries();
    builder.version = 0x02010000;
    tbtest::expectMessage("written by a newer release, 2.1");
    EXPECT_EQ(openBytes(builder.build()), tbFile::FILE_OK);
}

TEST_F(File, BadDirectoryEntryIsNamedAndKept)
{
    FileBuilder builder = twoEntries();
    std::string bytes = builder.build();
    const std::size_t record = 96 + 68 * 2;
    bytes.replace(record + 8, 4, 4, '\0');      // no offset
    bytes.replace(record + 24 + 4, 8, 8, '\0'); // the second has none either, and a tag
    bytes.replace(record + 24 + 4, 4, 4, char(0xFF));
    tbtest::expectMessage("Bad Directory Entry: 0 tag: tbOne");
    tbtest::expectMessage("Bad Directory Entry: 1 tag: (none)");
    EXPECT_EQ(openBytes(bytes), tbFile::FILE_OK);
    EXPECT_EQ(file.getNumEntries(), 2);
    EXPECT_EQ(file.getTagDesc(file.getEntry(1)->getTag()), nullptr);
}

TEST_F(File, TagNamesArePrintedAsText)
{
    FileBuilder builder;
    builder.add(std::string(70, 'n'), Record().integer(1)).offset = 1;
    builder.add("tb%s\x1B", Record().integer(1)).offset = 1;
    ASSERT_EQ(openBytes(builder.build()), tbFile::FILE_OK);
    EXPECT_EQ(file.getTagDesc(0), std::string(63, 'n'));
    tbtest::expectMessage("(tb%s\\x1B)");
    EXPECT_FALSE(file.readEntry(file.getEntry(1)));
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

TEST_F(File, DataMustLieInTheDataOfTheFile)
{
    const std::size_t tables = 96 + 68 * 2 + 24 * 2;
    for (const std::uint32_t offset : {1u, 100u, unsigned(tables) - 1, 0x7FFFFFFFu, 0xFFFFFFF0u})
    {
        FileBuilder builder = twoEntries();
        builder.entries[0].offset = offset;
        ASSERT_EQ(openBytes(builder.build()), tbFile::FILE_OK);
        tbtest::expectMessage("entry 0 (tbOne), byte 240 of the file: the data lies outside");
        EXPECT_FALSE(file.readEntry(file.getEntry(0)));
        EXPECT_EQ(file.getLastError(), tbFile::FILE_READ_ERROR);
        EXPECT_TRUE(file.readEntry(file.getEntry(1)));
    }
}

TEST_F(File, EntriesThatCannotBeLoadedSaySo)
{
    FileBuilder builder;
    for (const std::uint32_t size : {0u, 0x80000000u, 0x7FFFFFFFu, 8u, 8u})
        builder.add("tbOne", Record().integer(1).integer(2)).size = size;
    builder.entries[3].compression = 2;
    builder.entries[4].magic = 0x12345678;
    ASSERT_EQ(openBytes(builder.build()), tbFile::FILE_OK);
    const tbFile::FILE_ERROR expected[] = {tbFile::FILE_NO_DATA, tbFile::FILE_NO_DATA,
                                           tbFile::FILE_READ_ERROR, tbFile::FILE_READ_ERROR,
                                           tbFile::FILE_BAD_FORMAT};
    tbtest::expectMessage("file.tb: entry ", 5);
    for (int i = 0; i < 5; ++i)
    {
        EXPECT_FALSE(file.readEntry(file.getEntry(i)));
        EXPECT_EQ(file.getLastError(), expected[i]) << i;
        EXPECT_EQ(file.getEntry(i)->readInt(), -1);
    }
    file.close();
    EXPECT_FALSE(file.readEntry(nullptr));
    EXPECT_EQ(file.getLastError(), tbFile::FILE_NOT_OPEN);
}

TEST_F(File, PackedDataIsCheckedBeforeItIsUnpacked)
{
    struct Case
    {
        const char* fault;
        std::string packed;
        std::uint32_t size;
        bool good;
    };
    const std::string nine("\xFF\x07\xFF\x07\xFF\x07\xEB\x07\0", 9);
    const Case cases[] = {
        {"none", nine, 1000, true},
        {"fewer bytes than the size", nine, 1100, true},
        {"more bytes than the size", nine, 999, false},
        {"no end", nine.substr(0, 8), 1000, false},
        {"half a pair", nine.substr(0, 7), 1000, false},
        {"size that no packing reaches", nine, 9 * 128 + 1, false},
    };
    for (const bool swapped : {false, true})
    {
        for (const Case& test : cases)
        {
            FileBuilder builder(swapped);
            const std::string length = builder.record().integer(int(test.packed.size()));
            FileBuilder::Entry& entry = builder.add("tbOne", length + test.packed);
            entry.compression = tbEntry::RLE;
            entry.size = test.size;
            ASSERT_EQ(openBytes(builder.build()), tbFile::FILE_OK);
            tbtest::allowMessages("file.tb: entry 0");
            EXPECT_EQ(file.readEntry(file.getEntry(0)), test.good) << test.fault;
            if (test.good)
            {
                std::string expected(1000, '\7');
                expected.resize(test.size, '\0');
                EXPECT_EQ(std::string(static_cast<char*>(file.getEntry(0)->getData()), test.size), expected);
            }
        }
    }
}

TEST_F(File, EntriesOnTheSameBytesHaveABudget)
{
    constexpr int numEntries = 300;
    constexpr int size = 1 << 20;
    tbtest::allowMessages("the entries together hold more");
    tbtest::allowMessages("what else is damaged");
    // As many bytes that unpack to next to nothing have to be read, too.
    const std::string packed = Record().integer(size).get() + std::string(size, '\0');
    for (const bool isPacked : {false, true})
    {
        FileBuilder builder;
        for (int i = 0; i < numEntries; ++i)
            builder.add("tbOne", i > 0 ? std::string() : isPacked ? packed : std::string(size, 'x'));
        for (FileBuilder::Entry& entry : builder.entries)
        {
            entry.offset = 96 + 68 + 112 * numEntries;
            entry.size = isPacked ? 1 : size;
            entry.compression = isPacked ? tbEntry::RLE : tbEntry::NO_COMPRESSION;
        }
        ASSERT_EQ(openBytes(builder.build()), tbFile::FILE_OK);
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
    FileBuilder builder;
    builder.add("tbOne", std::string(500000, 'x'));
    ASSERT_EQ(openBytes(builder.build()), tbFile::FILE_OK);
    std::filesystem::resize_file(path, 1000);
    tbtest::expectMessage("the data cannot be read");
    EXPECT_FALSE(file.readEntry(file.getEntry(0)));
    EXPECT_EQ(file.getLastError(), tbFile::FILE_READ_ERROR);
}
