#include <tamber/io/tbFile.h>

#include <tests/support/FileBuilder.h>
#include <tests/support/Messages.h>
#include <tests/support/TempFile.h>

#include <gtest/gtest.h>

#include <algorithm>

using tbtest::FileBuilder;
using tbtest::Record;

namespace
{

class FileWrite : public testing::Test
{
protected:
    tbEntry* addEntry(const std::string& data)
    {
        tbEntry* entry = file.newEntry(file.newTag("tbOne"));
        entry->setData(data.data(), int(data.size()));
        entry->setVersion(0x01020000);
        return entry;
    }
    std::string dataOf(int entry) const
    {
        tbEntry* read = file.getEntry(entry);
        return {static_cast<const char*>(read->getData()), std::size_t(read->getDataSize())};
    }

    tbtest::TempDirectory directory;
    std::string path = directory.path("file.tb");
    tbFile file;
};

} // namespace

TEST_F(FileWrite, OldFileStaysUntilTheNewOneIsComplete)
{
    tbtest::writeAll(path, "old");
    for (const bool writes : {false, true})
    {
        ASSERT_TRUE(file.create(path.c_str()));
        addEntry("data");
        EXPECT_EQ(tbtest::readAll(path), "old");
        EXPECT_TRUE(!writes || file.write());
        file.close();
        EXPECT_EQ(tbFile::isTamberFormat(path.c_str()), writes);
        EXPECT_EQ(directory.count(), 1) << "nothing is left behind";
    }
}

TEST_F(FileWrite, RefusesTargetsThatCannotBeReplaced)
{
    for (const std::string& name : {std::string(), directory.path("."), directory.path("absent/file.tb")})
    {
        EXPECT_FALSE(file.create(name.c_str())) << name;
        EXPECT_EQ(file.getLastError(), tbFile::FILE_CANNOT_OPEN);
    }
    EXPECT_FALSE(file.create(nullptr));
    EXPECT_FALSE(file.write());
    EXPECT_EQ(file.getLastError(), tbFile::FILE_NOT_OPEN);
    tbtest::writeAll(path, tbtest::buildFile({{"tbOne", "data"}}));
    ASSERT_TRUE(file.open(path.c_str(), "r"));
    EXPECT_FALSE(file.write());
    EXPECT_EQ(file.getLastError(), tbFile::FILE_NOT_WRITABLE);
    ASSERT_TRUE(file.create(path.c_str()));
    EXPECT_FALSE(file.save(nullptr)); // nor a file without a root
    EXPECT_EQ(file.getLastError(), tbFile::FILE_WRITE_ERROR);
    EXPECT_EQ(tbtest::readAll(path), tbtest::buildFile({{"tbOne", "data"}}));
}

TEST_F(FileWrite, RunsArePackedWhenItPays)
{
    std::string mixed;
    for (int i = 0; i < 300; ++i)
        mixed += char(i);
    // With how many bytes it packs into, 0 when it does not pay.
    const std::pair<std::string, std::size_t> entries[] = {
        {std::string(9, 'x'), 0},
        {std::string(1000, 'x'), 9},
        {mixed, 0},
        {std::string(255, 'a') + "b" + std::string(600, 'c') + std::string(255, 'd'), 13}};
    for (const bool swapped : {false, true})
    {
        ASSERT_TRUE(file.create(path.c_str()));
        file.setByteSwapped(swapped);
        std::size_t size = 96 + 68 + 112 * 5 + 1000;
        addEntry(std::string(1000, 'x')); // made before packing was asked for
        file.setCompression(tbEntry::RLE);
        for (const auto& [data, packedSize] : entries)
        {
            file.newEntry(0)->writeChunk(data.data(), int(data.size()));
            size += packedSize > 0 ? 4 + packedSize : data.size();
        }
        ASSERT_TRUE(file.write());
        EXPECT_EQ(tbtest::readAll(path).size(), size);
        ASSERT_TRUE(file.open(path.c_str(), "r"));
        for (int i = 0; i < 4; ++i)
        {
            tbEntry* entry = file.getEntry(i + 1);
            ASSERT_TRUE(file.readEntry(entry));
            EXPECT_EQ(entry->getCompression() == tbEntry::RLE, entries[i].second > 0) << i;
            EXPECT_EQ(dataOf(i + 1), entries[i].first);
        }
    }
}

TEST_F(FileWrite, EitherByteOrderIsExactAndReadsBack)
{
    for (const bool swapped : {false, true})
    {
        FileBuilder expected(swapped);
        const std::string record = expected.record().integer(5).word(6).wide(2.5).byte(7).number(1.5f);
        expected.add("tbOne", record);
        expected.add("tbTwo", record);
        ASSERT_TRUE(file.create(path.c_str()));
        ASSERT_TRUE(file.setByteSwapped(swapped));
        for (const char* name : {"tbOne", "tbTwo"})
        {
            tbEntry* entry = file.newEntry(file.newTag(name));
            entry->setVersion(0x01020000);
            entry->writeInt(5);
            entry->writeShort(6);
            entry->writeDouble(2.5);
            entry->writeByte(7);
            entry->writeFloat(1.5f);
        }
        EXPECT_FALSE(file.setByteSwapped(!swapped)) << "too late";
        for (const char* which : {"first", "second, from what the first wrote"})
        {
            ASSERT_TRUE(file.write()) << which;
            EXPECT_EQ(tbtest::readAll(path), expected.build()) << which;
        }
    }
    ASSERT_TRUE(file.open(path.c_str(), "r"));
    EXPECT_FALSE(file.setByteSwapped(true)) << "not created";
}

TEST_F(FileWrite, RewritingKeepsWhatWasNeverLoadedAndItsByteOrder)
{
    FileBuilder builder(true);
    builder.add("tbOne", builder.record().integer(5).wide(2.5));
    builder.add("tbOne", std::string(300, 'x'));
    tbtest::writeAll(path, builder.build() + std::string(5000, 'y'));
    ASSERT_TRUE(file.open(path.c_str(), "rw"));
    addEntry(Record().integer(6));
    ASSERT_TRUE(file.write());
    ASSERT_TRUE(file.write()) << "a second time, from what the first wrote";
    EXPECT_EQ(tbtest::readAll(path).size(), 96u + 68 + 112 * 3 + 16 + 300 + 4) << "cut at its new end";

    ASSERT_TRUE(file.open(path.c_str(), "r"));
    ASSERT_TRUE(file.readEntry(file.getEntry(0)) && file.readEntry(file.getEntry(2)));
    EXPECT_TRUE(file.getEntry(0)->isByteSwapped());
    EXPECT_EQ(file.getEntry(0)->readInt(), 5);
    EXPECT_EQ(file.getEntry(0)->readDouble(), 2.5);
    EXPECT_FALSE(file.getEntry(2)->isByteSwapped());
    EXPECT_EQ(file.getEntry(2)->readInt(), 6);
}

TEST_F(FileWrite, AFileThatWasOpenedIsPackedAsIsWantedThen)
{
    for (const auto before : {tbEntry::NO_COMPRESSION, tbEntry::RLE})
        for (const auto wanted : {tbEntry::NO_COMPRESSION, tbEntry::RLE})
        {
            SCOPED_TRACE(testing::Message() << before << " to " << wanted);
            ASSERT_TRUE(file.create(path.c_str()));
            addEntry(std::string(5000, 'x'))->setCompression(before);
            ASSERT_TRUE(file.write());
            ASSERT_TRUE(file.open(path.c_str(), "rw"));
            file.getEntry(0)->setCompression(wanted);
            ASSERT_TRUE(file.write()) << file.getErrorText();
            ASSERT_TRUE(file.open(path.c_str(), "r"));
            EXPECT_EQ(file.getEntry(0)->getCompression(), wanted);
            ASSERT_TRUE(file.readEntry(file.getEntry(0)));
            EXPECT_EQ(dataOf(0), std::string(5000, 'x'));
        }
}

TEST_F(FileWrite, ProgressRisesToTheEnd)
{
    static std::vector<double> heard;
    const auto isWhole = []
    {
        const bool rising = std::is_sorted(heard.begin(), heard.end());
        const bool whole = heard.size() == 10 && heard.front() < 0.2 && heard.back() == 1.0;
        heard.clear();
        return rising && whole;
    };
    ASSERT_TRUE(file.create(path.c_str()));
    file.setProgressFunc([](double done) { heard.push_back(done); });
    for (int i = 0; i < 10; ++i)
        addEntry(std::string(5000, 'x'))->setCompression(tbEntry::COMPRESSION(i % 2));
    ASSERT_TRUE(file.write());
    EXPECT_TRUE(isWhole());
    ASSERT_TRUE(file.open(path.c_str(), "r"));
    file.setProgressFunc([](double done) { heard.push_back(done); });
    for (int i = 0; i < 10; ++i)
        ASSERT_TRUE(file.readEntry(file.getEntry(i)));
    EXPECT_TRUE(isWhole());
}

TEST_F(FileWrite, DamagedEntryKeepsTheOldFile)
{
    FileBuilder builder;
    builder.add("tbOne", "data").size = 1000;
    const std::string bytes = builder.build();
    tbtest::writeAll(path, bytes);
    ASSERT_TRUE(file.open(path.c_str(), "rw"));
    tbtest::expectMessage("the data lies outside");
    EXPECT_FALSE(file.write());
    EXPECT_EQ(file.getLastError(), tbFile::FILE_READ_ERROR);
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(tbtest::readAll(path), bytes);
    EXPECT_EQ(directory.count(), 1);
}

// Entries may lie on the same bytes while nothing but the directory is read; a file of their own they cannot share.
TEST_F(FileWrite, LongerThanTwoGigabytesIsRefusedBeforeAnythingIsTouched)
{
    constexpr std::uint32_t LONG = 1 << 30;
    FileBuilder builder;
    for (int i = 0; i < 2; ++i)
    {
        FileBuilder::Entry& entry = builder.add("tbOne", "");
        entry.offset = 1024;
        entry.size = LONG;
    }
    tbtest::writeAll(path, builder.build());
    std::filesystem::resize_file(path, std::uintmax_t(LONG) + 1024);
    ASSERT_TRUE(file.open(path.c_str(), "rw")) << file.getErrorText();
    EXPECT_FALSE(file.write());
    EXPECT_EQ(file.getLastError(), tbFile::FILE_WRITE_ERROR);
    EXPECT_NE(std::string(file.getErrorText()).find("2 GiB"), std::string::npos) << file.getErrorText();
    EXPECT_EQ(directory.count(), 1);
    EXPECT_EQ(std::filesystem::file_size(path), std::uintmax_t(LONG) + 1024);
    file.close();
}

TEST_F(FileWrite, EntryThatIsWrittenAnewIsWhatItIsReadAs)
{
    tbtest::writeAll(path, tbtest::buildFile({{"tbOne", std::string(64, 'x')}}));
    ASSERT_TRUE(file.open(path.c_str(), "rw"));
    tbEntry* entry = file.getEntry(0);
    entry->writeInt(7);
    EXPECT_EQ(entry->getDataSize(), 4) << "a part of the old data is none";
    tbEntry* fresh = addEntry("data");
    ASSERT_TRUE(file.write());
    for (tbEntry* each : {entry, fresh})
    {
        each->reset();
        each->writeInt(8); // given up
        ASSERT_TRUE(file.readEntry(each)) << file.getErrorText();
    }
    EXPECT_EQ(dataOf(0), Record().integer(7).get());
    EXPECT_EQ(dataOf(1), "data");
}

TEST_F(FileWrite, ReplacedFileKeepsItsRightsAndTheLinksToIt)
{
    namespace fs = std::filesystem;
    tbtest::writeAll(path, "old");
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    const fs::perms rights = fs::status(path).permissions();
    const std::string link = directory.path("link.tb");
    std::error_code unsupported;
    fs::create_symlink(path, link, unsupported);
    if (unsupported)
        GTEST_SKIP() << "no links here";
    ASSERT_TRUE(file.create(link.c_str()));
    addEntry("data");
    ASSERT_TRUE(file.write());
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_TRUE(tbFile::isTamberFormat(path.c_str()));
    EXPECT_EQ(fs::status(path).permissions(), rights);

    // Links to nothing lead on as well, where the system tells where to.
    file.close();
    fs::remove(path);
    ASSERT_TRUE(file.create(link.c_str()));
    addEntry("data");
    ASSERT_TRUE(file.write());
    EXPECT_EQ(fs::is_symlink(link), fs::path::preferred_separator == '/');
    EXPECT_EQ(fs::exists(path), fs::path::preferred_separator == '/');
}
