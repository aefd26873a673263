#include "CompletionScript.h"

#include <algorithm>
#include <sstream>

namespace
{
std::string joined(const std::vector<std::string>& words, const char* between)
{
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : between) + word;
    return text;
}

std::string replaced(std::string text, const std::string& what, const std::string& with)
{
    for (std::size_t i = 0; (i = text.find(what, i)) != std::string::npos; i += with.size())
        text.replace(i, what.size(), with);
    return text;
}

/// In single quotes, as every shell here takes text literally.
std::string quoted(const std::string& text)
{
    return "'" + replaced(text, "'", "'\\''") + "'";
}

/// A command's own options, then the program's that it does not have itself.
std::vector<OptionRow> allOptions(const CommandTable& table, const CommandRow& command)
{
    std::vector<OptionRow> options = command.options;
    for (const OptionRow& option : table.program.options)
        if (option.names.back() != "--help")
            options.push_back(option);
    return options;
}

bool takesFiles(const CommandRow& command)
{
    return std::any_of(command.positionals.begin(), command.positionals.end(),
                       [](const OptionRow& positional) { return positional.takesFile(); });
}

// bash

/// The lines of a case that complete the value of an option.
void addBashValues(std::ostream& out, const std::vector<OptionRow>& options)
{
    for (const OptionRow& option : options)
    {
        if (option.value.empty())
            continue;
        out << "            " << joined(option.names, "|") << ") ";
        if (!option.choices.empty())
            out << "COMPREPLY=($(compgen -W " << quoted(joined(option.choices, " ")) << " -- \"$word\")); ";
        else if (option.takesFile())
            out << "_tamber_files; ";
        out << "return ;;\n";
    }
}

/// As a pattern. The program has some.
std::string optionsWithValue(const CommandRow& command)
{
    std::string pattern;
    for (const OptionRow& option : command.options)
        if (!option.value.empty())
            pattern += (pattern.empty() ? "" : "|") + joined(option.names, "|");
    return pattern;
}

std::string wordsOf(const std::vector<OptionRow>& options)
{
    std::string words;
    for (const OptionRow& option : options)
        words += (words.empty() ? "" : " ") + joined(option.names, " ");
    return words;
}

void addBashCommand(std::ostream& out, const CommandTable& table, const CommandRow& command)
{
    const std::vector<OptionRow> options = allOptions(table, command);
    out << "    " << command.name << ")\n        case $before in\n";
    addBashValues(out, options);
    out << "        esac\n        options=" << quoted(wordsOf(options)) << "\n";
    for (const OptionRow& positional : command.positionals)
        if (!positional.choices.empty())
            out << "        words=" << quoted(joined(positional.choices, " ")) << "\n";
    if (takesFiles(command))
        out << "        files=1\n";
    out << "        ;;\n";
}

std::string bashScript(const CommandTable& table)
{
    std::ostringstream out;
    out << R"(# bash completion for tamber

_tamber_files()
{
    local IFS=$'\n'
    compopt -o filenames 2>/dev/null
    COMPREPLY=($(compgen -f -- "$word"))
}

_tamber()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}
    local command= options= words= files= i
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
        )"
        << optionsWithValue(table.program) << R"() ((++i)) ;;
        -*) ;;
        *) command=${COMP_WORDS[i]}; break ;;
        esac
    done
    COMPREPLY=()
    case $command in
    '')
        case $before in
)";
    addBashValues(out, table.program.options);
    out << "        esac\n        options=" << quoted(wordsOf(table.program.options))
        << "\n        words=" << quoted(joined(table.commandNames(), " ")) << "\n        ;;\n";
    for (const CommandRow& command : table.commands)
        addBashCommand(out, table, command);
    out << R"(    esac
    if [[ $word == -* ]]; then
        COMPREPLY=($(compgen -W "$options" -- "$word"))
    elif [[ -n $words ]]; then
        COMPREPLY=($(compgen -W "$words" -- "$word"))
    elif [[ -n $files ]]; then
        _tamber_files
    fi
}

complete -F _tamber tamber
)";
    return out.str();
}

// zsh

std::string zshText(const std::string& text)
{
    return replaced(replaced(replaced(text, "[", "\\["), "]", "\\]"), ":", "\\:");
}

std::string zshAction(const OptionRow& option)
{
    if (!option.choices.empty())
        return "(" + joined(option.choices, " ") + ")";
    return option.takesFile() ? "_files" : "";
}

std::string zshOption(const OptionRow& option)
{
    std::string rest = "[" + zshText(option.help) + "]";
    if (!option.value.empty())
        rest += ":" + zshText(option.value) + ":" + zshAction(option);
    if (option.names.size() == 1)
        return quoted(option.names[0] + rest);
    return quoted("(" + joined(option.names, " ") + ")") + "{" + joined(option.names, ",") + "}" +
           quoted(rest);
}

void addZshArguments(std::ostream& out, const std::vector<OptionRow>& options)
{
    for (const OptionRow& option : options)
        out << " \\\n        " << zshOption(option);
}

std::string zshScript(const CommandTable& table)
{
    std::ostringstream out;
    out << "#compdef tamber\n";
    for (const CommandRow& command : table.commands)
    {
        out << "\n_tamber_" << command.name << "()\n{\n    _arguments -S";
        addZshArguments(out, allOptions(table, command));
        for (const OptionRow& positional : command.positionals)
            out << " \\\n        "
                << quoted((positional.isRequired ? ":" : "::") + zshText(positional.names[0]) + ":" +
                          zshAction(positional));
        out << "\n}\n";
    }
    out << "\n_tamber_commands()\n{\n    local -a commands=(\n";
    for (const CommandRow& command : table.commands)
        out << "        " << quoted(command.name + ":" + zshText(command.help)) << '\n';
    out << "    )\n    _describe command commands\n}\n\n_tamber()\n{\n    local context state line\n"
           "    _arguments -C -S";
    addZshArguments(out, table.program.options);
    out << R"( \
        '1:command:_tamber_commands' \
        '*::argument:->argument'
    if [[ $state == argument ]] && (( $+functions[_tamber_$words[1]] )); then
        _tamber_$words[1]
    fi
}

if [[ $funcstack[1] == _tamber ]]; then
    _tamber "$@"
else
    compdef _tamber tamber
fi
)";
    return out.str();
}

// fish

void addFishOption(std::ostream& out, const OptionRow& option, const std::string& condition)
{
    out << "complete -c tamber" << condition;
    for (const std::string& name : option.names)
        out << (name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1));
    if (!option.choices.empty())
        out << " -x -a " << quoted(joined(option.choices, " "));
    else if (!option.value.empty())
        out << (option.takesFile() ? " -r -F" : " -x");
    out << " -d " << quoted(option.help) << '\n';
}

std::string fishScript(const CommandTable& table)
{
    std::ostringstream out;
    out << "# fish completion for tamber\n\ncomplete -c tamber -f\n";
    for (const OptionRow& option : table.program.options)
        addFishOption(out, option, {});
    for (const CommandRow& command : table.commands)
    {
        out << "\ncomplete -c tamber -n __fish_use_subcommand -a " << command.name << " -d "
            << quoted(command.help) << '\n';
        const std::string condition = " -n " + quoted("__fish_seen_subcommand_from " + command.name);
        for (const OptionRow& option : command.options)
            if (option.names.back() != "--help")
                addFishOption(out, option, condition);
        for (const OptionRow& positional : command.positionals)
            if (!positional.choices.empty())
                out << "complete -c tamber" << condition << " -a " << quoted(joined(positional.choices, " "))
                    << '\n';
        if (takesFiles(command))
            out << "complete -c tamber" << condition << " -F\n";
    }
    return out.str();
}

constexpr struct
{
    const char* shell;
    std::string (*write)(const CommandTable&);
} WRITERS[] = {{"bash", &bashScript}, {"zsh", &zshScript}, {"fish", &fishScript}};
} // namespace

std::vector<std::string> completedShells()
{
    std::vector<std::string> shells;
    for (const auto& [shell, writer] : WRITERS)
        shells.emplace_back(shell);
    return shells;
}

std::string completionScript(const CommandTable& table, const std::string& shell)
{
    for (const auto& [name, write] : WRITERS)
        if (shell == name)
            return write(table);
    return {};
}
