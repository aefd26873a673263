// The command-line program: finds the command, starts the kernel, runs it, and turns failures into one line on
// stderr and an exit code that is not 0.

#include "CommandError.h"
#include "Commands.h"
#include "Kernel.h"
#include "ModelFile.h"
#include "ModuleSearch.h"

#include <tamber/kernel/tbVersion.h>

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>
#include <optional>
#include <string>

namespace
{
constexpr int FAILURE = 1;

int runCommand(Command& command, const KernelOptions& options)
{
    try
    {
        std::optional<Kernel> kernel;
        if (command.needsKernel())
            kernel.emplace(options);
        if (command.needsKernel() && command.needsModels())
            kernel->loadModelClasses();
        const int result = command.run();
        std::cout.flush();
        return std::cout ? result : command.getFailureCode();
    }
    catch (const std::exception& error)
    {
        std::cerr << "tamber: " << error.what() << '\n';
        return command.getFailureCode();
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
    limitModuleSearch();
    CLI::App app("Tamber, a real-time 3D scene-graph toolkit.", "tamber");
    app.require_subcommand(1);
    app.set_version_flag("--version", versionText());
    app.footer("'tamber COMMAND --help' explains a command.");
    KernelOptions options;
    app.add_flag("--trust", options.trustFiles, "Let native files load the plug-ins that they name");
    app.add_flag("-v,--verbose", options.verbose, "Show the library's messages on stderr");

    app.add_flag_callback(
        "--in-process", [] { setImportInProcess(true); },
        "Read foreign formats in this process, not in one of their own");

    const auto commands = makeCommands();
    for (const auto& command : commands)
        command->define(app);

    try
    {
        app.parse(argc, argv);
    }
    catch (const CLI::ParseError& error)
    {
        return app.exit(error) == 0 ? 0 : FAILURE;
    }
    for (const auto& command : commands)
        if (command->isChosen())
            return runCommand(*command, options);
    return FAILURE;
}
