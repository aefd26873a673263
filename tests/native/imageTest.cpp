// A file as it lies on the disk: what is understood of it, and that no byte is lost.
#include <tests/native/Specimen.h>
#include <tests/support/RandomValues.h>

#include <tests/support/TempFile.h>

#include <gtest/gtest.h>

using namespace native;

namespace
{
/// How often each byte of a file belongs to something.
std::vector<int> coverageOf(Image& image)
{
    std::vector<int> coverage(std::size_t(image.getLength()));
    const auto cover = [&](std::uint64_t from, std::uint64_t to)
    {
        for (std::uint64_t i = from; i < to; ++i)
            ++coverage.at(std::size_t(i));
    };
    cover(0, std::min(image.getTablesEnd(), image.getLength()));
    cover(image.getGap().offset, image.getGap().end());
    for (const Region& stored : image.getStored())
        cover(stored.offset, stored.end());
    for (const Region& leftover : image.findLeftovers())
        cover(leftover.offset, leftover.end());
    return coverage;
}
} // namespace

TEST(Image, EveryByteBelongsToSomethingWhateverTheFileHolds)
{
    tbtest::Random random(3);
    for (int round = 0; round < 200; ++round)
    {
        std::string bytes = tbtest::specimenFile();
        for (int i = random.index(20); i > 0; --i) // of header, tags and directory
            bytes[std::size_t(8 + random.index(2500))] = char(random.index(256));
        Findings findings;
        Image image(tbtest::sourceOf(bytes), findings);
        const std::vector<int> coverage = coverageOf(image);
        EXPECT_EQ(std::count(coverage.begin(), coverage.end(), 0), 0) << "round " << round;
    }
}

TEST(Image, OnlyRegularFilesAreOpened)
{
    const tbtest::TempDirectory directory;
    EXPECT_THROW(openFileSource(directory.path("")), SourceError);
    EXPECT_THROW(openFileSource(directory.path("missing")), SourceError);
    EXPECT_THROW(openFileSource(""), SourceError);
    tbtest::writeAll(directory.path("empty"), "");
    EXPECT_EQ(openFileSource(directory.path("empty"))->getLength(), 0u);
}

// Reading to and fro through the window of a file gives what the file holds.
TEST(Image, FilesAreReadAtAnyPlace)
{
    tbtest::Random random(11);
    std::string bytes(1'000'000, '\0');
    for (char& byte : bytes)
        byte = char(random.index(256));
    const tbtest::TempDirectory directory;
    tbtest::writeAll(directory.path("bytes"), bytes);
    const auto source = openFileSource(directory.path("bytes"));
    for (int i = 0; i < 1000; ++i)
    {
        const auto offset = std::size_t(random.index(1'000'000));
        const auto size = std::size_t(random.index(i % 10 == 0 ? 400'000 : 3'000));
        std::string read(size, '\0');
        const bool whole = source->read(offset, read.data(), size);
        EXPECT_EQ(whole, offset + size <= bytes.size());
        EXPECT_TRUE(!whole || bytes.compare(offset, size, read) == 0) << offset << ' ' << size;
    }
}
