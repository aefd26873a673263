// The program as a process: what it prints where, and its exit code.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace tbtest
{
struct Result
{
    int code;
    std::string out;
    std::string err;
};

inline std::string textOf(const char* path)
{
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// The exit code in what std::system() gives: the value itself, or its second byte.
inline int exitCode(int status)
{
    return status > 255 ? status >> 8 : status;
}

inline Result run(const std::string& arguments)
{
    const std::string program = std::filesystem::path(TAMBER_PROGRAM).make_preferred().string();
    const int status = std::system(("\"" + program + "\" " + arguments + " >out.txt 2>err.txt").c_str());
    return {exitCode(status), textOf("out.txt"), textOf("err.txt")};
}

inline bool holds(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}
} // namespace tbtest
