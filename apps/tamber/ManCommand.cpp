#include "Commands.h"

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
    void define(CommandTable& commandTable) override
    {
        table = &commandTable;
        CommandRow& command = table->add("man", "Print a manual page");
        command.add("COMMAND", &page, "The command; the program itself when it is left out")
            .chooseFrom(table->commandNames());
        command.add("--all", &folder, "Write every page into this directory")
            .nameValue("FILE")
            .exclude("COMMAND");
        command.notes = "The page is troff: tamber man run | man -l -";
    }

    int run() override
    {
        if (!folder.empty())
        {
            replaceFile(folder + "/tamber.1", manPage(*table));
            for (const CommandRow& command : table->commands)
                replaceFile(folder + "/" + manPageName(command) + ".1", manPage(*table, command));
            return 0;
        }
        const auto command = std::find_if(table->commands.begin(), table->commands.end(),
                                          [this](const CommandRow& row) { return row.name == page; });
        std::cout << (command == table->commands.end() ? manPage(*table) : manPage(*table, *command));
        return 0;
    }

    bool needsKernel() const override { return false; }

private:
    CommandTable* table = nullptr;
    std::string page;
    std::string folder;
};
} // namespace

std::unique_ptr<Command> makeManCommand()
{
    return std::make_unique<ManCommand>();
}
