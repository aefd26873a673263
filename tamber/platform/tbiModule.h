#pragma once

#include <tamber/platform/tbPlatform.h>

#include <string>
#include <vector>

// Modules (dynamic libraries), and where they may lie. Module names are those of tbiModuleName().

/// The handle of a module in this process, null when there is none of that name. Takes no reference.
HINSTANCE tbiFindModule(const std::string& moduleName);
/// Loads the file at `path`, its own dependents from its directory first. A path without a directory is left to the
/// system's search. Null on failure; `error` says why.
HINSTANCE tbiLoadModule(const char* path, std::string& error);
/// Gives back what tbiLoadModule() took.
bool tbiFreeModule(HINSTANCE module);
/// The file that a module was loaded from.
std::string tbiModulePath(HINSTANCE module);

// Directories, without a separator at the end; empty when unknown.
std::string tbiExecutableDirectory();
std::string tbiCurrentDirectory();
/// The directory of the module that holds this code.
std::string tbiLibraryDirectory();

struct tbiModuleDirectory
{
    std::string path;
    const char* source; // what it is, in one word
};
/// The directories that plug-ins of all programs lie in: on POSIX those of the installation and the library. On
/// Windows the system's own two, or without them the library's.
std::vector<tbiModuleDirectory> tbiSharedDirectories(bool withSystem);

/// Names of the files in a directory, in alphabetical order.
std::vector<std::string> tbiListFiles(const std::string& directory);

/// What ends a module's file name, ".so" or ".dll".
const char* tbiModuleEnding();
/// What separates a directory from a file's name.
char tbiSeparator();
/// What separates the directories in a list of the environment.
char tbiListSeparator();
bool tbiIsAbsolutePath(const std::string& path);
/// The same for all spellings of one place; the place need not exist.
std::string tbiPathKey(const std::string& path);
/// True when everybody on this machine may change the file, its directory or one above it.
bool tbiOthersMayWrite(const std::string& path);
