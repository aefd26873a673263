#pragma once

#include <string>

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
    /// Does the work once the options are filled in. Failures leave as CommandError.
    virtual void run() = 0;
    /// True when the command line names this command.
    bool isChosen() const;

protected:
    /// The command's own part of the command line, for its options.
    CLI::App& addTo(CLI::App& app, const std::string& name, const std::string& help);

private:
    const CLI::App* entry = nullptr;
};
