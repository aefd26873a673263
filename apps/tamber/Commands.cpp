#include "Commands.h"

std::vector<std::unique_ptr<Command>> makeCommands()
{
    std::vector<std::unique_ptr<Command>> commands;
    for (const auto make : {makeRunCommand, makePickCommand, makeConvertCommand, makePluginsCommand,
                            makeInfoCommand, makeCheckCommand, makeDiffCommand, makeDumpCommand,
                            makeBuildCommand, makeCompletionCommand, makeManCommand})
        commands.push_back(make());
    return commands;
}
