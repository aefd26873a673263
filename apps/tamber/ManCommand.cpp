#include "Commands.h"

#include "CommandLine.h"
#include "FileOutput.h"
#include "ManPage.h"

#include <algorithm>
#include <iostream>

namespace
{
// tamber man: the manual pages of the program and its commands.
class ManCommand : public Command
{
public:
    void define(CLI::App& app) override
    {
        CLI::App& command = addTo(app, "man", "Print a manual page");
        std::vector<std::string> names;
        for (const CLI::App* each : app.get_subcommands([](CLI::App*) { return true; }))
            names.push_back(each->get_name());
        CLI::Option* name =
            command.add_option("COMMAND", page, "The command; the program itself when it is left out")
                ->check(CLI::IsMember(names));
        command.add_option("--all", folder, "Write every page into this directory")
            ->type_name("FILE")
            ->excludes(name);
        command.footer("The page is troff: tamber man run | man -l -");
    }

    int run() override
    {
        CommandLine line;
        const CommandTable table = tableOf(line);
        if (!folder.empty())
        {
            replaceFile(folder + "/tamber.1", manPage(table));
            for (const CommandRow& command : table.commands)
                replaceFile(folder + "/" + manPageName(command) + ".1", manPage(table, command));
            return 0;
        }
        const auto command = std::find_if(table.commands.begin(), table.commands.end(),
                                          [this](const CommandRow& row) { return row.name == page; });
        std::cout << (command == table.commands.end() ? manPage(table) : manPage(table, *command));
        return 0;
    }

    bool needsKernel() const override { return false; }

private:
    std::string page;
    std::string folder;
};
} // namespace

std::unique_ptr<Command> makeManCommand()
{
    return std::make_unique<ManCommand>();
}
