// The one source that includes CLI11, which takes seconds to compile.

#include "ArgumentParser.h"

#include "CommandTable.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace
{
// Adds an option to its part of the command line, by what it does with its value.
class OptionAdder
{
public:
    OptionAdder(CLI::App& part, const CommandTable& commandTable, const OptionRow& optionRow)
        : app(part),
          table(commandTable),
          row(optionRow),
          names(CLI::detail::join(row.names, ","))
    {
    }

    CLI::Option* operator()(ShowHelp) const { return app.set_help_flag(names, row.help); }
    CLI::Option* operator()(ShowVersion) const
    {
        return app.set_version_flag(names, table.version, row.help);
    }
    CLI::Option* operator()(bool* flag) const { return app.add_flag(names, *flag, row.help); }
    CLI::Option* operator()(std::vector<float>* numbers) const
    {
        return app.add_option(names, *numbers, row.help)
            ->delimiter(',')
            ->expected(row.count)
            ->allow_extra_args(false);
    }
    template <class Value>
    CLI::Option* operator()(Value* value) const
    {
        return app.add_option(names, *value, row.help);
    }

private:
    CLI::App& app;
    const CommandTable& table;
    const OptionRow& row;
    std::string names;
};

std::string refuseNegative(const std::string& text)
{
    double value = 0;
    const bool isNumber = CLI::detail::lexical_cast(text, value);
    return !isNumber || value >= 0 ? std::string() : text + " is not 0 or more";
}

CLI::Validator checkOf(const NumberRange& range, const OptionTarget& target)
{
    if (range.most >= std::numeric_limits<double>::max())
        return CLI::Validator(refuseNegative, range.text);
    if (std::holds_alternative<double*>(target))
        return CLI::Range(range.least, range.most).description(range.text);
    return CLI::Range(int(range.least), int(range.most)).description(range.text);
}

std::string refuseNotFinite(const std::string& text)
{
    double value = 0;
    return CLI::detail::lexical_cast(text, value) && !std::isfinite(value) ? text + " is not a finite number"
                                                                           : std::string();
}

CLI::Option* addOption(CLI::App& app, const CommandTable& table, const OptionRow& row)
{
    CLI::Option* option = std::visit(OptionAdder(app, table, row), row.target);
    option->required(row.isRequired)->default_str(row.preset);
    if (!row.value.empty())
        option->type_name(row.value);
    if (!row.choices.empty())
        option->check(CLI::IsMember(row.choices));
    if (row.range)
        option->check(checkOf(*row.range, row.target));
    if (std::holds_alternative<double*>(row.target))
        option->check(CLI::Validator(refuseNotFinite, ""));
    if (!row.excluded.empty())
        option->excludes(row.excluded);
    return option;
}

void addOptions(CLI::App& app, const CommandTable& table, const CommandRow& row)
{
    // The help ends a group with an empty line unless it is the last, so those that are not shown come first.
    for (const OptionRow& option : row.hidden)
        addOption(app, table, option)->group("");
    for (const OptionRow& positional : row.positionals)
        addOption(app, table, positional);
    for (const OptionRow& option : row.options)
        addOption(app, table, option);
    app.footer(row.notes);
}

/// One line, as for every failure.
std::string messageOf(const CLI::App* app, const CLI::Error& error)
{
    const std::vector<CLI::App*> chosen = app->get_subcommands();
    const std::vector<std::string> unknown = app->remaining();
    std::string text = error.what();
    if (chosen.empty() && error.get_name() == "RequiredError")
        text = unknown.empty() ? "a command is required" : "there is no command '" + unknown.front() + "'";
    const std::string help = chosen.empty() ? "" : chosen.front()->get_name() + " ";
    return "tamber: " + text + "; see tamber " + help + "--help\n";
}
} // namespace

ParsedArguments parseArguments(const CommandTable& table, int argc, const char* const* argv)
{
    CLI::App app(table.program.help, table.program.name);
    app.require_subcommand(1);
    app.failure_message(messageOf);
    addOptions(app, table, table.program);
    std::vector<const CLI::App*> commands;
    for (const CommandRow& row : table.commands)
    {
        CLI::App* command = app.add_subcommand(row.name, row.help);
        command->fallthrough(); // the program's options may stand behind the command's
        addOptions(*command, table, row);
        commands.push_back(command);
    }

    ParsedArguments parsed;
    try
    {
        app.parse(argc, argv);
    }
    catch (const CLI::ParseError& error)
    {
        parsed.outcome = app.exit(error) == 0 ? ParsedArguments::ANSWERED : ParsedArguments::WRONG;
    }
    const auto chosen =
        std::find_if(commands.begin(), commands.end(), [](const CLI::App* each) { return each->parsed(); });
    if (chosen != commands.end())
        parsed.command = std::size_t(chosen - commands.begin());
    return parsed;
}
