#include "CommandLine.h"

#include "Commands.h"
#include "ModelFile.h"

#include <tamber/kernel/tbVersion.h>

namespace
{
/// One line, as for every failure.
std::string messageOf(const CLI::App& app, const CLI::Error& error)
{
    const std::vector<CLI::App*> chosen = app.get_subcommands();
    const std::vector<std::string> unknown = app.remaining();
    std::string text = error.what();
    if (chosen.empty() && error.get_name() == "RequiredError")
        text = unknown.empty() ? "a command is required" : "there is no command '" + unknown.front() + "'";
    const std::string help = chosen.empty() ? "" : chosen.front()->get_name() + " ";
    return "tamber: " + text + "; see tamber " + help + "--help\n";
}
} // namespace

CommandLine::CommandLine()
    : app("Tamber, a real-time 3D scene-graph toolkit.", "tamber"),
      commands(makeCommands())
{
    app.require_subcommand(1);
    app.set_version_flag("--version", versionText());
    app.failure_message([](const CLI::App* parsed, const CLI::Error& error)
                        { return messageOf(*parsed, error); });
    app.footer("'tamber COMMAND --help' explains a command.");
    app.add_flag("--trust", options.trustFiles, "Let native files load the plug-ins that they name");
    app.add_flag("-v,--verbose", options.verbose, "Show the library's messages on stderr");
    ImportOptions& import = importOptions();
    app.add_flag("--in-process", import.inProcess,
                 "Read foreign formats in this process, not in one of their own");
    app.add_option("--import-memory", import.memory,
                   "Memory that the process of a foreign format may take; 0 for any")
        ->type_name("MIB")
        ->check(CLI::Range(0.0, 1e6).description(""))
        ->capture_default_str();
    app.add_option("--import-time", import.seconds, "Processor time that it may take; 0 for any")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.0, 1e6).description(""))
        ->capture_default_str();
    for (const auto& command : commands)
        command->define(app);
}

Command* CommandLine::getChosen() const
{
    for (const auto& command : commands)
        if (command->isChosen())
            return command.get();
    return nullptr;
}

std::string versionText()
{
    const unsigned version = tbGetVersion();
    return "tamber " + std::to_string(tbGetMajorVersion(version)) + "." +
           std::to_string(tbGetMinorVersion(version)) + "." + std::to_string(tbGetBuildVersion(version));
}
