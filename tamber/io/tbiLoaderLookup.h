#pragma once

#include <tamber/io/tbLoader.h>
#include <tamber/kernel/tbiMemoryWatch.h>

#include <string>

/// Of native files that hold a graph.
inline constexpr const char* tbiGroupExtension = "tb";

/// What importFile() reads when it is given a name.
struct tbiImportSource
{
    std::string path;
    std::string extension; // without the dot
    std::string module; // the loader's file, or its name where that is unknown; empty when no loader takes it
};

/// Clears the loaders' error and finds the file. False, with error and message set, when there is none.
bool tbiFindImportSource(const char* name, tbiImportSource& source);
/// The root of a native file, with count 0; null with error and message set.
tbBase* tbiImportNative(const char* path);
/// What tbLoader::getError() and getErrorMessage() give from now on.
void tbiSetLoaderFailure(tbLoader::LOADER_ERROR code, const std::string& text);
/// `root`, or null with error and message set when memory ran out.
tbBase* tbiEndImport(tbBase* root, bool ranOut);

/// Runs an import. What was read while memory ran out may lack something anywhere, so nothing of it is handed out.
template <class Work>
tbBase* tbiImportWhole(Work work)
{
    const tbiMemoryWatch memory;
    tbBase* root = tbiWithoutThrow<tbBase*>(nullptr, work);
    return tbiEndImport(root, memory.ranOut());
}
