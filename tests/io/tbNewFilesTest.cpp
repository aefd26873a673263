#include <tamber/io/tbNewFiles.h>

#include <tests/support/TempFile.h>

#include <filesystem>

#include <gtest/gtest.h>

namespace
{
namespace fs = std::filesystem;

struct NewFiles : testing::Test
{
    tbtest::TempDirectory folder;
    const std::string old = folder.path("old");
    const std::string fresh = folder.path("fresh");
};

TEST_F(NewFiles, ComeTogetherOrNotAtAll)
{
    tbtest::writeAll(old, "old");
    for (const bool commits : {false, true})
    {
        tbNewFiles files;
        ASSERT_TRUE(files.add(old.c_str(), "new", 3));
        ASSERT_TRUE(files.add(fresh.c_str(), nullptr, 0));
        for (const std::string& bad : {folder.path("absent/file"), folder.path(""), std::string()})
            EXPECT_FALSE(files.add(bad.c_str(), "x", 1)) << bad;
        EXPECT_EQ(tbtest::readAll(old), "old");
        EXPECT_FALSE(fs::exists(fresh));
        EXPECT_TRUE(!commits || files.commit());
    }
    EXPECT_EQ(tbtest::readAll(old), "new");
    EXPECT_EQ(fs::file_size(fresh), 0u);
    EXPECT_EQ(folder.count(), 2) << "nothing stays beside them";
}

// As the system and the process have it for any file; an old one's rights stay.
TEST_F(NewFiles, HaveTheUsualRights)
{
    const std::string usual = folder.path("usual");
    for (const std::string& path : {usual, old})
        tbtest::writeAll(path, "x");
    fs::permissions(old, fs::perms::owner_read | fs::perms::owner_write);
    const fs::perms rights = fs::status(old).permissions();
    tbNewFiles files;
    ASSERT_TRUE(files.add(old.c_str(), "y", 1) && files.add(fresh.c_str(), "y", 1) && files.commit());
    EXPECT_EQ(fs::status(fresh).permissions(), fs::status(usual).permissions());
    EXPECT_EQ(fs::status(old).permissions(), rights);
}
} // namespace
