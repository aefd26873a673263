#include "Command.h"

#include <CLI/CLI.hpp>

CLI::App& Command::addTo(CLI::App& app, const std::string& name, const std::string& help)
{
    CLI::App* added = app.add_subcommand(name, help);
    added->fallthrough(); // the program's options may stand behind the command's
    entry = added;
    return *added;
}

bool Command::isChosen() const
{
    return entry && entry->parsed();
}

std::vector<std::pair<int, std::string>> Command::getExitCodes() const
{
    return {{0, "The command did its work."},
            {getFailureCode(), "It failed, and one line on stderr says why; or the command line was wrong."}};
}
