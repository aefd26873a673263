#include "Commands.h"

#include "BuildCommand.h"
#include "CheckCommand.h"
#include "CompletionCommand.h"
#include "ConvertCommand.h"
#include "DiffCommand.h"
#include "DumpCommand.h"
#include "InfoCommand.h"
#include "ManCommand.h"
#include "PickCommand.h"
#include "PluginsCommand.h"
#include "RunCommand.h"

std::vector<std::unique_ptr<Command>> makeCommands()
{
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(std::make_unique<RunCommand>());
    commands.push_back(std::make_unique<PickCommand>());
    commands.push_back(std::make_unique<ConvertCommand>());
    commands.push_back(std::make_unique<PluginsCommand>());
    commands.push_back(std::make_unique<InfoCommand>());
    commands.push_back(std::make_unique<CheckCommand>());
    commands.push_back(std::make_unique<DiffCommand>());
    commands.push_back(std::make_unique<DumpCommand>());
    commands.push_back(std::make_unique<BuildCommand>());
    commands.push_back(std::make_unique<CompletionCommand>());
    commands.push_back(std::make_unique<ManCommand>());
    return commands;
}
