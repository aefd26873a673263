#pragma once

#include <tamber/kernel/tbTypes.h>

/// The module of the classes that models are made of.
inline constexpr const char* tbiCompanionModule = "tbPortableKernel.dll";

/// Gives the list of plug-ins its first storage, when the library is loaded.
void tbiReservePlugInLists();
/// Gives back what plug-ins, loaders, loader definitions and file types keep, when the library is unloaded.
void tbiReleasePlugInLists();
void tbiReleaseLoaderLists();

/// Takes a record out of the list of loaders; nothing when it is none.
void tbiForgetLoader(const void* record);
