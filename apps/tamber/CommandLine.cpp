#include "CommandLine.h"

#include "Commands.h"
#include "ModelFile.h"

#include <tamber/kernel/tbVersion.h>

namespace
{
constexpr double MOST_IMPORT = 1e6; // of MiB and of seconds

/// "tamber 1.2.0".
std::string versionText()
{
    const unsigned version = tbGetVersion();
    return "tamber " + std::to_string(tbGetMajorVersion(version)) + "." +
           std::to_string(tbGetMinorVersion(version)) + "." + std::to_string(tbGetBuildVersion(version));
}
} // namespace

CommandLine::CommandLine()
    : commands(makeCommands()),
      table{{"tamber", "Tamber, a real-time 3D scene-graph toolkit."}, versionText(), {}}
{
    CommandRow& program = table.program;
    program.add("--version", ShowVersion(), "Display program version information and exit");
    program.add("--trust", &options.trustFiles, "Let native files load the plug-ins that they name");
    program.add("-v,--verbose", &options.verbose, "Show the library's messages on stderr");
    ImportOptions& import = importOptions();
    program.add("--in-process", &import.inProcess,
                "Read foreign formats in this process, not in one of their own");
    program
        .add("--import-memory", &import.memory,
             "Memory that the process of a foreign format may take; 0 for any")
        .nameValue("MIB")
        .limitQuietly(0.0, MOST_IMPORT);
    program.add("--import-time", &import.seconds, "Processor time that it may take; 0 for any")
        .nameValue("SECONDS")
        .limitQuietly(0.0, MOST_IMPORT);
    program.notes = "'tamber COMMAND --help' explains a command.";
    for (const auto& command : commands)
    {
        command->define(table);
        table.commands.back().exitCodes = command->getExitCodes();
    }
}

ParsedArguments::Outcome CommandLine::parse(int argc, const char* const* argv)
{
    const ParsedArguments parsed = parseArguments(table, argc, argv);
    chosen = parsed.command ? commands[*parsed.command].get() : nullptr;
    return parsed.outcome;
}
