// Foreign files in a child process, with a loader that does to it what damaged files do to readers.
#include <tamber/io/tbImportProcess.h>

#include <tamber/io/tbLoader.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbFilePath.h>
#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbRef.h>
#include <tests/support/Environment.h>
#include <tests/support/FileBuilder.h>
#include <tests/support/Messages.h>
#include <tests/support/TempFile.h>

#include <gtest/gtest.h>

using tbtest::setVariable;

namespace
{

const std::filesystem::path loaderFile = std::filesystem::absolute(TEST_LOADER_FILE);

// Wine counts neither the processor time of another process nor the memory of a job.
const bool inWine = std::getenv("WINEPREFIX") != nullptr;

class ImportProcess : public testing::Test
{
protected:
    ImportProcess()
    {
        tbtest::allowMessages();
        setVariable("TAMBER_PLUGIN_PATH", loaderFile.parent_path().string());
        std::filesystem::create_directory(temporary);
        for (const char* name : {"TMPDIR", "TMP", "TEMP"})
            setVariable(name, temporary);
        tbInit(nullptr);
    }
    ~ImportProcess() override
    {
        EXPECT_TRUE(std::filesystem::is_empty(temporary)) << "nothing is left behind";
        tbDeleteFilePaths();
    }

    /// The name of what a file with this text becomes; the error and what is said of it when it becomes nothing.
    std::string import(const std::string& text, const tbImportLimits& limits = {})
    {
        tbtest::writeAll(file, text);
        const tbRef<tbBase> root(tbImportIsolated(file.c_str(), limits));
        return root ? root->getName()
                    : std::to_string(tbLoader::getError()) + " " + tbLoader::getErrorMessage();
    }

    tbtest::TempDirectory directory;
    std::string temporary = directory.path("temporary");
    std::string file = directory.path("model.tst");
};

} // namespace

TEST_F(ImportProcess, HandsTheSceneOver)
{
    EXPECT_EQ(import("car"), "car");
    EXPECT_EQ(tbLoader::getError(), tbLoader::LOADER_OK);
    tbtest::expectMessage("the loader speaks"); // what a loader says, says the parent
    EXPECT_EQ(import("speak"), "speak");

    directory.write("native.tb", tbtest::buildFile({{"tbModel", tbtest::Record().object()}}));
    tbAddFilePath(directory.path("").c_str());
    setVariable("TAMBER_IMPORT_PROGRAM", "/nowhere"); // a native file needs none
    const tbRef<tbBase> root(tbImportIsolated("native.tb"));
    EXPECT_TRUE(root);
    EXPECT_EQ(import("car"), "10 TAMBER_IMPORT_PROGRAM names no program by an absolute path: /nowhere");
    setVariable("TAMBER_IMPORT_PROGRAM", "");
    EXPECT_EQ(import("car"), "car");
}

TEST_F(ImportProcess, LoaderErrorsComeBack)
{
    EXPECT_EQ(import(""), "1 an empty file");
    const std::pair<std::string, tbLoader::LOADER_ERROR> files[] = {
        {"absent.tst", tbLoader::LOADER_FILE_NOT_FOUND},
        {"none", tbLoader::LOADER_FILE_NOT_FOUND},
        {"absent.tb", tbLoader::LOADER_FILE_NOT_FOUND},
        {directory.write("noextension", "text"), tbLoader::LOADER_NO_EXTENSION},
        {directory.write("model.unheard", "text"), tbLoader::LOADER_UNKNOWN_FORMAT}};
    for (const auto& [path, error] : files)
    {
        EXPECT_FALSE(tbImportIsolated(path.c_str())) << path;
        EXPECT_EQ(tbLoader::getError(), error) << path;
    }
}

TEST_F(ImportProcess, SurvivesWhatLoadersDo)
{
    EXPECT_TRUE(import("crash").starts_with("10 loader for .tst stopped (")) << tbLoader::getErrorMessage();
    EXPECT_TRUE(import("leave").starts_with("10 loader for .tst stopped (exit code 5) after "));
    EXPECT_EQ(import("spin", {.processorTime = 1, .time = inWine ? 2.0 : 60.0}),
              inWine ? "10 loader for .tst passed its time of 2 s"
                     : "10 loader for .tst passed its processor time of 1 s");
    EXPECT_EQ(import("sleep", {.time = 0.25}), "10 loader for .tst passed its time of 0.25 s");
    EXPECT_EQ(import("car"), "car") << "and goes on";
}

#if !defined(__SANITIZE_ADDRESS__)
TEST_F(ImportProcess, MemoryRunsOutInTheChildOnly)
{
    EXPECT_TRUE(import("ask").starts_with("10 loader for .tst passed its memory of 1024 MiB after "))
        << tbLoader::getErrorMessage();
    if (inWine)
        GTEST_SKIP() << "Wine lets a job take any memory";
    EXPECT_TRUE(
        import("eat", {.memory = 256 << 20}).starts_with("10 loader for .tst passed its memory of 256 MiB "));
}
#endif

TEST_F(ImportProcess, ForeignPoliciesGoDown)
{
    tbPlugIn::enableDynamicPlugIns(false);
    EXPECT_FALSE(tbPlugIn::isDynamicPlugInsEnabled());
    tbtest::takeMessages();
    EXPECT_EQ(import("car").substr(0, 2), "10")
        << "the class comes from a module that files may not load now";
    tbPlugIn::load(loaderFile.string().c_str());
    EXPECT_EQ(import("car"), "car") << "the loader is known, wherever modules may be looked for";
    tbPlugIn::setSearchPolicy(tbPlugIn::SEARCH_NONE);
    EXPECT_EQ(import("car"), "car");
    tbPlugIn::setAllowList("tbOther");
    EXPECT_NE(import("car").find("not in the list of plug-ins"), std::string::npos) << import("car");
    tbPlugIn::setAllowList(nullptr);
}
