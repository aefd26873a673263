// The program as a process: what it prints where, and its exit code.
#pragma once

#include <tests/support/TempFile.h>

#include <string>
#include <vector>

namespace tbtest
{
struct Result
{
    int code;
    std::string out;
    std::string err;
};

/// Runs the program in the current directory with these arguments, as a shell takes them. Its stdout goes to the file
/// `out` when there is one.
Result run(const std::string& arguments, const std::string& out = {});

/// The same, and expects the exit code and what it prints anywhere.
Result expectRun(const std::string& arguments, int code, const std::vector<std::string>& printed = {});

bool holds(const std::string& text, const std::string& part);

/// Writes a row of four triangles natively.
void writeRow(const char* path);

/// The commands that the program names in its help.
std::vector<std::string> programCommands();
} // namespace tbtest
