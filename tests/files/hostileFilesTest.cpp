// The damaged files in tests/data/hostile: each gives just what expected.txt says, within what a file may cost, leaves
// nothing behind, and what could be read of it can be used and saved.
#include <tests/files/Expectation.h>
#include <tests/files/Listing.h>
#include <tests/files/WholeFile.h>

#include <tests/support/Cost.h>
#include <tests/support/Messages.h>
#include <tests/support/TempFile.h>

#include <tamber/io/tbLoader.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

using tbtest::Expectation;
using tbtest::WholeFile;

namespace
{

const std::filesystem::path HOSTILE_FOLDER = TEST_DATA "/hostile";

const std::vector<Expectation>& expectations()
{
    static const std::vector<Expectation> all =
        Expectation::readAll((HOSTILE_FOLDER / "expected.txt").string());
    return all;
}

class HostileFile : public testing::TestWithParam<int>
{
protected:
    HostileFile()
    {
        WholeFile::prepare();
        tbtest::allowMessages();
    }

    const Expectation& expected = expectations()[std::size_t(GetParam())];
    std::string path = (HOSTILE_FOLDER / expected.file).string();
    std::size_t size = std::size_t(std::filesystem::file_size(path));
};

} // namespace

TEST_P(HostileFile, GivesWhatIsExpectedOfIt)
{
    Expectation::ofFile(path); // whatever is made once in a process is there now
    const tbtest::Alive before;
    const tbtest::Cost cost;
    const Expectation came = Expectation::ofFile(path);
    EXPECT_LE(cost.seconds(), tbtest::mostSeconds(size));
    EXPECT_LE(cost.bytes(), tbtest::mostBytes(size));
    EXPECT_EQ(came.toText(), expected.toText());
    EXPECT_TRUE(tbtest::Alive() == before) << "something is left";
}

TEST_P(HostileFile, LeavesAGraphThatCanBeUsedAndSaved)
{
    const tbtest::TempDirectory directory;
    const WholeFile file(path);
    const tbRef<tbBase> root = file.objects.empty() ? nullptr : file.objects[0];
    const std::string before = tbtest::listShortly({root});
    if (root)
    {
        const tbRef<tbBase> copy = tbtest::saveAndRead(root.get(), directory.path(""));
        EXPECT_EQ(tbtest::listShortly({copy}), before);
        tbtest::useGraphs({copy});
    }
    tbtest::useGraphs(file.objects);
}

TEST_P(HostileFile, IsImportedAsItIsRead)
{
    const tbRef<tbBase> root = tbLoader::importFile(path.c_str());
    const WholeFile file(path, 1);
    const tbRef<tbBase> read = file.objects.empty() ? nullptr : file.objects[0];
    EXPECT_EQ(tbtest::listShortly({root}), tbtest::listShortly({read}));
    if (!root)
    {
        EXPECT_GT(std::string(tbLoader::getErrorMessage()).size(), expected.file.size());
    }
    EXPECT_EQ(tbLoader::getError(), root ? tbLoader::LOADER_OK : tbLoader::LOADER_UNKNOWN_FORMAT);
}

TEST(HostileFiles, AllStandInTheManifest)
{
    std::set<std::string> named;
    for (const Expectation& each : expectations())
        EXPECT_TRUE(named.insert(each.file).second) << each.file << " stands there twice";
    for (const auto& entry : std::filesystem::directory_iterator(HOSTILE_FOLDER))
        EXPECT_EQ(named.count(entry.path().filename().string()), entry.path().extension() == ".tb" ? 1u : 0u)
            << entry.path();
    EXPECT_GE(named.size(), 150u);
}

INSTANTIATE_TEST_SUITE_P(All, HostileFile, testing::Range(0, int(expectations().size())),
                         [](const testing::TestParamInfo<int>& number)
                         {
                             std::string name = expectations()[std::size_t(number.param)].file;
                             std::replace_if(
                                 name.begin(), name.end(),
                                 [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
                             return name;
                         });
