// 'tamber dump', 'build' and 'diff' as processes.

#include <tests/app/Program.h>
#include <tests/support/FileBuilder.h>
#include <tests/support/TempFile.h>

#include <gtest/gtest.h>

using tbtest::expectRun;

namespace
{
std::string fileOf(int event)
{
    return tbtest::buildFile({{"tbEvent", tbtest::Record().object().integer(event)}});
}
} // namespace

TEST(NativeFiles, GoThroughTextAndBack)
{
    const std::string bytes = fileOf(1);
    tbtest::writeAll("a.tb", bytes);
    expectRun("dump a.tb --out a.txt", 0);
    const std::string text = tbtest::readAll("a.txt");
    EXPECT_EQ(expectRun("dump a.tb", 0, {"\n  enabled true\n"}).out, text);
    for (int i = 0; i < 2; ++i) // a file that is there is replaced
        expectRun("build a.txt b.tb", 0);
    EXPECT_EQ(tbtest::readAll("b.tb"), bytes);

    tbtest::writeAll("bad.txt", text + "  loud 1\n");
    expectRun("build bad.txt b.tb", 1, {"bad.txt: line 9, column 3: "});
    EXPECT_EQ(tbtest::readAll("b.tb"), bytes);
    expectRun("dump bad.txt", 1);
    expectRun("build a.txt no/such/place.tb", 1);
}

TEST(NativeFiles, DiffTellsByItsExitCode)
{
    tbtest::writeAll("a.tb", fileOf(1));
    tbtest::writeAll("b.tb", fileOf(0));
    tbtest::writeAll("c.tb", fileOf(0).substr(0, 100));
    expectRun("diff a.tb a.tb", 0);
    EXPECT_EQ(expectRun("diff a.tb b.tb", 1).out, "/tbEvent enabled: true -> false\n");
    expectRun("diff a.tb b.tb --json", 1, {"\"differences\": 1"});
    for (const char* unreadable : {"c.tb", "nothing.tb", "nothing.obj"})
        expectRun(std::string("diff a.tb ") + unreadable, 2);
}

#ifdef TAMBER_HAS_LOADER
TEST(NativeFiles, DiffImportsForeignModels)
{
    tbtest::writeAll("a.tb", fileOf(1));
    expectRun("diff \"" TAMBER_TOWN "\" \"" TAMBER_TOWN "\"", 0);
    expectRun("diff \"" TAMBER_TOWN "\" a.tb", 1);
}
#endif
