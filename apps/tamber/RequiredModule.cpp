#include "RequiredModule.h"

#include "CommandError.h"

#include <tamber/io/tbPlugInReport.h>
#include <tamber/kernel/tbString.h>

namespace
{
std::string placesOf(const tbPlugInReport& report)
{
    std::string text;
    for (const auto& directory : report.directories)
        if (directory.skipped.empty())
            text += (text.empty() ? "" : ", ") + directory.path;
    return text.empty() ? "nowhere, for TAMBER_PLUGINS is set to \"none\"" : text;
}

/// What is wrong with the files of that name that were found; empty when none was.
std::string faultsOf(const tbPlugInReport& report, const char* moduleName)
{
    std::string text;
    for (const auto& directory : report.directories)
        for (const auto& module : directory.modules)
            if (tbStrcmp(module.moduleName.c_str(), moduleName, true) == 0 && !module.reason.empty())
                text += "; " + module.path + " was not taken: " + module.reason;
    return text;
}
} // namespace

void requireModule(const char* moduleName)
{
    if (tbPlugIn::load(moduleName))
        return;
    const tbPlugInReport report = tbPlugIn::report();
    throw CommandError(moduleName, "the module cannot be loaded. It was looked for in: " + placesOf(report) +
                                       faultsOf(report, moduleName));
}
