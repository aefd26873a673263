#include "Command.h"

#include <CLI/CLI.hpp>

CLI::App& Command::addTo(CLI::App& app, const std::string& name, const std::string& help)
{
    CLI::App* added = app.add_subcommand(name, help);
    entry = added;
    return *added;
}

bool Command::isChosen() const
{
    return entry && entry->parsed();
}
