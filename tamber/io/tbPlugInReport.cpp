#include <tamber/io/tbPlugInReport.h>

#include <tamber/io/tbiLoaderDefs.h>
#include <tamber/io/tbiPlugInLog.h>
#include <tamber/io/tbiPlugInRules.h>
#include <tamber/io/tbiPlugInSearch.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/kernel/tbiMemoryWatch.h>
#include <tamber/platform/tbiModule.h>
#include <tamber/platform/tbiModuleName.h>
#include <tamber/thread/tbiLockGuard.h>

#include <set>

namespace
{

using Module = tbPlugInReport::Module;

// The record of the module that was loaded from a path; null when it is not in the process.
const tbPlugIn* recordOf(const Module& module)
{
    const tbPlugIn* record = tbPlugIn::find(module.moduleName.c_str());
    const bool isInProcess = record && record->getModule();
    return isInProcess && tbiPathKey(tbiModulePath(record->getModule())) == tbiPathKey(module.path) ? record
                                                                                                    : nullptr;
}

// What is known of a module at this moment.
Module describe(Module module)
{
    if (const tbPlugIn* record = recordOf(module))
    {
        tbiPlugInLog::takeRecord(module, *record);
    }
    else if (module.state == tbPlugInReport::LOADED)
    {
        module.state = tbPlugInReport::UNLOADED;
    }
    if (module.state == tbPlugInReport::LOADED || module.state == tbPlugInReport::UNLOADED)
        module.extensions = tbiLoaderDefs::extensionsOf(module.moduleName);
    return module;
}

// Modules that nobody tried, because another of their name came first, say so.
void markOthersOfOneName(tbPlugInReport& report)
{
    std::set<std::string> taken;
    for (auto& directory : report.directories)
    {
        for (Module& module : directory.modules)
        {
            const bool isTaken = !taken.insert(module.moduleName).second;
            if (module.state == tbPlugInReport::FOUND && isTaken)
                module.reason = "another of its name comes before it";
            if (module.state == tbPlugInReport::REFUSED)
                taken.erase(module.moduleName);
        }
    }
}

void addDirectories(tbPlugInReport& report, std::set<std::string>& placed)
{
    tbiPlugInSearch search;
    for (std::size_t i = 0; i < search.getDirectories().size(); ++i)
    {
        const tbiPlugInSearch::Directory& searched = search.getDirectories()[i];
        report.directories.push_back({searched.path, searched.source, searched.skipped, {}});
        for (const std::string& path : search.findModules(i))
        {
            const Module* noted = tbiPlugInLog::find(path);
            report.directories.back().modules.push_back(
                describe(noted ? *noted : Module{tbiModuleName(path), path}));
            placed.insert(path);
        }
    }
}

void addChecksums(std::vector<Module>& modules)
{
    for (Module& module : modules)
        if (!module.path.empty())
            module.sha256 = tbiPlugInRules::checksumOf(module.path);
}

void fill(tbPlugInReport& report)
{
    {
        tbiLockGuard guard(tbiLocks::plugIn); // files are read without it
        report.policy = tbPlugIn::getSearchPolicy();
        report.isListed = tbiPlugInRules::haveAllowList();
        std::set<std::string> placed;
        addDirectories(report, placed);
        for (const Module& noted : tbiPlugInLog::getAll())
            if (!placed.contains(noted.path))
                report.others.push_back(describe(noted));
    }
    markOthersOfOneName(report);
    for (auto& directory : report.directories)
        addChecksums(directory.modules);
    addChecksums(report.others);
}

} // namespace

tbPlugInReport tbPlugIn::report()
{
    tbPlugInReport report;
    tbiWithoutThrow([&report] { fill(report); });
    return report;
}
