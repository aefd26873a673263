#include "CommandTable.h"

#include <iterator>
#include <limits>
#include <sstream>

namespace
{
/// "-v,--verbose" are two.
std::vector<std::string> splitNames(const std::string& names)
{
    std::vector<std::string> parts;
    std::istringstream list(names);
    for (std::string name; std::getline(list, name, ',');)
        parts.push_back(name);
    return parts;
}

// What stands for a value, by its type: in the order of OptionTarget.
constexpr const char* TYPE_NAMES[] = {"", "", "", "INT", "UINT", "FLOAT", "TEXT", "FLOAT"};
static_assert(std::size(TYPE_NAMES) == std::variant_size_v<OptionTarget>);

template <class Number>
std::string textOf(const Number* number)
{
    std::ostringstream text;
    text << *number;
    return text.str();
}

/// What a number is before the command line is read.
std::string presetOf(const OptionTarget& target)
{
    if (const auto* whole = std::get_if<int*>(&target))
        return textOf(*whole);
    if (const auto* size = std::get_if<std::size_t*>(&target))
        return textOf(*size);
    if (const auto* real = std::get_if<double*>(&target))
        return textOf(*real);
    return {};
}
} // namespace

OptionRow::OptionRow(const std::string& nameList, OptionTarget valueTarget, const std::string& helpText)
    : names(splitNames(nameList)),
      target(valueTarget),
      help(helpText),
      preset(presetOf(target))
{
    if (!isPositional())
        value = TYPE_NAMES[target.index()];
}

OptionRow& OptionRow::require()
{
    isRequired = true;
    return *this;
}

OptionRow& OptionRow::nameValue(const std::string& valueName)
{
    value = valueName;
    return *this;
}

OptionRow& OptionRow::chooseFrom(const std::vector<std::string>& values)
{
    choices = values;
    return *this;
}

OptionRow& OptionRow::limit(int least, int most)
{
    const std::string text = "INT in [" + std::to_string(least) + " - " + std::to_string(most) + "]";
    range = {double(least), double(most), text};
    return *this;
}

OptionRow& OptionRow::limitQuietly(double least, double most)
{
    range = {least, most, ""};
    return *this;
}

OptionRow& OptionRow::limitToNotNegative()
{
    range = {0.0, std::numeric_limits<double>::max(), "NONNEGATIVE"};
    return *this;
}

OptionRow& OptionRow::expect(int numbers)
{
    count = numbers;
    return *this;
}

OptionRow& OptionRow::exclude(const std::string& name)
{
    excluded = name;
    return *this;
}

bool OptionRow::isPositional() const
{
    return !names.front().starts_with('-');
}

bool OptionRow::takesFile() const
{
    return std::holds_alternative<std::string*>(target) && choices.empty();
}

CommandRow::CommandRow(const std::string& commandName, const std::string& helpText)
    : name(commandName),
      help(helpText)
{
    add("-h,--help", ShowHelp(), "Print this help message and exit");
}

OptionRow& CommandRow::add(const std::string& names, OptionTarget target, const std::string& helpText)
{
    OptionRow row(names, target, helpText);
    return (row.isPositional() ? positionals : options).emplace_back(row);
}

void CommandRow::addHidden(const std::string& names, OptionTarget target, const std::string& helpText)
{
    hidden.emplace_back(names, target, helpText);
}

CommandRow& CommandTable::add(const std::string& name, const std::string& help)
{
    return commands.emplace_back(name, help);
}

std::vector<std::string> CommandTable::commandNames() const
{
    std::vector<std::string> names;
    for (const CommandRow& command : commands)
        names.push_back(command.name);
    return names;
}
