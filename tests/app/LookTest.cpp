// The commands that look at files: 'tamber info' and 'tamber check'.
#include <tests/app/Program.h>

#include <tests/support/FileBuilder.h>
#include <tests/support/TempFile.h>

#include <tamber/graph/tbModel.h>
#include <tamber/graph/tbTransform.h>
#include <tamber/io/tbLoader.h>
#include <tamber/kernel/tbRef.h>

#include <gtest/gtest.h>

using tbtest::expectRun;

namespace
{
void writeModel(const char* path, const char* name = "model")
{
    const tbRef<tbModel> model(new tbModel);
    model->setName(name);
    auto* shared = new tbGroup;
    shared->setName("shared");
    shared->addChild(new tbTransform);
    for (int i = 0; i < 2; ++i)
    {
        auto* side = new tbGroup;
        side->addChild(shared);
        model->addChild(side);
    }
    ASSERT_TRUE(tbLoader::exportFile(model.get(), path));
}

/// A file of one group with these flags, which are words.
void writeGroup(const char* path, int flags, int reference)
{
    const std::string group =
        tbtest::Record().integer(0).word(flags).integer(0).word(0).word(0).list({reference});
    tbtest::writeAll(path, tbtest::buildFile({{"tbGroup", group}}));
}
} // namespace

TEST(Program, CheckTellsSoundWarnedAndDamagedFilesApart)
{
    writeModel("model.tb");
    writeGroup("warned.tb", 0x4000, -1);
    writeGroup("damaged.tb", 0x4000, 7);
    expectRun("check model.tb", 0, {"model.tb: sound\n"});
    expectRun("check warned.tb --json", 1, {"\"number\": 514"});
    expectRun("check damaged.tb --limit 1", 2, {"1 error, 1 warning, 0 notes; the first 1 are listed"});
    expectRun("check damaged.tb", 2,
              {": error 516 reference-range: entry 0 (tbGroup), byte 296: children: "});
}

// Neither needs the kernel, so neither minds that no module can be found.
TEST(Program, InfoReadsTheTablesOfNativeFiles)
{
    writeModel("model.tb");
    tbtest::writeAll("cut.tb", tbtest::readAll("model.tb").substr(0, 200));
    expectRun("info model.tb", 0, {"model.tb: native file"});
    expectRun("info model.tb --json", 0, {"\"class\": \"tbTransform\",\n      \"entries\": 1,"});
    expectRun("info cut.tb", 1, {"tables-beyond-file"});
}

TEST(Program, InfoShowsTreesAndSharedNodesOnce)
{
    writeModel("model.tb", "twice\n\"quoted\"");
    expectRun("info model.tb --tree", 0,
              {"nodes    5 in 4 levels, 7 with every place", "tbModel \"twice?\"quoted\"\"",
               "shared by 2, shown above\n"});
    expectRun("info model.tb --tree --depth 1", 0, {"1 children not shown"});
    expectRun("info model.tb --tree --json --lines 3", 0,
              {"\"name\": \"twice\\n\\\"quoted\\\"\"", "\"complete\": false"});
}
