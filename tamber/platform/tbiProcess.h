#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Programs that run as children of this process, within limits.

/// What to run. The child has this process's environment and current directory, empty standard streams and no other
/// open file of this process. Its standard input ends once the limits hold: a program that reads it to the end before it
/// does anything else passes none of them. A limit of 0 is none.
struct tbiProcessOrder
{
    std::string program; // the path of the file; no search
    std::vector<std::string> arguments;
    std::int64_t memory = 0;  // bytes that the process may take
    double processorTime = 0; // seconds on a processor; POSIX counts whole ones, and rounds up
    double time = 0;          // seconds on the clock
};

struct tbiProcessEnd
{
    enum HOW : int
    {
        NOT_STARTED,
        EXITED,
        STOPPED,        // by a signal or an exception
        PROCESSOR_TIME, // ended because it passed the limit
        TIME
    };

    HOW how = NOT_STARTED;
    std::uint32_t code = 0; // exit code, signal or exception
    double seconds = 0;     // from start to end
    std::string text;       // how a process was stopped, or why none was started
};

/// Runs the program to its end. It is gone when this returns, whatever came of it. Safe in programs with threads.
tbiProcessEnd tbiRunProcess(const tbiProcessOrder& order);

/// For a child, first of all: it ends with its parent, and whatever it does wrong ends it at once, without a window that
/// asks somebody what to do.
void tbiBeginChild() noexcept;

/// False where the memory of a process cannot be limited: under a sanitizer, which reserves more than there is.
bool tbiLimitsMemory();

/// What a program's file name ends in, "" or ".exe".
const char* tbiProgramEnding();

/// Makes a directory of this user's own among the temporary files, which nobody else can enter. Empty on failure.
std::string tbiMakePrivateDirectory();
/// Removes the directory with the files in it.
void tbiRemovePrivateDirectory(const std::string& directory);
