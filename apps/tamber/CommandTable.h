#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

// The command line as data: commands fill it in, and it is parsed, explained and completed from here.

// Options that print something instead of having a command run.
struct ShowHelp
{
};
struct ShowVersion
{
};

/// Where an option puts what stands on the command line: true for a flag, a number, a text, or numbers.
using OptionTarget = std::variant<ShowHelp, ShowVersion, bool*, int*, std::size_t*, double*, std::string*,
                                  std::vector<float>*>;

struct NumberRange
{
    double least;
    double most;
    std::string text; // what the help says of it, empty for nothing
};

// An option, a flag or a positional. The operations add to what is said of it, one behind the other.
struct OptionRow
{
    OptionRow(const std::string& names, OptionTarget target, const std::string& help);

    OptionRow& require();
    /// What stands for the value in texts, in place of its type.
    OptionRow& nameValue(const std::string& valueName);
    OptionRow& chooseFrom(const std::vector<std::string>& values);
    /// Whole numbers in that range, which the help shows.
    OptionRow& limit(int least, int most);
    /// In that range, which is so wide that the help does not show it. Bounds of whole numbers are whole and no more
    /// than an int holds.
    OptionRow& limitQuietly(double least, double most);
    /// For numbers with a fraction.
    OptionRow& limitToNotNegative();
    /// As many numbers, with commas or spaces between them.
    OptionRow& expect(int numbers);
    /// Refuses the positional of that name, or the option that was added before, beside this one.
    OptionRow& exclude(const std::string& name);

    bool isPositional() const;
    /// True when its value is the name of a file, as every text is that cannot be chosen from a list.
    bool takesFile() const;

    std::vector<std::string> names; // "-v", "--verbose"; the one name of a positional
    OptionTarget target;
    std::string help;
    std::string value;                // what stands for its value, empty for a flag and for a positional
    std::string preset;               // the number when none is given, empty for what is no number
    std::vector<std::string> choices; // the values that there are, when they can be listed
    std::optional<NumberRange> range;
    int count = 1; // of the numbers
    std::string excluded;
    bool isRequired = false;
};

struct CommandRow
{
    /// With --help.
    CommandRow(const std::string& name, const std::string& help);

    /// Adds an option or flag ("-v,--verbose") or a positional ("FILE"). The row stands until the next one is added.
    OptionRow& add(const std::string& names, OptionTarget target, const std::string& help);
    /// Adds one that no text names.
    void addHidden(const std::string& names, OptionTarget target, const std::string& help);

    std::string name;
    std::string help;
    std::string notes; // in lines
    std::vector<OptionRow> positionals;
    std::vector<OptionRow> options;
    std::vector<OptionRow> hidden;
    std::vector<std::pair<int, std::string>> exitCodes;
};

struct CommandTable
{
    /// The row stands until the next one is added.
    CommandRow& add(const std::string& name, const std::string& help);
    std::vector<std::string> commandNames() const;

    CommandRow program; // its options go before a command or after it
    std::string version;
    std::vector<CommandRow> commands;
};
