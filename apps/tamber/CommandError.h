#pragma once

#include <stdexcept>
#include <string>

// What ends a command: the file that it is about and the reason. main() prints it and exits with 1.
class CommandError : public std::runtime_error
{
public:
    CommandError(const std::string& file, const std::string& reason)
        : std::runtime_error(file + ": " + reason)
    {
    }
};
