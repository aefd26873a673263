#pragma once

#include <string>
#include <string_view>
#include <vector>

// The directories that plug-ins are looked for in, each listed once in the life of this object.
class tbiPlugInSearch
{
public:
    struct Directory
    {
        std::string path;
        const char* source;  // what named it
        std::string skipped; // why it is not searched; empty when it is
        std::vector<std::string> files{};
        bool isListed = false;

        /// True for the current directory and those of PATH, which are nobody's in particular.
        bool isAnybodys() const;
    };

    /// The directories that the search policy allows, in order: those of TAMBER_PLUGIN_PATH, then the executable's,
    /// the current one, the shared ones, those of PATH.
    tbiPlugInSearch();

    const std::vector<Directory>& getDirectories() const { return directories; }
    /// The path of the first file of that module name that may be taken; empty when there is none. The current
    /// directory comes after the shared ones here, so that what is planted in it hides none of their modules.
    std::string find(std::string_view moduleName);
    /// The paths of every loader that may be taken, directory by directory.
    std::vector<std::string> findLoaders();
    /// The paths of every module, also of those that may not be taken.
    std::vector<std::string> findModules(std::size_t directory);
    /// True when `path` lies in a directory of the search and may be taken.
    bool allows(const std::string& path);
    /// True when a file of that module name was met that may not be taken.
    bool hasRefused(std::string_view moduleName) const;

private:
    void addDirectory(std::string path, const char* source);
    void addList(const char* variable);
    const std::vector<std::string>& list(Directory& directory);
    std::string findIn(Directory& directory, std::string_view moduleName);
    bool accept(const std::string& path);

    std::vector<Directory> directories;
    std::vector<std::string> keys;    // of the directories that are searched
    std::vector<std::string> refused; // module names
};
