#include "Commands.h"

#include "PickCommand.h"
#include "RunCommand.h"

std::vector<std::unique_ptr<Command>> makeCommands()
{
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(std::make_unique<RunCommand>());
    commands.push_back(std::make_unique<PickCommand>());
    return commands;
}
