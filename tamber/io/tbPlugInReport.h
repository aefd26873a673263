#pragma once

#include <tamber/io/tbPlugIn.h>

#include <string>
#include <vector>

// What the search for plug-ins has met: which directories it looks in, which modules lie there, and what became of
// each. Made by tbPlugIn::report().
struct tbPlugInReport
{
    enum STATE : int
    {
        FOUND = 0,    // lies there; nobody asked for it, or `reason` says what stands before it
        LOADED = 1,   // in the process
        UNLOADED = 2, // was loaded, is known, and comes back when it is needed
        REFUSED = 3,  // not allowed to be loaded
        FAILED = 4,   // could not be loaded, or could not be found
        FOREIGN = 5   // a library that is no plug-in
    };

    struct Module
    {
        std::string moduleName{}; // as tbPlugIn::getModuleName()
        std::string path{};       // empty when none was found
        STATE state = FOUND;
        std::string reason{}; // why it is refused, failed or passed over
        // Of modules that have been loaded:
        std::string name{};
        std::string company{};
        unsigned int version = 0; // as tbPlugIn::getVersion()
        std::vector<std::string> extensions{};
        std::string sha256{}; // of the file as it is now, in hexadecimal digits; empty when it cannot be read
    };

    struct Directory
    {
        std::string path;
        std::string
            source{}; // "TAMBER_PLUGIN_PATH", "program", "current", "installed", "library", "system" or "PATH"
        std::string skipped{}; // why it is not searched; empty when it is
        std::vector<Module> modules{};
    };

    tbPlugIn::SEARCH_POLICY policy = tbPlugIn::SEARCH_ALL;
    bool isListed = false;              // there is a list of the plug-ins that may be loaded
    std::vector<Directory> directories; // in the order of the search
    std::vector<Module> others;         // asked for, and in none of the directories

    /// "found", "loaded", "unloaded", "refused", "failed" or "foreign".
    static const char* getStateName(STATE state)
    {
        constexpr const char* NAMES[] = {"found", "loaded", "unloaded", "refused", "failed", "foreign"};
        return NAMES[state];
    }
};
