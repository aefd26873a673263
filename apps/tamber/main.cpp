// The command-line program: finds the command, starts the kernel, runs it, and turns failures into one line on
// stderr and an exit code that is not 0.

#include "CommandError.h"
#include "CommandLine.h"
#include "ModuleSearch.h"
#include "Terminal.h"

#include <exception>
#include <iostream>
#include <optional>

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
} // namespace

int main(int argc, char** argv)
{
    limitModuleSearch();
    printPlainLines();
    CommandLine line;
    const ParsedArguments::Outcome outcome = line.parse(argc, argv);
    Command* command = line.getChosen();
    if (outcome == ParsedArguments::COMPLETE)
        return runCommand(*command, line.getKernelOptions());
    if (outcome == ParsedArguments::WRONG)
        return command ? command->getFailureCode() : FAILURE;
    std::cout.flush();
    return std::cout ? 0 : FAILURE;
}
