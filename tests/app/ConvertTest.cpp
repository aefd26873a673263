// 'tamber convert' as a process.

#include "Program.h"

#include <tests/support/TempFile.h>

#include <gtest/gtest.h>

using namespace tbtest;

TEST(Convert, NativeFilesComeBackFromEveryWayOfWriting)
{
    writeRow("row.tb");
    expectRun("convert row.tb plain.tb", 0);
    const std::string plain = readAll("plain.tb");
    for (const std::string options : {"", " --compress", " --swap", " --compress --swap"})
    {
        EXPECT_TRUE(expectRun("convert plain.tb way.tb" + options, 0).out.starts_with("way.tb: ")) << options;
        const std::string way = readAll("way.tb");
        EXPECT_EQ(way[0] == plain[0], !holds(options, "--swap"));
        EXPECT_EQ(way.size() < plain.size(), holds(options, "--compress"));
        expectRun("diff plain.tb way.tb", 0);
        EXPECT_LE(run("check way.tb").code, 1) << options;
        expectRun("convert way.tb again.tb" + options, 0);
        EXPECT_EQ(readAll("again.tb"), way) << "two saves are the same bytes: " << options;
        expectRun("convert way.tb way.tb", 0); // in place
        EXPECT_EQ(readAll("way.tb"), plain) << options;
    }
}

TEST(Convert, RefusesBeforeAnythingIsRead)
{
    const TempDirectory folder;
    writeRow("whole.tb");
    std::filesystem::create_directory(folder.path("folder.tb"));
    const std::pair<const char*, const char*> cases[] = {
        {"none", "has no extension that says the format; what can be written: tb"},
        {"x.unheard", "a format that is not known here; what can be written: tb"},
        {"absent/x.tb", "there is no directory "},
        {"folder.tb", "is not a file"},
        {"x.tb", "absent.tb: there is no such file"},
#if defined(TAMBER_HAS_LOADER)
        {"x.blend", "files of this format are only read; what can be written: tb"},
#endif
    };
    for (const auto& [target, reason] : cases)
        EXPECT_EQ(expectRun("convert absent.tb " + folder.path(target), 1, {reason}).out, "");
    EXPECT_EQ(folder.count(), 1) << "nothing was written";
}

TEST(Convert, OldFileStaysWhenTheSourceIsBad)
{
    writeRow("cut.tb");
    std::filesystem::resize_file("cut.tb", 150);
    writeAll("old.tb", "old");
    expectRun("convert cut.tb old.tb", 1);
    EXPECT_EQ(readAll("old.tb"), "old");
}

#if defined(TAMBER_HAS_LOADER)
TEST(Convert, ForeignModelsAreTheSameFromAChild)
{
    expectRun("convert \"" TAMBER_TOWN "\" child.tb", 0);
    expectRun("--in-process convert \"" TAMBER_TOWN "\" here.tb", 0);
    expectRun("diff child.tb here.tb", 0);
}
#endif
