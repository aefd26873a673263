#pragma once

#include <string>
#include <utility>
#include <vector>

namespace CLI
{
class App;
}

// One word of the command line, with its options.
class Command
{
public:
    virtual ~Command() = default;
    /// Adds the command with its help and options to `app`.
    virtual void define(CLI::App& app) = 0;
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
    /// True when the command line names this command.
    bool isChosen() const;
    /// The command's own part of the command line, once it is defined.
    const CLI::App& getEntry() const { return *entry; }

protected:
    /// The command's own part of the command line, for its options.
    CLI::App& addTo(CLI::App& app, const std::string& name, const std::string& help);

private:
    const CLI::App* entry = nullptr;
};
