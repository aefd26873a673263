// The frozen files in tests/data/good: every release reads them alike, and saves again what it read, byte for byte.
#include <tests/files/Listing.h>
#include <tests/files/WholeFile.h>

#include <tests/support/TempFile.h>

#include <tamber/graph/tbGroup.h>
#include <tamber/io/tbiFileLayout.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

const std::filesystem::path GOOD_FOLDER = TEST_DATA "/good";

// Neither the library that wrote the file nor the versions of its classes are of the graph.
std::string withoutVersions(std::string bytes)
{
    using namespace tbiFileLayout;
    auto* data = reinterpret_cast<unsigned char*>(bytes.data());
    const auto numEntries = load<std::uint32_t>(data + HEADER_ENTRIES, false);
    const auto numTags = load<std::uint32_t>(data + HEADER_TAGS, false);
    store(data + HEADER_VERSION, 0u);
    for (std::size_t i = 0; i < numEntries; ++i)
        store(data + HEADER_SIZE + TAG_SIZE * numTags + RECORD_SIZE * i + RECORD_VERSION, 0u);
    return bytes;
}

// Where two files part, -1 when nowhere.
std::ptrdiff_t difference(const std::string& a, const std::string& b)
{
    const auto place = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return place.first == a.end() && place.second == b.end() ? -1 : place.first - a.begin();
}

} // namespace

class GoodFile : public testing::TestWithParam<const char*>
{
};

TEST_P(GoodFile, HoldsWhatItAlwaysHeldAndIsSavedTheSame)
{
    tbtest::WholeFile::prepare();
    const std::string name = GetParam();
    const std::string expected = tbtest::readAll((GOOD_FOLDER / (name + ".txt")).string());
    const std::string plain = tbtest::readAll((GOOD_FOLDER / (name + ".tb")).string());
    ASSERT_FALSE(expected.empty());
    const tbtest::TempDirectory directory;
    for (const char* form : {"", "-packed", "-swapped", "-swapped-packed"})
    {
        SCOPED_TRACE(form);
        const std::string path = (GOOD_FOLDER / (name + form + ".tb")).string();
        const tbtest::WholeFile file(path);
        EXPECT_EQ(file.error, tbFile::FILE_OK) << file.text;
        ASSERT_FALSE(file.objects.empty());
        tbBase* root = file.objects[0].get();
        EXPECT_EQ(tbtest::listGraph(root), expected);

        ASSERT_TRUE(tbtest::saveAndRead(root, directory.path("")));
        const std::string saved = tbtest::readAll(directory.path("saved.tb"));
        EXPECT_EQ(difference(withoutVersions(saved), withoutVersions(plain)), -1);
    }
}

TEST(GoodFileCopies, HoldWhatTheirOriginalsHoldButForAttributes)
{
    const tbtest::WholeFile file((GOOD_FOLDER / "kernel.tb").string());
    int numCompared = 0;
    for (const tbRef<tbBase>& object : file.objects)
    {
        const auto* node = dynamic_cast<const tbGroup*>(object.get());
        if (!node || tbtest::listGraph(node).find(" attributes ") != std::string::npos)
            continue;
        ++numCompared;
        std::vector<tbRef<tbBase>> copies = {node->makeCopy(), node->makeClone()};
        if (node->getNumChildren() == 0)
            copies.emplace_back(node->createCopy());
        for (const tbRef<tbBase>& copy : copies)
            EXPECT_EQ(tbtest::listGraph(copy.get()), tbtest::listGraph(node));
    }
    EXPECT_GE(numCompared, 19);
}

INSTANTIATE_TEST_SUITE_P(All, GoodFile, testing::Values("kernel", "portable", "collider", "arrays"));
