#pragma once

#include <cstddef>
#include <optional>

struct CommandTable;

// What came of the words that the program was started with.
struct ParsedArguments
{
    enum Outcome
    {
        COMPLETE, // the command can run
        ANSWERED, // they asked for a text, which is printed
        WRONG     // stderr says in one line why
    };

    Outcome outcome = COMPLETE;
    std::optional<std::size_t> command; // its number in the table, also when the rest is wrong
};

/// Puts what the words say where the options of the table want it.
ParsedArguments parseArguments(const CommandTable& table, int argc, const char* const* argv);
