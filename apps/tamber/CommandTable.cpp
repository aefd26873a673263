#include "CommandTable.h"

#include "CommandLine.h"

#include <algorithm>
#include <sstream>

namespace
{
/// "TEXT:{a,b}" names the choices a and b.
std::vector<std::string> choicesIn(const std::string& type)
{
    const std::size_t begin = type.find('{');
    const std::size_t end = type.find('}');
    std::vector<std::string> choices;
    if (begin == std::string::npos || end == std::string::npos)
        return choices;
    std::istringstream list(type.substr(begin + 1, end - begin - 1));
    for (std::string choice; std::getline(list, choice, ',');)
        choices.push_back(choice);
    return choices;
}

/// Without the conditions that stand behind it.
std::string firstWord(const std::string& type)
{
    return type.substr(0, type.find_first_of(" :"));
}

OptionRow rowOf(const CLI::Option& option)
{
    OptionRow row;
    const std::string type = option.get_type_name();
    const bool isFlag = option.get_items_expected_max() == 0;
    if (option.get_positional())
        row.names = {option.get_name(true)};
    for (const std::string& name : option.get_snames())
        row.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        row.names.push_back("--" + name);
    if (!isFlag && !option.get_positional())
        row.value = firstWord(type);
    row.help = option.get_description();
    row.preset = isFlag ? std::string() : option.get_default_str();
    row.choices = choicesIn(type);
    row.isRequired = option.get_required();
    row.takesFile =
        !isFlag && row.choices.empty() && (firstWord(type) == "TEXT" || firstWord(type) == "FILE");
    return row;
}

CommandRow rowOf(const CLI::App& app)
{
    CommandRow row;
    row.name = app.get_name();
    row.help = app.get_description();
    row.notes = app.get_footer();
    for (const CLI::Option* option :
         app.get_options([](const CLI::Option* each) { return !each->get_group().empty(); }))
        (option->get_positional() ? row.positionals : row.options).push_back(rowOf(*option));
    return row;
}
} // namespace

CommandTable tableOf(CommandLine& line)
{
    CommandTable table;
    table.program = rowOf(line.getApp());
    for (const auto& command : line.getCommands())
    {
        table.commands.push_back(rowOf(command->getEntry()));
        table.commands.back().exitCodes = command->getExitCodes();
    }
    return table;
}
