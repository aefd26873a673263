#pragma once

#include <tamber/kernel/tbTypes.h>

#include <string>
#include <vector>

/// Gives the list of plug-ins its first storage, when the library is loaded.
void tbiReservePlugInLists();
/// Gives back what plug-ins, loaders, loader definitions and file types keep, when the library is unloaded.
void tbiReleasePlugInLists();
void tbiReleaseLoaderLists();

/// Drops the native file type of a class that goes.
void tbiForgetFileType(const tbType* type);
/// Takes a record out of the list of loaders; nothing when it is none.
void tbiForgetLoader(const void* record);
/// The extensions of a loader module, loaded or not; none for other modules.
std::vector<std::string> tbiLoaderExtensions(const std::string& moduleName);
