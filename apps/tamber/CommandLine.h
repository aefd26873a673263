#pragma once

#include "Command.h"
#include "Kernel.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <vector>

// What the program understands: its own options and every command with its options. All that is printed about them
// (help, manual pages, completion) comes from here.
class CommandLine
{
public:
    CommandLine();

    CLI::App& getApp() { return app; }
    const KernelOptions& getKernelOptions() const { return options; }
    const std::vector<std::unique_ptr<Command>>& getCommands() const { return commands; }
    /// The command that the line names, also when the rest of the line is wrong; null for none.
    Command* getChosen() const;

private:
    CLI::App app;
    KernelOptions options;
    std::vector<std::unique_ptr<Command>> commands;
};

/// "tamber 1.2.0".
std::string versionText();
