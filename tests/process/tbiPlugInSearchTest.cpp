// Modules planted in every place that a search may come by. Each says so when its code runs.
#include <tamber/io/tbPlugInReport.h>

#include <tests/support/Environment.h>
#include <tests/support/FileBuilder.h>
#include <tests/support/Messages.h>
#include <tests/support/TempFile.h>
#include <tests/support/WorkFolder.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

namespace
{

using tbtest::Record;
using tbtest::setVariable;
using Names = std::set<std::string>;

const fs::path PLANTED = PLANTED_FOLDER;
const std::string LIST_SEPARATOR = PROGRAM_ENDING[0] ? ";" : ":";

std::string fileOf(const std::string& module)
{
    return module + MODULE_ENDING;
}

// As one file with the original.
void place(const fs::path& file, const fs::path& directory)
{
    std::error_code error;
    fs::create_hard_link(file, directory / file.filename(), error);
    if (error)
        fs::copy_file(file, directory / file.filename());
}

// A program in a directory of its own, run in a working directory that somebody else has filled.
class PlantedModules : public testing::Test
{
protected:
    PlantedModules() : root(fs::current_path())
    {
        tbtest::allowMessages();
        for (const char* directory : {"app", "given", "work", "work/sub", "path"})
            fs::create_directories(root / directory);
        copyProgram();
        plant("tbBesideLoader", "app");
        plant("tbGivenLoader", "given");
        plant("tbCurrentLoader", "work");
        plant("tbPathLoader", "path");
        plant("tbDeepLoader", "work/sub");
        plant("tbListed", "app");
        plant("tbSneaked", "work");
        setVariable("TAMBER_PLUGIN_PATH", "sub" + LIST_SEPARATOR + (root / "given").string());
        const char* const path = std::getenv("PATH");
        setVariable("PATH", (path ? path : "") + LIST_SEPARATOR + LIST_SEPARATOR + "sub" + LIST_SEPARATOR +
                                (root / "path").string());
        setVariable("TAMBER_PLANTED", (root / "ran.txt").string());
    }

    /// The planted modules whose code ran while the program did.
    Names run(const std::string& program, const std::string& arguments = "")
    {
        fs::remove(root / "ran.txt");
        fs::current_path(root / "work");
        // Relative, so that no command interpreter wants quotes.
        const std::string file =
            (fs::path("..") / "app" / (program + PROGRAM_ENDING)).make_preferred().string();
        const std::string out = (fs::path("..") / "out.txt").make_preferred().string();
        code = std::system((file + " " + arguments + " >" + out + " 2>&1").c_str());
        fs::current_path(root);
        output = tbtest::readAll((root / "out.txt").string());
        Names names;
        std::istringstream lines(tbtest::readAll((root / "ran.txt").string()));
        for (std::string line; std::getline(lines, line);)
            names.insert(line);
        return names;
    }

    void plant(const char* module, const char* directory)
    {
        place(PLANTED / fileOf(module), root / directory);
    }
    /// Plants one that the test may change.
    fs::path plantCopy(const char* module, const char* directory)
    {
        const fs::path file = root / directory / fileOf(module);
        fs::remove(file);
        fs::copy_file(PLANTED / fileOf(module), file);
        return file;
    }
    bool said(const std::string& part) const { return output.find(part) != std::string::npos; }

    /// A native file that lists modules in every way; its path as the program is to be told.
    std::string writeList() const
    {
        const std::string list =
            Record().plugIns({"tbListed.dll", "tbSneaked.dll", "sub\\tbDeepLoader.dll", "sub/tbDeepLoader.so",
                              "\\\\localhost\\share\\tbDeepLoader.dll", "c:tbDeepLoader.dll",
                              (root / "work/sub" / fileOf("tbDeepLoader")).string(), "tbAbsent.dll"},
                             8);
        tbtest::writeAll((root / "list.tb").string(),
                         tbtest::buildFile({{"tbModel", Record().object()}, {"tbPlugIns", list}}));
        return "../list.tb";
    }

    std::string checksumOf(const std::string& module) const
    {
        for (const auto& directory : tbPlugIn::report().directories)
            for (const auto& found : directory.modules)
                if (fs::path(found.path).filename() == fileOf(module))
                    return found.sha256;
        return "not found";
    }

    tbtest::WorkFolder folder;
    fs::path root;
    std::string output;
    int code = 0;

private:
    void copyProgram() const
    {
        for (const auto& entry : fs::directory_iterator(fs::path(PROBE).parent_path()))
        {
            const std::string name = entry.path().filename().string();
            const bool isNeeded = name.starts_with("PlugInProbe") || name.starts_with("tamber") ||
                                  name.find(".so") != std::string::npos || entry.path().extension() == ".dll";
            if (entry.is_regular_file() && isNeeded && !name.starts_with("tamber_") &&
                !name.starts_with("tbAssimp"))
                place(entry.path(), root / "app");
        }
    }
};

const Names ALL = {"tbBesideLoader", "tbGivenLoader", "tbCurrentLoader", "tbPathLoader"};
const Names APP = {"tbBesideLoader", "tbGivenLoader"};

Names with(Names names, const Names& more)
{
    names.insert(more.begin(), more.end());
    return names;
}

} // namespace

TEST_F(PlantedModules, PolicyLimitsWhatALibraryUserLoads)
{
    const std::string list = writeList();
    // Without and with a file that lists modules.
    const std::tuple<const char*, Names, Names> cases[] = {{"", ALL, with(ALL, {"tbListed", "tbSneaked"})},
                                                           {"all", ALL, with(ALL, {"tbListed", "tbSneaked"})},
                                                           {"app", APP, with(APP, {"tbListed"})},
                                                           {"none", {}, {}},
                                                           {"apps", {}, {}}};
    for (const auto& [policy, searched, listed] : cases)
    {
        SCOPED_TRACE(policy);
        setVariable("TAMBER_PLUGINS", policy);
        EXPECT_EQ(run("PlugInProbe"), searched) << output;
        EXPECT_EQ(run("PlugInProbe", list), listed) << output;
    }
    EXPECT_TRUE(said("TAMBER_PLUGINS is not understood")) << output;
}

TEST_F(PlantedModules, WhatLiesInTheWorkingDirectoryHidesNoModuleOfTheLibrary)
{
    const fs::path kernel = fs::path(KERNEL).filename();
    if (kernel.extension() == ".dll")
        GTEST_SKIP() << "the library's directory is not searched here";
    fs::create_directory(root / "lib");
    plant("tbListed", "lib");
    fs::rename(root / "app" / kernel, root / "lib" / kernel);
    fs::rename(root / "work" / fileOf("tbSneaked"), root / "work" / fileOf("tbListed"));
    fs::remove(root / "app" / fileOf("tbListed"));
    setVariable("LD_LIBRARY_PATH", (root / "lib").string());
    EXPECT_EQ(run("PlugInProbe", writeList()), with(ALL, {"tbListed"})) << output;
}

TEST_F(PlantedModules, LibraryOfAPlugInIsNotTakenFromTheWorkingDirectoryOrPath)
{
    plant("tbNeedyLoader", "app");
    const fs::path helper = PLANTED / ("tbPlantedHelper" MODULE_ENDING);
    place(helper, root / "work");
    place(helper, root / "path");
    setVariable("TAMBER_PLUGINS", "all");
    EXPECT_FALSE(run("PlugInProbe").contains("tbNeedyLoader")) << output;
    EXPECT_TRUE(said("Error loading plug-in: TBNEEDYLOADER.DLL")) << output;
    place(helper, root / "app");
    EXPECT_TRUE(run("PlugInProbe").contains("tbNeedyLoader")) << output;
}

TEST_F(PlantedModules, AllowListNamesWhatIsLoadedAndItsContent)
{
    const std::string path = (root / "path").string();
    setVariable("TAMBER_PLUGIN_PATH", path);
    const std::string checksum = checksumOf("tbPathLoader");
    ASSERT_EQ(checksum.size(), 64u);
    setVariable("TAMBER_PLUGIN_PATH", (root / "given").string());
    setVariable("TAMBER_PLUGINS", "all");
    const std::string other(64, 'a');
    const std::pair<std::string, Names> cases[] = {
        {"", ALL},
        {" TBBESIDELOADER , tbCurrentLoader.dll", {"tbBesideLoader", "tbCurrentLoader"}},
        {"tbPathLoader=" + checksum + ",tbBesideLoader=" + other, {"tbPathLoader"}},
        {"tbPathLoader=" + other + ",tbPathLoader=" + checksum, {"tbPathLoader"}},
        {"tbPathLoader,tbPathLoader=" + other, {}},
        {"tbBesideLoader,tbPathLoader=12345", {"tbBesideLoader"}},
        {"nothing,,=,/tbPathLoader", {}}};
    for (const auto& [list, loaded] : cases)
    {
        SCOPED_TRACE(list);
        setVariable("TAMBER_PLUGIN_ALLOW", list);
        EXPECT_EQ(run("PlugInProbe"), loaded) << output;
    }
    EXPECT_TRUE(said("TAMBER_PLUGIN_ALLOW is not understood")) << output;
    setVariable("TAMBER_PLUGIN_ALLOW", "tbPathLoader=" + checksum);
    std::ofstream(plantCopy("tbPathLoader", "path"), std::ios::app | std::ios::binary) << '\0';
    EXPECT_EQ(run("PlugInProbe"), Names()) << "one byte more";
}

TEST_F(PlantedModules, AllowListHoldsForPathsAndForAFileThatIsExchanged)
{
    const fs::path file = plantCopy("tbPathLoader", "path");
    const fs::path swap = root / fileOf("swap");
    fs::copy_file(PLANTED / fileOf("tbPathLoader"), swap);
    setVariable("TAMBER_PLUGIN_PATH", file.parent_path().string());
    const std::string list = "tbPathLoader=" + checksumOf("tbPathLoader");

    EXPECT_TRUE(tbPlugIn::setAllowList("tbOther"));
    EXPECT_EQ(tbPlugIn::load(file.string().c_str()), nullptr);
    EXPECT_FALSE(tbPlugIn::setAllowList("tbPathLoader=1"));
    EXPECT_EQ(tbPlugIn::load(file.string().c_str()), nullptr);
    EXPECT_TRUE(tbPlugIn::setAllowList(list.c_str()));
    tbPlugIn* plugIn = tbPlugIn::load(file.string().c_str());
    ASSERT_NE(plugIn, nullptr);
    EXPECT_TRUE(plugIn->unload());

    setVariable("TAMBER_PLANTED_SWAP", swap.string());
    setVariable("TAMBER_PLANTED_TARGET", file.string());
    const bool isLoaded = tbPlugIn::load(file.string().c_str()) != nullptr;
    EXPECT_EQ(isLoaded, fs::exists(swap)) << "either nothing can be exchanged, or it is noticed";
}

TEST_F(PlantedModules, WhatEverybodyMayChangeIsPassedOver)
{
    setVariable("TAMBER_PLUGINS", "app");
    const fs::path file = plantCopy("tbGivenLoader", "given");
    const auto mayWrite = fs::perms::others_write;
    if ((fs::status(root / "given").permissions() & mayWrite) != fs::perms::none)
        GTEST_SKIP() << "rights are not those of POSIX here";
    for (const fs::path& place : {file, root / "given", root})
    {
        SCOPED_TRACE(place);
        fs::permissions(place, mayWrite, fs::perm_options::add);
        EXPECT_FALSE(run("PlugInProbe").contains("tbGivenLoader"));
        EXPECT_TRUE(said("Plug-in passed over, everybody may change it")) << output;
        fs::permissions(place, mayWrite, fs::perm_options::remove);
    }
    fs::permissions(root, mayWrite | fs::perms::sticky_bit, fs::perm_options::add);
    EXPECT_TRUE(run("PlugInProbe").contains("tbGivenLoader")) << "a sticky directory above does no harm";
}

TEST_F(PlantedModules, ReportTellsOfEveryPlaceAndModule)
{
    // Published checksums, of the contents of files that are no modules.
    const std::pair<std::string, std::string> contents[] = {
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
         "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
        {std::string(1000000, 'a'), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"}};
    for (int i = 0; i < 4; ++i)
        tbtest::writeAll((root / "given" / fileOf("tbBroken" + std::to_string(i) + "Loader")).string(),
                         contents[i].first);
    plant("tbGivenLoader", "path");
    setVariable("TAMBER_PLUGIN_PATH", "sub" + LIST_SEPARATOR + (root / "given").string() + LIST_SEPARATOR +
                                          (root / "given/").string() + LIST_SEPARATOR +
                                          (root / "path").string());
    tbPlugIn::setSearchPolicy(tbPlugIn::SEARCH_APP);
    EXPECT_TRUE(tbPlugIn::setAllowList("tbGivenLoader,tbBroken0Loader,tbBroken1Loader,tbBroken2Loader"));
    tbPlugIn::load("tbGivenLoader.dll");
    for (const char* name :
         {"tbBroken0Loader.dll", "tbBroken3Loader.dll", "tbPathLoader.dll", "tbAbsent.dll"})
        EXPECT_EQ(tbPlugIn::load(name), nullptr);
    const tbPlugInReport report = tbPlugIn::report();
    tbPlugIn::setAllowList(nullptr);

    EXPECT_TRUE(report.isListed);
    ASSERT_GE(report.directories.size(), 5u);
    EXPECT_EQ(report.directories[0].skipped, "it is not absolute");
    EXPECT_EQ(report.directories[2].skipped, "it is listed before");
    EXPECT_EQ(report.directories[4].source, "program");
    const auto& given = report.directories[1].modules;
    ASSERT_EQ(given.size(), 5u);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(given[i].sha256, contents[i].second);
    EXPECT_EQ(given[0].state, tbPlugInReport::FAILED);
    EXPECT_NE(given[0].reason, "");
    EXPECT_EQ(given[1].state, tbPlugInReport::FOUND);
    EXPECT_EQ(given[3].state, tbPlugInReport::REFUSED);
    EXPECT_EQ(given[4].state, tbPlugInReport::LOADED);
    EXPECT_EQ(given[4].version, tbMakeVersion(1, 2, 3));
    EXPECT_EQ(given[4].extensions, std::vector<std::string>{"tbGivenLoader"});
    const auto& path = report.directories[3].modules;
    ASSERT_EQ(path.size(), 2u);
    EXPECT_EQ(path[0].reason, "another of its name comes before it");
    EXPECT_EQ(path[1].state, tbPlugInReport::REFUSED);
    ASSERT_EQ(report.others.size(), 1u);
    EXPECT_EQ(report.others[0].moduleName, "TBABSENT.DLL");
}

#if defined(HAVE_PROGRAM)
TEST_F(PlantedModules, ProgramTakesNothingFromTheWorkingDirectoryOrPathUnlessItIsTold)
{
    const std::string list = writeList();
    for (const char* policy : {"", "app"})
    {
        setVariable("TAMBER_PLUGINS", policy);
        EXPECT_EQ(run("tamber", "plugins"), with(APP, {"tbListed"})) << output;
        EXPECT_EQ(run("tamber", "run --frames 1 " + list), APP) << "files are not asked" << output;
        EXPECT_EQ(run("tamber", "--trust run --frames 1 " + list), with(APP, {"tbListed"})) << output;
    }
    setVariable("TAMBER_PLUGINS", "all");
    EXPECT_EQ(run("tamber", "run --frames 1 " + list), ALL) << output;
    EXPECT_EQ(run("tamber", "plugins"), with(ALL, {"tbListed"})) << output;
    EXPECT_EQ(code, 0) << output;
    setVariable("TAMBER_PLUGIN_ALLOW", "tbNull,tbPortableKernel");
    EXPECT_EQ(run("tamber", "plugins --json"), Names());
    EXPECT_NE(code, 0);
    EXPECT_TRUE(said("\"state\": \"refused\"")) << output;
}

TEST_F(PlantedModules, ProgramNamesThePlacesWhereAModuleIsMissing)
{
    tbtest::writeAll((root / "model.tbGivenLoader").string(), "x");
    setVariable("TAMBER_PLUGIN_ALLOW", "tbPortableKernel");
    EXPECT_EQ(run("tamber", "run ../model.tbGivenLoader"), Names());
    for (const std::string part : {"Known extensions: tb", "Loaders were looked for in", "given", "app",
                                   "tbGivenLoader" MODULE_ENDING " (it is not in the list of plug-ins"})
        EXPECT_TRUE(said(part)) << part << "\n" << output;
    setVariable("TAMBER_PLUGIN_ALLOW", "tbNull");
    run("tamber", "run " + writeList());
    EXPECT_NE(code, 0);
    for (const std::string part :
         {"tbPortableKernel.dll: the module cannot be loaded", "given", "not in the list"})
        EXPECT_TRUE(said(part)) << part << "\n" << output;
}
#endif
