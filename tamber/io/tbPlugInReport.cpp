#include <tamber/io/tbPlugInReport.h>

#include <tamber/io/tbiPlugInLists.h>
#include <tamber/io/tbiPlugInLog.h>
#include <tamber/io/tbiPlugInRules.h>
#include <tamber/io/tbiPlugInSearch.h>
#include <tamber/kernel/tbiLocks.h>
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
        module.state = tbPlugInReport::LOADED;
        module.reason.clear();
        module.name = record->getName() ? record->getName() : "";
        module.company = record->getCompany() ? record->getCompany() : "";
        module.version = record->getVersion();
    }
    else if (module.state == tbPlugInReport::LOADED)
    {
        module.state = tbPlugInReport::UNLOADED;
    }
    if (module.state == tbPlugInReport::LOADED || module.state == tbPlugInReport::UNLOADED)
        module.extensions = tbiLoaderExtensions(module.moduleName);
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

} // namespace

tbPlugInReport tbPlugIn::report()
{
    tbPlugInReport report;
    {
        tbiLockGuard guard(tbiLocks::plugIn);
        report.policy = getSearchPolicy();
        report.isListed = tbiPlugInRules::haveAllowList();
        tbiPlugInSearch search;
        std::set<std::string> placed;
        for (std::size_t i = 0; i < search.getDirectories().size(); ++i)
        {
            const auto& directory = search.getDirectories()[i];
            auto& reported = report.directories.emplace_back();
            reported.path = directory.path;
            reported.source = directory.source;
            reported.skipped = directory.skipped;
            for (const std::string& path : search.findModules(i))
            {
                const Module* noted = tbiPlugInLog::find(path);
                reported.modules.push_back(describe(noted ? *noted : Module{tbiModuleName(path), path}));
                placed.insert(path);
            }
        }
        for (const Module& noted : tbiPlugInLog::getAll())
            if (!placed.contains(noted.path))
                report.others.push_back(describe(noted));
    }
    markOthersOfOneName(report);
    for (auto& directory : report.directories)
        for (Module& module : directory.modules)
            module.sha256 = tbiPlugInRules::checksumOf(module.path);
    for (Module& module : report.others)
        if (!module.path.empty())
            module.sha256 = tbiPlugInRules::checksumOf(module.path);
    return report;
}
