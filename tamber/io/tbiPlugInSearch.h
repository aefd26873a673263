#pragma once

#include <string>
#include <string_view>
#include <vector>

// The directories that plug-ins are looked for in, each listed once in the life of this object.
class tbiPlugInSearch
{
public:
    /// The directories that the search policy allows, in order: those of TAMBER_PLUGIN_PATH, then the executable's,
    /// the current one, the installed one, the kernel's own, those of PATH.
    tbiPlugInSearch();

    const std::vector<std::string>& getDirectories() const { return directories; }
    /// The path of the first file of that module name; empty when there is none.
    std::string find(std::string_view moduleName);
    /// The paths of every loader, directory by directory.
    std::vector<std::string> findLoaders();

private:
    void addDirectory(const std::string& directory);
    void addList(const char* variable);
    const std::vector<std::string>& list(std::size_t directory);
    std::string accept(std::size_t directory, const std::string& fileName) const;

    std::vector<std::string> directories;
    std::vector<std::vector<std::string>> files;
    std::vector<bool> listed;
};
