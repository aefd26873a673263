#include <tamber/io/tbEntry.h>

#include <tamber/io/tbFile.h>
#include <tests/support/FileBuilder.h>
#include <tests/support/Messages.h>
#include <tests/support/RandomValues.h>
#include <tests/support/TempFile.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>

namespace
{

// An entry of a new file, to write into and to read back.
class Entry : public testing::Test
{
protected:
    Entry()
    {
        EXPECT_TRUE(file.create(directory.path("entry.tb").c_str()));
        entry = file.newEntry(file.newTag("tbAnything"));
    }
    std::string data() const
    {
        return {static_cast<const char*>(entry->getData()), std::size_t(entry->getDataSize())};
    }

    tbtest::TempDirectory directory;
    tbFile file;
    tbEntry* entry;
};

// Runs of one byte of all lengths, and now and then bytes that are no run.
std::string runs(tbtest::Random& random, int numRuns)
{
    std::string bytes;
    for (int i = 0; i < numRuns; ++i)
        bytes.append(std::size_t(random.index(4) ? random.index(40) : random.index(1500)),
                     char(random.index(256)));
    return bytes;
}

// Reads anything, and tells what it got and where the cursor is then.
std::string readAnything(tbEntry* entry, int what, int number)
{
    std::string got(std::size_t(8 + 4 * std::max(number, 0)), '?');
    const auto keep = [&](auto value) { std::memcpy(got.data(), &value, sizeof value); };
    const std::function<void()> reads[] = {
        [&] { keep(entry->readByte()); },
        [&] { keep(entry->readShort()); },
        [&] { keep(entry->readInt()); },
        [&] { keep(entry->readDouble()); },
        [&] { entry->readInts(reinterpret_cast<int*>(got.data()), number); },
        [&] { entry->readFloats(reinterpret_cast<float*>(got.data()), number); },
        [&] { keep(entry->readString(got.data() + 4, number)); },
        [&] { keep(entry->readChunk(got.data() + 4, number)); },
        [&] { entry->reset(); },
    };
    reads[what]();
    return got + std::to_string(entry->getRemaining());
}

} // namespace

TEST_F(Entry, RowsTextsAndChunksComeBackAsTheyWereWritten)
{
    const std::vector<int> ints = {1, -2, std::numeric_limits<int>::min()};
    const std::vector<float> floats = {1.5f, -0.0f, std::numeric_limits<float>::infinity()};
    entry->writeInts(ints.data(), 3);
    entry->writeFloats(floats.data(), 3);
    entry->writeBool(true);
    entry->writeBool(false);
    entry->writeString("name");
    entry->writeChunk("abc", 3);
    entry->reset();

    std::vector<int> readInts(3);
    std::vector<float> readFloats(3);
    char text[5];
    char chunk[4] = "";
    entry->readInts(readInts.data(), 3);
    entry->readFloats(readFloats.data(), 3);
    EXPECT_EQ(readInts, ints);
    EXPECT_TRUE(readFloats == floats && std::signbit(readFloats[1]));
    EXPECT_TRUE(entry->readBool());
    EXPECT_FALSE(entry->readBool());
    EXPECT_EQ(entry->readString(text, 5), 5);
    EXPECT_STREQ(text, "name");
    EXPECT_EQ(entry->readChunk(chunk, 3), 3);
    EXPECT_STREQ(chunk, "abc");
    EXPECT_EQ(entry->getRemaining(), 0);
}

TEST_F(Entry, WritingOverOldDataKeepsWhatLiesBehind)
{
    for (int i = 0; i < 4; ++i)
        entry->writeInt(i);
    entry->reset();
    entry->writeInt(9);
    EXPECT_EQ(entry->getDataSize(), 16);
    EXPECT_EQ(data(), tbtest::Record().integer(9).integer(1).integer(2).integer(3).get());
}

TEST_F(Entry, IntegersAndFloatsStandAtFourAndDoublesAtEightWithZerosInTheGaps)
{
    tbtest::Record expected;
    for (int i = 0; i < 10000; ++i) // grows many times
    {
        entry->writeByte(1);
        entry->writeInt(2);
        entry->writeShort(3);
        entry->writeFloat(0);
        entry->writeByte(4);
        entry->writeDouble(1);
        expected.byte(1).integer(2).word(3).number(0).byte(4).wide(1);
    }
    EXPECT_EQ(entry->getDataSize(), 320000);
    EXPECT_EQ(data(), expected.get());
}

TEST_F(Entry, BeyondTheEndReadsGiveMarkersAndTheCursorStays)
{
    entry->setData("\1\2\3\4\5\6", 6);
    entry->reset();
    entry->readByte();
    EXPECT_EQ(entry->readInt(), -1) << "an aligned integer would end behind the data";
    EXPECT_EQ(entry->readDouble(), -1.0);
    EXPECT_EQ(entry->getRemaining(), 5) << "what does not fit whole leaves the cursor where it was";

    char text[100];
    EXPECT_EQ(entry->readChunk(text, 100), 5);
    EXPECT_EQ(entry->readByte(), char(-1));
    EXPECT_EQ(entry->readShort(), short(-1));
    EXPECT_EQ(entry->readFloat(), -1.0f);
    EXPECT_TRUE(entry->readBool());
    EXPECT_EQ(entry->readString(text, 4), -1);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(entry->readChunk(text, 4), -1);
    EXPECT_FALSE(entry->hasFailed());

    entry->setData("\7\0\0\0", 4);
    entry->reset();
    int values[2] = {0, 0};
    entry->readInts(values, -5);
    EXPECT_EQ(entry->getRemaining(), 4);
    entry->readInts(values, 2);
    EXPECT_TRUE(values[0] != 0 && values[1] == -1) << "rows end in markers";
}

TEST_F(Entry, TextsAreCutToWhatIsThereAndAlwaysEnd)
{
    entry->setData("abcdef", 6);
    entry->reset();
    char text[16];
    EXPECT_EQ(entry->readString(text, 3), 3);
    EXPECT_STREQ(text, "ab") << "the last byte is always zero";
    EXPECT_EQ(entry->readString(text, 16), 16);
    EXPECT_STREQ(text, "def");
    EXPECT_EQ(entry->getRemaining(), 0);
    EXPECT_EQ(entry->readString(text, -1), -1);
}

TEST_F(Entry, CountsMustFitWhatRemains)
{
    for (const int count : {2, -7, 0x7FFFFFFF, 0})
        entry->writeInt(count);
    entry->reset();
    EXPECT_EQ(entry->readCount(6), 2);
    EXPECT_EQ(entry->readCount(4), 0) << "a negative count is none";
    EXPECT_FALSE(entry->hasFailed());
    tbtest::expectMessage("entry 0 (tbAnything), byte 12: more items than the entry can hold");
    EXPECT_EQ(entry->readCount(1), 0);
    EXPECT_TRUE(entry->hasFailed());
    EXPECT_EQ(file.getLastError(), tbFile::FILE_READ_ERROR);
}

TEST_F(Entry, SetDataReplacesEverything)
{
    for (int i = 0; i < 100; ++i)
        entry->writeInt(i);
    entry->setData("ab", 2);
    EXPECT_EQ(data(), "ab");
    entry->setData(nullptr, 5);
    EXPECT_EQ(entry->getDataSize(), 0);
    entry->writeChunk("secret", 6);
    entry->setData("ab", 2);
    entry->writeByte('c');
    EXPECT_EQ(data().find("ecre"), std::string::npos) << "what lay behind the new end is gone";
}

// The property that the cursor's way over packed data is that over the same data unpacked, whatever is asked.
TEST_F(Entry, PackedDataReadsAsIfItWereNot)
{
    tbtest::Random random(7);
    const std::string path = directory.path("packed.tb");
    for (int round = 0; round < 30; ++round)
    {
        SCOPED_TRACE(round);
        const std::string bytes = runs(random, 10 + random.index(200));
        // The pairs may give less than all; zeros are the rest.
        const std::string rest(std::size_t(round % 3 == 0 ? random.index(20) : 0), '\0');
        tbtest::FileBuilder builder(round % 2 == 1);
        builder.add("tbAnything", bytes + rest);
        builder.addPacked("tbAnything", bytes).size += std::uint32_t(rest.size());
        tbtest::writeAll(path, builder.build());
        ASSERT_TRUE(file.open(path.c_str(), "rw"));
        tbEntry* plain = file.getEntry(0);
        tbEntry* packed = file.getEntry(1);
        ASSERT_TRUE(file.readEntry(plain) && file.readEntry(packed));
        const auto readOn = [&](int times)
        {
            for (int i = 0; i < times; ++i)
            {
                const int what = random.index(random.index(50) ? 8 : 9);
                const int number = random.index(10) ? random.index(30) - 1 : random.index(3000);
                ASSERT_EQ(readAnything(plain, what, number), readAnything(packed, what, number)) << what;
            }
        };
        readOn(300);
        ASSERT_TRUE(file.write());
        readOn(100);
        ASSERT_TRUE(file.readEntry(plain) && file.readEntry(packed)) << "as it was written";
        readOn(100);
        const auto same = [&]
        { return std::memcmp(plain->getData(), packed->getData(), std::size_t(plain->getDataSize())) == 0; };
        ASSERT_TRUE(round % 4 > 0 || same());
        if (round % 4 < 3)
            for (tbEntry* each : {plain, packed})
                each->writeInt(round);
        readOn(100);
        ASSERT_TRUE(plain->getDataSize() == packed->getDataSize() && same());
        packed->setData("ab", 2);
        ASSERT_EQ(packed->getDataSize(), 2);
    }
}
