#include "ManPage.h"

#include <sstream>

namespace
{
struct Variable
{
    const char* name;
    const char* meaning;
};
constexpr Variable VARIABLES[] = {
    {"TAMBER_IMPORT_PROGRAM",
     "The program that reads foreign formats in a process of its own, by an absolute path."},
    {"TAMBER_OPEN_ANYWHERE", "1 lets models open files outside their directory and the search paths."},
    {"TAMBER_PLUGIN_ALLOW", "The plug-ins that may be loaded, with or without their checksums."},
    {"TAMBER_PLUGIN_PATH", "Absolute directories where plug-ins are looked for first."},
    {"TAMBER_PLUGINS",
     "Where plug-ins are looked for: all, app or none. The program takes app when it is not set."},
    {"TAMBER_SETTINGS", "The file of settings."},
};

constexpr std::size_t FULL_LINE = 75; // a shorter one ends where it was meant to

std::string escaped(const std::string& text)
{
    std::string out;
    bool lineBegins = true;
    for (const char c : text)
    {
        if (lineBegins && (c == '.' || c == '\''))
            out += "\\&";
        lineBegins = c == '\n';
        if (c == '\\')
            out += "\\e";
        else if (c == '-')
            out += "\\-";
        else
            out += c;
    }
    return out;
}

std::string upperCase(std::string text)
{
    for (char& c : text)
        c = c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c;
    return text;
}

std::string bold(const std::string& text)
{
    return "\\fB" + escaped(text) + "\\fR";
}

std::string italic(const std::string& text)
{
    return "\\fI" + escaped(text) + "\\fR";
}

void begin(std::ostream& out, std::string version, const std::string& name, const std::string& help)
{
    version[0] = 'T';
    out << ".TH " << escaped(upperCase(name)) << " 1 \"\" \"" << escaped(version) << "\" \"User Commands\"\n"
        << ".SH NAME\n"
        << escaped(name) << " \\- " << escaped(help) << "\n.SH SYNOPSIS\n";
}

void addOption(std::ostream& out, const OptionRow& option, bool isPositional)
{
    out << ".TP\n";
    for (std::size_t i = 0; i < option.names.size(); ++i)
        out << (i > 0 ? ", " : "") << (isPositional ? italic(option.names[i]) : bold(option.names[i]));
    if (!option.value.empty())
        out << ' ' << italic(option.value);
    out << '\n' << escaped(option.help);
    if (!option.preset.empty())
        out << " (" << escaped(option.preset) << " when it is not given)";
    out << '\n';
}

void addNotes(std::ostream& out, const std::string& notes)
{
    if (notes.empty())
        return;
    out << ".SH DESCRIPTION\n";
    std::istringstream lines(notes);
    for (std::string line; std::getline(lines, line);)
        out << escaped(line) << '\n' << (line.size() < FULL_LINE ? ".br\n" : "");
}

void addExitCodes(std::ostream& out, const CommandRow& command)
{
    out << ".SH \"EXIT STATUS\"\n";
    for (const auto& [code, meaning] : command.exitCodes)
        out << ".TP\n" << code << '\n' << escaped(meaning) << '\n';
}
} // namespace

std::string manPageName(const CommandRow& command)
{
    return "tamber-" + command.name;
}

std::string manPage(const CommandTable& table)
{
    std::ostringstream out;
    begin(out, table.version, "tamber", table.program.help);
    out << bold("tamber") << " [" << italic("options") << "] " << italic("COMMAND") << " ...\n.SH COMMANDS\n";
    for (const CommandRow& command : table.commands)
        out << ".TP\n" << bold(command.name) << '\n' << escaped(command.help) << '\n';
    out << ".SH OPTIONS\nThey go before the command or behind it.\n";
    for (const OptionRow& option : table.program.options)
        addOption(out, option, false);
    out << ".SH \"EXIT STATUS\"\n0 when the command did its work, and never after a failure. Each command's "
           "page "
           "lists its codes.\n.SH ENVIRONMENT\n";
    for (const Variable& variable : VARIABLES)
        out << ".TP\n" << bold(variable.name) << '\n' << escaped(variable.meaning) << '\n';
    out << ".SH \"SEE ALSO\"\n";
    for (const CommandRow& command : table.commands)
        out << ".BR " << escaped(manPageName(command)) << " (1)"
            << (&command == &table.commands.back() ? "" : ",") << '\n';
    return out.str();
}

std::string manPage(const CommandTable& table, const CommandRow& command)
{
    std::ostringstream out;
    begin(out, table.version, manPageName(command), command.help);
    out << bold("tamber " + command.name) << " [" << italic("options") << "]";
    for (const OptionRow& positional : command.positionals)
        out << ' ' << (positional.isRequired ? "" : "[") << italic(positional.names[0])
            << (positional.isRequired ? "" : "]");
    out << '\n';
    addNotes(out, command.notes);
    out << ".SH OPTIONS\n";
    for (const OptionRow& positional : command.positionals)
        addOption(out, positional, true);
    for (const OptionRow& option : command.options)
        addOption(out, option, false);
    for (const OptionRow& option : table.program.options)
        if (option.names.back() != "--help")
            addOption(out, option, false);
    addExitCodes(out, command);
    out << ".SH \"SEE ALSO\"\n.BR tamber (1)\n";
    return out.str();
}
