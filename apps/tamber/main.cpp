// The command-line program: finds the command, starts the kernel, runs it, and turns failures into one line on
// stderr and exit code 1.

#include "CommandError.h"
#include "Kernel.h"
#include "PickCommand.h"
#include "RunCommand.h"

#include <tamber/kernel/tbVersion.h>

#include <CLI/CLI.hpp>

#include <exception>
#include <initializer_list>
#include <iostream>
#include <string>

namespace
{
constexpr int FAILURE = 1;

int runCommand(Command& command, const KernelOptions& options)
{
    try
    {
        const Kernel kernel(options);
        command.run();
        std::cout.flush();
        return std::cout ? 0 : FAILURE;
    }
    catch (const std::exception& error)
    {
        std::cerr << "tamber: " << error.what() << '\n';
        return FAILURE;
    }
}

std::string versionText()
{
    const unsigned version = tbGetVersion();
    return "tamber " + std::to_string(tbGetMajorVersion(version)) + "." +
           std::to_string(tbGetMinorVersion(version)) + "." + std::to_string(tbGetBuildVersion(version));
}
} // namespace

int main(int argc, char** argv)
{
    CLI::App app("Tamber, a real-time 3D scene-graph toolkit.", "tamber");
    app.require_subcommand(1);
    app.set_version_flag("--version", versionText());
    app.footer("'tamber COMMAND --help' explains a command.");
    KernelOptions options;
    app.add_flag("--trust", options.trustFiles, "Let native files load the plug-ins that they name");
    app.add_flag("-v,--verbose", options.verbose, "Show the library's messages on stderr");

    RunCommand run;
    PickCommand pick;
    const std::initializer_list<Command*> commands = {&run, &pick};
    for (Command* command : commands)
        command->define(app);

    try
    {
        app.parse(argc, argv);
    }
    catch (const CLI::ParseError& error)
    {
        return app.exit(error) == 0 ? 0 : FAILURE;
    }
    for (Command* command : commands)
        if (command->isChosen())
            return runCommand(*command, options);
    return FAILURE;
}
