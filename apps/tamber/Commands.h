#pragma once

#include "Command.h"
#include "CommandTable.h"

#include <memory>
#include <vector>

// Each stands alone in the source file of its name.
std::unique_ptr<Command> makeBuildCommand();
std::unique_ptr<Command> makeCheckCommand();
std::unique_ptr<Command> makeCompletionCommand();
std::unique_ptr<Command> makeConvertCommand();
std::unique_ptr<Command> makeDiffCommand();
std::unique_ptr<Command> makeDumpCommand();
std::unique_ptr<Command> makeInfoCommand();
std::unique_ptr<Command> makeManCommand();
std::unique_ptr<Command> makePickCommand();
std::unique_ptr<Command> makePluginsCommand();
std::unique_ptr<Command> makeRunCommand();

/// Every command of the program, in the order in which its help lists them.
std::vector<std::unique_ptr<Command>> makeCommands();
