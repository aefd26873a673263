// What holds for every command: no failure ends with 0, and what is made from the commands names all of them.

#include "Program.h"

#include <tests/support/TempFile.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <regex>
#include <set>

#include <gtest/gtest.h>

using namespace tbtest;

namespace
{
struct Lines
{
    std::vector<std::string> good; // that print something
    std::vector<std::string> bad;
};

/// Needs the file row.tb.
const std::map<std::string, Lines> commandLines = {
    {"run",
     {{"row.tb --frames 1"},
      {"", "absent.tb", ".", "row.tb --frames x", "row.tb --frames 0", "row.tb --save absent/x.tb"}}},
    {"pick",
     {{"row.tb --from 3,-5,0 --to 3,5,0"},
      {"", "row.tb --from 1,2,3", "row.tb --from 1,2,3 --to 1,2,3", "row.tb --from 1,2 --to 1,2,3",
       "absent.tb --from 1,2,3 --to 1,2,4"}}},
    {"convert",
     {{"row.tb converted.tb"}, {"", "row.tb", "absent.tb x.tb", "row.tb absent/x.tb", "row.tb ."}}},
    {"plugins", {{"", "--json"}, {"surplus"}}},
    {"info", {{"row.tb", "row.tb --tree", "row.tb --json"}, {"", "absent.tb", ".", "row.tb --depth -1"}}},
    {"check",
     {{"row.tb", "row.tb --json", "--kinds"},
      {"", "absent.tb", ".", "row.tb --limit x", "row.tb --limit -1", "row.tb --kinds"}}},
    {"diff",
     {{"row.tb other.tb", "row.tb other.tb --json"}, {"", "row.tb", "row.tb absent.tb", "absent.tb row.tb"}}},
    {"dump", {{"row.tb"}, {"", "absent.tb", ".", "row.tb --out absent/x.txt"}}},
    {"build", {{}, {"", "absent.txt x.tb", "row.tb x.tb", "row.tb"}}},
    {"completion", {{"bash", "zsh", "fish"}, {"", "csh", "bash zsh"}}},
    {"man", {{"", "run"}, {"absent", "--all absent/folder", "run --all ."}}},
};

void writeInputs()
{
    writeRow("row.tb");
    writeRow("other.tb");
}

/// Every option that the help of a command shows.
std::set<std::string> shownOptions(const std::string& command)
{
    const std::string help = run(command + " --help").out;
    std::set<std::string> options;
    const std::regex option("(^|\\n)  (-\\w,)?(--[\\w-]+)");
    for (std::sregex_iterator i(help.begin(), help.end(), option), end; i != end; ++i)
        options.insert((*i)[3]);
    return options;
}

bool hasTool(const std::string& tool)
{
    return std::system((tool + " --version >tool.txt 2>&1").c_str()) == 0;
}
} // namespace

TEST(Commands, EachIsTriedHere)
{
    std::vector<std::string> tried;
    for (const auto& [command, lines] : commandLines)
        tried.push_back(command);
    std::vector<std::string> known = programCommands();
    std::sort(known.begin(), known.end());
    EXPECT_EQ(tried, known);
}

TEST(Commands, NoFailureEndsWithZero)
{
    writeInputs();
    for (const auto& [command, lines] : commandLines)
    {
        const bool tellsByOne = command == "check" || command == "diff"; // something of the files
        std::vector<std::string> allBad = lines.bad;
        allBad.push_back("--nonsense");
        for (const std::string& bad : allBad)
        {
            const Result result = run(command + " " + bad);
            EXPECT_EQ(result.code, tellsByOne ? 2 : 1) << command << ' ' << bad;
            EXPECT_EQ(result.out, "") << command << ' ' << bad;
            EXPECT_TRUE(result.err.starts_with("tamber: ") &&
                        std::count(result.err.begin(), result.err.end(), '\n') == 1)
                << command << ' ' << bad << " is answered in one line, not by " << result.err;
        }
        expectRun(command + " --help", 0);
    }
    for (const std::string bad : {"--import-memory -1", "--import-time x", "--import-time"})
        expectRun("run row.tb " + bad, 1);
    expectRun("", 1, {"tamber: a command is required; see tamber --help\n"});
    expectRun("conver a b", 1, {"tamber: there is no command 'conver'; see tamber --help\n"});
}

TEST(Commands, OutputThatCannotBeWrittenIsAFailure)
{
    const std::filesystem::path full = "/dev/full";
    if (!full.is_absolute() || !std::filesystem::exists(full))
        GTEST_SKIP() << "no device that is always full here";
    writeInputs();
    for (const auto& [command, lines] : commandLines)
    {
        for (const std::string& good : lines.good)
        {
            const std::string line = command + " " + good;
            EXPECT_EQ(run(line).code, 0) << line;
            EXPECT_NE(run(line, "/dev/full").code, 0) << line;
        }
        EXPECT_NE(run(command + " --help", "/dev/full").code, 0) << command;
    }
    EXPECT_NE(run("--version", "/dev/full").code, 0);
    EXPECT_NE(run("convert row.tb /dev/full").code, 0);
}

TEST(Commands, CompletionAndManualKnowEveryOption)
{
    const std::vector<std::string> shells = {"bash", "zsh", "fish"};
    std::map<std::string, std::string> scripts;
    for (const std::string& shell : shells)
        scripts[shell] = run("completion " + shell).out;
    const std::string manual = run("man").out;
    for (const std::string& command : programCommands())
    {
        const std::string page = run("man " + command).out;
        EXPECT_TRUE(holds(page, ".SH \"EXIT STATUS\"\n.TP\n0\n")) << command;
        EXPECT_TRUE(holds(manual, "\n\\fB" + command + "\\fR\n")) << command;
        const std::set<std::string> options = shownOptions(command);
        EXPECT_TRUE(options.contains("--help")) << command;
        for (const std::string& option : options)
            EXPECT_TRUE(holds(scripts["bash"], option) && holds(scripts["zsh"], option) &&
                        holds(scripts["fish"], "-l " + option.substr(2)) &&
                        holds(page, std::regex_replace(option, std::regex("-"), "\\-")))
                << command << ' ' << option;
    }
    for (const std::string& shell : shells)
    {
        writeAll("script." + shell, scripts[shell]);
        EXPECT_TRUE(!hasTool(shell) || std::system((shell + " -n script." + shell).c_str()) == 0) << shell;
    }
}

TEST(Commands, ManualPagesAreWithoutWarnings)
{
    const TempDirectory folder;
    ASSERT_EQ(run("man --all " + folder.path(".")).code, 0);
    EXPECT_EQ(folder.count(), int(programCommands().size()) + 1);
    if (!hasTool("groff"))
        GTEST_SKIP() << "no groff here";
    for (const auto& page : std::filesystem::directory_iterator(folder.path(".")))
    {
        EXPECT_EQ(
            std::system(
                ("groff -man -Tutf8 -ww \"" + page.path().string() + "\" >page.txt 2>warnings.txt").c_str()),
            0);
        EXPECT_EQ(readAll("warnings.txt"), "") << page.path();
    }
}

TEST(Commands, BashCompletesWhatIsTyped)
{
    if (!hasTool("bash"))
        GTEST_SKIP() << "no bash here";
    writeInputs();
    writeAll("try.sh", "source script.bash\n"
                       "COMP_WORDS=(tamber \"$@\"); COMP_CWORD=$#; _tamber; echo \"${COMPREPLY[@]}\"\n");
    writeAll("script.bash", run("completion bash").out);
    const auto complete = [](const std::string& words)
    {
        EXPECT_EQ(std::system(("bash try.sh " + words + " >completed.txt 2>&1").c_str()), 0);
        return readAll("completed.txt");
    };
    EXPECT_EQ(complete("com"), "completion\n");
    EXPECT_EQ(complete("-v --import-time 5 run --fr"), "--frames\n");
    EXPECT_EQ(complete("run --frames ''"), "\n");
    EXPECT_EQ(complete("completion z"), "zsh\n");
    EXPECT_EQ(complete("man ru"), "run\n");
    EXPECT_EQ(complete("info ro"), "row.tb\n");
    EXPECT_EQ(complete("run x --save ro"), "row.tb\n");
}
