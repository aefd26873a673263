#pragma once

#include <string>
#include <utility>
#include <vector>

struct CommandTable;

// One word of the command line, with its options.
class Command
{
public:
    virtual ~Command() = default;
    /// Adds one row to the table, with the options that it wants filled in. The table stands for as long as the
    /// command.
    virtual void define(CommandTable& table) = 0;
    /// Does the work once the options are filled in, and returns the program's exit code. Failures leave as
    /// exceptions, CommandError above all.
    virtual int run() = 0;
    /// The exit code of a failure.
    virtual int getFailureCode() const { return 1; }
    /// Every exit code and what it says, as the manual page lists them.
    virtual std::vector<std::pair<int, std::string>> getExitCodes() const;
    /// False for commands that look at files only: the kernel is not started then and no module loaded.
    virtual bool needsKernel() const { return true; }
    /// False for commands that start the kernel and do without the classes of models.
    virtual bool needsModels() const { return true; }
};
