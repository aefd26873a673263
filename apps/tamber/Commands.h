#pragma once

#include "Command.h"

#include <memory>
#include <vector>

/// Every command of the program, in the order in which its help lists them.
std::vector<std::unique_ptr<Command>> makeCommands();
