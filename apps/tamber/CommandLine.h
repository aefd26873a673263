#pragma once

#include "ArgumentParser.h"
#include "Command.h"
#include "CommandTable.h"
#include "Kernel.h"

#include <memory>
#include <vector>

// What the program understands: its own options and every command with its options.
class CommandLine
{
public:
    CommandLine();
    CommandLine(const CommandLine&) = delete; // the table says where in here options are put
    CommandLine& operator=(const CommandLine&) = delete;

    /// Fills in the options of the program and of the command that the words name.
    ParsedArguments::Outcome parse(int argc, const char* const* argv);
    /// The command that they name, also when the rest of them is wrong; null for none.
    Command* getChosen() const { return chosen; }
    const KernelOptions& getKernelOptions() const { return options; }

private:
    KernelOptions options;
    std::vector<std::unique_ptr<Command>> commands;
    CommandTable table;
    Command* chosen = nullptr;
};
