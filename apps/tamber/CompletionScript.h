#pragma once

#include "CommandTable.h"

/// The shells that a script can be made for: "bash", "zsh" and "fish".
std::vector<std::string> completedShells();

/// A script that has the shell complete the commands, options, values and files of the table.
std::string completionScript(const CommandTable& table, const std::string& shell);
