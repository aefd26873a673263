// 'tamber dump', 'build' and 'diff' as processes.

#include <tests/app/Program.h>
#include <tests/support/FileBuilder.h>
#include <tests/support/TempFile.h>

#include <gtest/gtest.h>

using tbtest::holds;
using tbtest::Record;
using tbtest::run;

namespace
{
std::string fileOf(int event)
{
    tbtest::FileBuilder file;
    file.add("tbEvent", Record().object().integer(event));
    return file.build();
}
} // namespace

TEST(NativeFiles, GoThroughTextAndBack)
{
    const std::string bytes = fileOf(1);
    tbtest::writeAll("a.tb", bytes);
    EXPECT_EQ(run("dump a.tb --out a.txt").code, 0);
    const tbtest::Result printed = run("dump a.tb");
    EXPECT_EQ(printed.out, tbtest::readAll("a.txt"));
    EXPECT_TRUE(holds(printed.out, "\n  enabled true\n"));

    EXPECT_EQ(run("build a.txt b.tb").code, 0);
    EXPECT_EQ(tbtest::readAll("b.tb"), bytes);
    EXPECT_EQ(run("build a.txt b.tb").code, 0) << "a file that is there is replaced";

    tbtest::writeAll("bad.txt", printed.out + "  loud 1\n");
    const tbtest::Result refused = run("build bad.txt b.tb");
    EXPECT_EQ(refused.code, 1);
    EXPECT_TRUE(holds(refused.err, "bad.txt: line 9, column 3: ")) << refused.err;
    EXPECT_EQ(tbtest::readAll("b.tb"), bytes);
    EXPECT_EQ(run("dump bad.txt").code, 1);
    EXPECT_EQ(run("build a.txt no/such/place.tb").code, 1);
}

TEST(NativeFiles, DiffTellsByItsExitCode)
{
    tbtest::writeAll("a.tb", fileOf(1));
    tbtest::writeAll("b.tb", fileOf(0));
    EXPECT_EQ(run("diff a.tb a.tb").code, 0);
    const tbtest::Result different = run("diff a.tb b.tb");
    EXPECT_EQ(different.code, 1);
    EXPECT_EQ(different.out, "/tbEvent enabled: true -> false\n");
    EXPECT_TRUE(holds(run("diff a.tb b.tb --json").out, "\"differences\": 1"));
    tbtest::writeAll("c.tb", fileOf(0).substr(0, 100));
    for (const char* unreadable : {"c.tb", "nothing.tb", "nothing.obj"})
        EXPECT_EQ(run(std::string("diff a.tb ") + unreadable).code, 2) << unreadable;
}

#ifdef TAMBER_HAS_LOADER
TEST(NativeFiles, DiffImportsForeignModels)
{
    tbtest::writeAll("a.tb", fileOf(1));
    EXPECT_EQ(run("diff \"" TAMBER_TOWN "\" \"" TAMBER_TOWN "\"").code, 0);
    EXPECT_EQ(run("diff \"" TAMBER_TOWN "\" a.tb").code, 1);
}
#endif
