// Small good files cut at every place, with every byte that is read changed, and with several changes at random: no
// crash, no hang, nothing left behind, and every failure says what it is.
#include <tests/files/Mutator.h>
#include <tests/files/WholeFile.h>

#include <tests/support/Cost.h>
#include <tests/support/Messages.h>
#include <tests/support/TempFile.h>

#include <tamber/io/tbiFileLayout.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

using tbtest::WholeFile;

namespace
{

const std::filesystem::path WHOLE_FOLDER = TEST_DATA "/good";
constexpr const char* GOOD_FILES[] = {"kernel.tb",
                                      "kernel-swapped.tb",
                                      "kernel-packed.tb",
                                      "portable.tb",
                                      "portable-swapped-packed.tb",
                                      "collider.tb",
                                      "collider-swapped-packed.tb",
                                      "arrays.tb",
                                      "arrays-swapped.tb",
                                      "arrays-packed.tb"};

// Of reserved bytes, of the gap behind the directory and of what follows a tag's name nothing is read.
std::vector<bool> bytesThatAreRead(const std::string& bytes, bool swapped)
{
    using namespace tbiFileLayout;
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
    const std::size_t numEntries = load<std::uint32_t>(data + HEADER_ENTRIES, swapped);
    const std::size_t numTags = load<std::uint32_t>(data + HEADER_TAGS, swapped);
    std::vector<bool> read(bytes.size(), true);
    const auto skip = [&](std::size_t from, std::size_t to)
    { std::fill(read.begin() + std::ptrdiff_t(from), read.begin() + std::ptrdiff_t(to), false); };
    skip(HEADER_VERSION + 4, HEADER_ENTRIES);
    skip(HEADER_TAGS + 4, HEADER_SIZE);
    std::size_t place = HEADER_SIZE;
    for (std::size_t i = 0; i < numTags; ++i, place += TAG_SIZE)
        skip(place + TAG_NAME + std::strlen(bytes.data() + place + TAG_NAME) + 1, place + TAG_SIZE);
    skip(place + RECORD_SIZE * numEntries, place + RECORD_SPACE * numEntries);
    return read;
}

void readOnce(const std::string& path)
{
    const WholeFile file(path);
    EXPECT_TRUE(file.opened || file.error != tbFile::FILE_OK);
    EXPECT_TRUE(file.error == tbFile::FILE_OK || !file.text.empty()) << "no error text";
}

// Reads, saves and walks all.
void useOnce(const std::string& path)
{
    const tbtest::Cost cost;
    const WholeFile file(path);
    EXPECT_LE(cost.bytes(), tbtest::mostBytes(std::size_t(std::filesystem::file_size(path))));
    EXPECT_TRUE(file.error == tbFile::FILE_OK || !file.text.empty()) << "no error text";
    if (!file.objects.empty() && file.objects[0])
    {
        const auto folder = std::filesystem::path(path).parent_path();
        const tbRef<tbBase> copy = tbtest::saveAndRead(file.objects[0].get(), folder.string());
        EXPECT_TRUE(copy) << "what it holds cannot be saved and read";
        tbtest::useGraphs({copy});
    }
    tbtest::useGraphs(file.objects);
}

// What a process makes once, like classes and longer lists, is there later.
void leavesNothing(void (*use)(const std::string&), const std::string& path, int mostTimes = 2)
{
    bool grows = true;
    for (int time = 0; grows && time < mostTimes; ++time)
    {
        const tbtest::Alive before;
        use(path);
        grows = !(tbtest::Alive() == before);
    }
    EXPECT_FALSE(grows) << "something is left";
}

class DamagedBytes : public testing::TestWithParam<const char*>
{
protected:
    DamagedBytes()
    {
        WholeFile::prepare();
        tbtest::allowMessages();
        tbtest::writeAll(path, bytes);
        EXPECT_EQ(WholeFile(path).error, tbFile::FILE_OK);
    }

    std::string bytes = tbtest::readAll((WHOLE_FOLDER / GetParam()).string());
    std::vector<bool> isRead = bytesThatAreRead(bytes, std::strstr(GetParam(), "swapped") != nullptr);
    tbtest::TempDirectory directory;
    std::string path = directory.path("damaged.tb");
};

} // namespace

TEST_P(DamagedBytes, NoPrefixDoesHarm)
{
    for (std::size_t length = bytes.size(); length-- > 0;)
    {
        if (!isRead[length] && length % 16 != 0)
            continue;
        std::filesystem::resize_file(path, length);
        if (length % SWEEP_STEP == 0)
            leavesNothing(readOnce, path);
    }
}

TEST_P(DamagedBytes, NoChangedByteDoesHarm)
{
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    for (std::size_t i = 0; i < bytes.size(); ++i)
    {
        if (!isRead[i] || i % SWEEP_STEP != 0)
            continue;
        for (const char wrong : {'\0', '\x7F', '\x80', '\xFF'})
        {
            file.seekp(std::streamoff(i)).put(wrong).flush();
            if (wrong != bytes[i])
                leavesNothing(readOnce, path);
        }
        file.seekp(std::streamoff(i)).put(bytes[i]).flush();
    }
}

TEST(DamagedFiles, NothingDoesHarmWhateverChanges)
{
    WholeFile::prepare();
    tbtest::allowMessages();
    std::vector<std::string> files;
    for (const char* name : GOOD_FILES)
        files.push_back(tbtest::readAll((WHOLE_FOLDER / name).string()));
    const tbtest::TempDirectory directory;
    const std::string path = directory.path("damaged.tb");
    const char* wanted = std::getenv("TAMBER_DAMAGED_FILES");
    const int number = wanted ? std::atoi(wanted) : NUM_MUTATIONS;
    tbtest::Mutator mutator(files, 1);
    double longest = 0;
    for (int i = 0; i < number && !HasFailure(); ++i)
    {
        SCOPED_TRACE(i);
        tbtest::writeAll(path, mutator.next());
        const tbtest::Cost cost;
        leavesNothing(useOnce, path, 6);
        longest = std::max(longest, cost.seconds());
    }
    std::printf("%d files, the longest took %.3f s\n", number, longest);
    EXPECT_TRUE(longest < 5);
}

INSTANTIATE_TEST_SUITE_P(All, DamagedBytes, testing::ValuesIn(GOOD_FILES));
