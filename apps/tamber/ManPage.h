#pragma once

#include "CommandTable.h"

/// The manual page of the program, in troff with the macros of man.
std::string manPage(const CommandTable& table);
/// The manual page of one of its commands.
std::string manPage(const CommandTable& table, const CommandRow& command);
/// What the page is called: "tamber-run" for the command run.
std::string manPageName(const CommandRow& command);
