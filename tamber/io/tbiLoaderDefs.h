#pragma once

#include <tamber/containers/tbList.h>
#include <tamber/kernel/tbMemory.h>

#include <string>
#include <vector>

// What is known of a loader module, loaded or not.
struct tbiLoaderDef : tbAllocated<tbiLoaderDef>
{
    using Extensions = tbTList<char*>;

    char* moduleName = nullptr;
    Extensions extensions;       // of what it reads
    Extensions exportExtensions; // of what it writes
    char* path = nullptr;        // the file that it was loaded from last
};

// Every loader module that was ever met.
namespace tbiLoaderDefs
{

int getNum();
/// Null when out of range.
const tbiLoaderDef* get(int i);
/// The module's, made when it is met first; null when there is no memory for it.
tbiLoaderDef* of(const char* moduleName);
/// The first that reads the extension, case ignored; null when there is none.
tbiLoaderDef* forExtension(const char* extension);
/// A module that is loaded again names its extensions again; each is added once.
void addExtension(tbiLoaderDef::Extensions& extensions, const char* extension);
/// The extensions that a module reads; none for one that is no loader.
std::vector<std::string> extensionsOf(const std::string& moduleName);
/// Forgets all but the `num` that were met first.
void cutTo(int num);
void release();

} // namespace tbiLoaderDefs
