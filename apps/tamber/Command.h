#pragma once

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
};
