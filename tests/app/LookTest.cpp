// The commands that look at files: 'tamber info' and 'tamber check'.
#include <tests/app/Program.h>

#include <tests/support/FileBuilder.h>
#include <tests/support/TempFile.h>

#include <tamber/graph/tbModel.h>
#include <tamber/graph/tbTransform.h>
#include <tamber/io/tbLoader.h>
#include <tamber/kernel/tbRef.h>

#include <gtest/gtest.h>

using tbtest::FileBuilder;
using tbtest::holds;
using tbtest::Result;
using tbtest::run;

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
    FileBuilder file;
    file.add("tbGroup", tbtest::Record().integer(0).word(flags).integer(0).word(0).word(0).integer(1).integer(
                            reference));
    tbtest::writeAll(path, file.build());
}
} // namespace

TEST(Program, CheckTellsSoundWarnedAndDamagedFilesApart)
{
    writeModel("model.tb");
    writeGroup("warned.tb", 0x4000, -1);
    writeGroup("damaged.tb", 0x4000, 7);
    const Result sound = run("check model.tb");
    EXPECT_EQ(sound.code, 0) << sound.out;
    EXPECT_EQ(sound.out, "model.tb: sound\n");
    const Result warned = run("check warned.tb --json");
    EXPECT_EQ(warned.code, 1);
    EXPECT_TRUE(holds(warned.out, "\"number\": 514")) << warned.out;
    const Result damaged = run("check damaged.tb --limit 1");
    EXPECT_EQ(damaged.code, 2);
    EXPECT_TRUE(holds(damaged.out, "1 error, 1 warning, 0 notes; the first 1 are listed")) << damaged.out;
}

// Neither needs the kernel, so neither minds that no module can be found.
TEST(Program, InfoReadsTheTablesOfNativeFiles)
{
    writeModel("model.tb");
    const Result text = run("info model.tb");
    EXPECT_EQ(text.code, 0) << text.err;
    EXPECT_TRUE(holds(text.out, "model.tb: native file")) << text.out;
    const Result json = run("info model.tb --json");
    EXPECT_EQ(json.code, 0);
    EXPECT_TRUE(holds(json.out, "\"class\": \"tbTransform\",\n      \"entries\": 1,")) << json.out;
    tbtest::writeAll("cut.tb", tbtest::readAll("model.tb").substr(0, 200));
    const Result cut = run("info cut.tb");
    EXPECT_EQ(cut.code, 1);
    EXPECT_TRUE(holds(cut.err, "tables-beyond-file")) << cut.err;
}

TEST(Program, InfoShowsTreesAndSharedNodesOnce)
{
    writeModel("model.tb", "twice\n\"quoted\"");
    const Result text = run("info model.tb --tree");
    EXPECT_EQ(text.code, 0) << text.err;
    EXPECT_TRUE(holds(text.out, "nodes    5 in 4 levels, 7 with every place")) << text.out;
    EXPECT_TRUE(holds(text.out, "tbModel \"twice?\"quoted\"\"")) << text.out;
    EXPECT_TRUE(holds(text.out, "shared by 2, shown above\n")) << text.out;
    EXPECT_TRUE(holds(run("info model.tb --tree --depth 1").out, "1 children not shown"));
    const Result json = run("info model.tb --tree --json --lines 3");
    EXPECT_EQ(json.code, 0);
    EXPECT_TRUE(holds(json.out, "\"name\": \"twice\\n\\\"quoted\\\"\"")) << json.out;
    EXPECT_TRUE(holds(json.out, "\"complete\": false")) << json.out;
}
