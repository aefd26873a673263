// 'tamber run' and 'tamber pick' as processes: what they print where, and their exit codes.

#include "Program.h"

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

using namespace tbtest;

namespace
{
/// What a run counted: the rows that do not depend on the machine, in no order and without spaces and bytes.
std::set<std::string> countsOf(const std::string& output)
{
    std::istringstream lines(output);
    std::set<std::string> counts;
    for (std::string line; std::getline(lines, line);)
    {
        const bool isPerFrame =
            line.starts_with("nodes ") || line.starts_with("meshes ") || line.starts_with("triangles ");
        const bool isMemory = line.starts_with("tb") && holds(line, "  ");
        if (!isPerFrame && !isMemory)
            continue;
        std::istringstream columns(line);
        std::string row;
        std::string text;
        for (int i = 0; (isPerFrame || i < 2) && columns >> text; ++i)
            row += text + ' ';
        counts.insert(row);
    }
    return counts;
}
} // namespace

TEST(Program, HelpExplainsEveryOption)
{
    EXPECT_TRUE(holds(run("--help").out, "run"));
    const Result help = run("run --help");
    EXPECT_EQ(help.code, 0);
    for (const char* option : {"MODEL", "--frames", "--orbit", "--spin", "--save"})
        EXPECT_TRUE(holds(help.out, option)) << option;
    EXPECT_EQ(help.err, "");
}

TEST(Program, BadArgumentsEndWithOne)
{
    EXPECT_EQ(run("").code, 1);
    EXPECT_EQ(run("run").code, 1);
    EXPECT_EQ(run("run x.tb --frames 0").code, 1);
    EXPECT_EQ(run("fly x.tb").code, 1);
}

TEST(Run, CountsANativeModelAndPrintsNothingElse)
{
    writeRow("row.tb");
    const Result result = run("run row.tb --frames 3 --orbit --spin");
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(result.out.starts_with("row.tb: 3 frames"));
    for (const char* row : {"update ms", "bounds ms", "cull ms", "tbTransform", "vertex arrays"})
        EXPECT_TRUE(holds(result.out, row)) << result.out;
}

TEST(Run, SavedModelGivesTheSameCounts)
{
    writeRow("source.tb");
    const Result first = run("run source.tb --frames 5 --orbit --save saved.tb");
    ASSERT_EQ(first.code, 0) << first.err;
    const Result second = run("run saved.tb --frames 5 --orbit");
    EXPECT_EQ(countsOf(first.out), countsOf(second.out));
    EXPECT_TRUE(countsOf(first.out).contains("tbTransform 4 ")) << first.out;
}

#if defined(TAMBER_HAS_LOADER)
TEST(Run, TheTownRunsAndComesBack)
{
    const Result first = run("run \"" TAMBER_TOWN "\" --frames 8 --orbit --save town.tb");
    ASSERT_EQ(first.code, 0) << first.err;
    EXPECT_EQ(first.err, "");
    EXPECT_EQ(countsOf(first.out), countsOf(run("run town.tb --frames 8 --orbit").out));
}

TEST(Run, AnUnknownFormatIsAnsweredWithTheKnownOnes)
{
    std::ofstream("model.unheard") << "anything";
    const Result result = run("run model.unheard");
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.out, "");
    for (const char* part : {"model.unheard", "in no format that is known", "looked for in", " obj ", " tb "})
        EXPECT_TRUE(holds(result.err, part)) << result.err;
}

TEST(Run, ADamagedForeignModelIsAnsweredWithTheReason)
{
    std::ofstream("broken.gltf") << "{\"asset\": ";
    const Result result = run("run broken.gltf --save never.tb");
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(holds(result.err, "broken.gltf: ")) << result.err;
    EXPECT_FALSE(std::filesystem::exists("never.tb"));
}
#endif

TEST(Run, AModelThatIsNotThereIsNamed)
{
    const Result missing = run("run nowhere.tb");
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.out, "");
    EXPECT_TRUE(holds(missing.err, "nowhere.tb: there is no such file"));
    EXPECT_TRUE(holds(run("run .").err, "is not a file"));
}

TEST(Run, ADamagedNativeModelIsAnsweredWithTheReason)
{
    writeRow("cut.tb");
    std::filesystem::resize_file("cut.tb", 120);
    const Result result = run("run cut.tb");
    EXPECT_EQ(result.code, 1);
    EXPECT_TRUE(holds(result.err, "cut.tb: ")) << result.err;
}

TEST(Run, NothingIsWrittenWhereNothingCanBe)
{
    writeRow("whole.tb");
    const Result noFolder = run("run whole.tb --save nowhere/x.tb");
    EXPECT_EQ(noFolder.code, 1);
    EXPECT_EQ(noFolder.out, "");
    EXPECT_TRUE(holds(noFolder.err, "nowhere/x.tb: there is no directory nowhere"));

    std::filesystem::create_directory("folder.tb");
    const Result isFolder = run("run whole.tb --save folder.tb");
    EXPECT_EQ(isFolder.code, 1);
    EXPECT_TRUE(holds(isFolder.err, "folder.tb: "));
    EXPECT_TRUE(std::filesystem::is_empty("folder.tb"));
}

TEST(Pick, NamesWhatARayStrikesFirst)
{
    writeRow("picked.tb");
    const Result hit = run("pick picked.tb --from 3.2,-5,0.2 --to 3.2,5,0.2");
    EXPECT_EQ(hit.code, 0) << hit.err;
    EXPECT_TRUE(holds(hit.out, "tbModel/tbTransform/tbMesh")) << hit.out;
    EXPECT_TRUE(holds(hit.out, "distance  5")) << hit.out;
    EXPECT_TRUE(holds(hit.out, "primitive 0")) << hit.out;
    EXPECT_EQ(run("pick picked.tb --from 2,-5,0.2 --to 2,5,0.2").out, "nothing\n");
    EXPECT_EQ(run("pick picked.tb --from 1,2,3 --to 1,2,3").code, 1);
    EXPECT_EQ(run("pick picked.tb --from 1,2 --to 1,2,3").code, 1);
    EXPECT_EQ(run("pick nowhere.tb --from 1,2,3 --to 1,2,4").code, 1);
}
