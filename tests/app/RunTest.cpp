// 'tamber run' and 'tamber pick' as processes: what they print where, and their exit codes.

#include "Program.h"

#include <filesystem>
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

TEST(Run, CountsANativeModelAndPrintsNothingElse)
{
    writeRow("row.tb");
    const Result result = expectRun("run row.tb --frames 3 --orbit --spin", 0,
                                    {"update ms", "bounds ms", "cull ms", "tbTransform", "vertex arrays"});
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(result.out.starts_with("row.tb: 3 frames")) << result.out;
}

TEST(Run, SavedModelGivesTheSameCounts)
{
    writeRow("row.tb");
    std::vector<std::string> models = {"row.tb"};
#if defined(TAMBER_HAS_LOADER)
    models.push_back("\"" TAMBER_TOWN "\"");
#endif
    for (const std::string& model : models)
    {
        const Result first = expectRun("run " + model + " --frames 5 --orbit --save saved.tb", 0);
        EXPECT_EQ(first.err, "");
        const Result second = expectRun("run saved.tb --frames 5 --orbit", 0);
        EXPECT_EQ(countsOf(first.out), countsOf(second.out));
        EXPECT_TRUE(model != "row.tb" || countsOf(first.out).contains("tbTransform 4 ")) << first.out;
    }
}

TEST(Run, WhatCannotBeDoneIsAnsweredWithTheReason)
{
    writeRow("whole.tb");
    writeRow("cut.tb");
    std::filesystem::resize_file("cut.tb", 120);
    std::filesystem::create_directory("folder.tb");
    writeAll("model.unheard", "anything");
    writeAll("broken.gltf", "{\"asset\": ");
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"nowhere.tb", {"nowhere.tb: there is no such file"}},
        {".", {"is not a file"}},
        {"cut.tb", {"cut.tb: "}},
        {"whole.tb --save nowhere/x.tb", {"nowhere/x.tb: there is no directory nowhere"}},
        {"whole.tb --save folder.tb", {"folder.tb: "}},
#if defined(TAMBER_HAS_LOADER)
        {"model.unheard", {"model.unheard", "in no format that is known", "looked for in", " obj ", " tb "}},
        {"broken.gltf --save never.tb", {"broken.gltf: "}},
#endif
    };
    for (const auto& [arguments, said] : cases)
        EXPECT_EQ(expectRun(std::string("run ") + arguments, 1, said).out, "") << arguments;
    EXPECT_TRUE(std::filesystem::is_empty("folder.tb"));
    EXPECT_FALSE(std::filesystem::exists("never.tb"));
}

TEST(Pick, NamesWhatARayStrikesFirst)
{
    writeRow("picked.tb");
    expectRun("pick picked.tb --from 3.2,-5,0.2 --to 3.2,5,0.2", 0,
              {"tbModel/tbTransform/tbMesh", "distance  5", "primitive 0"});
    EXPECT_EQ(expectRun("pick picked.tb --from 2,-5,0.2 --to 2,5,0.2", 0).out, "nothing\n");
}
