#pragma once

#include <string>
#include <vector>

class CommandLine;
class Command;

// What there is to say of the command line, taken out of its definition.

struct OptionRow
{
    std::vector<std::string> names; // "-v", "--verbose"; the one name of a positional
    std::string value;              // what stands for its value, empty for a flag
    std::string help;
    std::string preset;               // the value when none is given, empty for none
    std::vector<std::string> choices; // the values that there are, when they can be listed
    bool isRequired = false;
    bool takesFile = false;
};

struct CommandRow
{
    std::string name;
    std::string help;
    std::string notes;
    std::vector<OptionRow> options;
    std::vector<OptionRow> positionals;
    std::vector<std::pair<int, std::string>> exitCodes;
};

struct CommandTable
{
    CommandRow program; // its options go before a command or after it
    std::vector<CommandRow> commands;
};

CommandTable tableOf(CommandLine& line);
