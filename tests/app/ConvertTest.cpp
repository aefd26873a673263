// 'tamber convert' as a process.

#include "Program.h"

#include <tests/support/TempFile.h>

#include <cstdlib>

#include <gtest/gtest.h>

using namespace tbtest;

TEST(Convert, NativeFilesComeBackFromEveryWayOfWriting)
{
    writeRow("row.tb");
    ASSERT_EQ(run("convert row.tb plain.tb").code, 0);
    const std::string plain = readAll("plain.tb");
    for (const char* options : {"", "--compress", "--swap", "--compress --swap"})
    {
        const Result first = run(std::string("convert plain.tb way.tb ") + options);
        EXPECT_EQ(first.code, 0) << first.err;
        EXPECT_TRUE(first.out.starts_with("way.tb: ")) << first.out;
        EXPECT_EQ(readAll("way.tb")[0] == plain[0], !holds(options, "--swap"));
        EXPECT_EQ(readAll("way.tb").size() < plain.size(), holds(options, "--compress"));
        EXPECT_EQ(run("diff plain.tb way.tb").code, 0) << options;
        EXPECT_LE(run("check way.tb").code, 1) << options;
        EXPECT_EQ(run(std::string("convert way.tb again.tb ") + options).code, 0);
        EXPECT_EQ(readAll("again.tb"), readAll("way.tb")) << "two saves are the same bytes: " << options;
        EXPECT_EQ(run("convert way.tb way.tb").code, 0) << "in place";
        EXPECT_EQ(readAll("way.tb"), plain) << options;
    }
}

TEST(Convert, RefusesBeforeAnythingIsRead)
{
    const TempDirectory folder;
    writeRow("whole.tb");
    std::filesystem::create_directory(folder.path("folder.tb"));
    const struct
    {
        const char* target;
        const char* reason;
    } cases[] = {
        {"none", "has no extension that says the format; what can be written: tb"},
        {"x.unheard", "a format that is not known here; what can be written: tb"},
        {"absent/x.tb", "there is no directory "},
        {"folder.tb", "is not a file"},
#if defined(TAMBER_HAS_LOADER)
        {"x.blend", "files of this format are only read; what can be written: tb"},
#endif
    };
    for (const auto& each : cases)
    {
        const Result result = run("convert absent.tb " + folder.path(each.target));
        EXPECT_EQ(result.code, 1) << each.target;
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(holds(result.err, each.reason)) << result.err;
    }
    const Result missing = run("convert absent.tb " + folder.path("x.tb"));
    EXPECT_TRUE(holds(missing.err, "absent.tb: there is no such file")) << missing.err;
    EXPECT_EQ(folder.count(), 1) << "nothing was written";
}

TEST(Convert, OldFileStaysWhenTheSourceIsBad)
{
    writeRow("cut.tb");
    std::filesystem::resize_file("cut.tb", 150);
    writeAll("old.tb", "old");
    EXPECT_EQ(run("convert cut.tb old.tb").code, 1);
    EXPECT_EQ(readAll("old.tb"), "old");
}

#if defined(TAMBER_HAS_LOADER)
TEST(Convert, ForeignModelsAreTheSameFromAChild)
{
    const Result child = run("convert \"" TAMBER_TOWN "\" child.tb");
    ASSERT_EQ(child.code, 0) << child.err;
    ASSERT_EQ(run("--in-process convert \"" TAMBER_TOWN "\" here.tb").code, 0);
    const Result same = run("diff child.tb here.tb");
    EXPECT_EQ(same.code, 0) << same.out << same.err;

    static char variable[] = "TAMBER_IMPORT_PROGRAM=nowhere";
    putenv(variable);
    const Result without = run("convert \"" TAMBER_TOWN "\" child.tb");
    EXPECT_EQ(without.code, 1);
    EXPECT_TRUE(holds(without.err, "TAMBER_IMPORT_PROGRAM names no program")) << without.err;
    EXPECT_EQ(run("convert --in-process \"" TAMBER_TOWN "\" here.tb").code, 0);
    EXPECT_EQ(run("convert child.tb again.tb").code, 0) << "a native file needs no child";
}
#endif
