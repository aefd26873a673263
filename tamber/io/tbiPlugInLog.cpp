#include <tamber/io/tbiPlugInLog.h>

#include <tamber/containers/tbiStatic.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/platform/tbiModule.h>
#include <tamber/thread/tbiLockGuard.h>

#include <algorithm>

namespace
{

using Module = tbPlugInReport::Module;

// Files can ask for any number of modules that do not exist.
constexpr std::size_t MOST_MODULES = 1024;

constinit tbiStatic<std::vector<Module>> modules;
constinit tbiStatic<std::vector<std::string>> askedFor; // by tbiPathKey()

} // namespace

void tbiPlugInLog::takeRecord(Module& module, const tbPlugIn& record)
{
    module.state = tbPlugInReport::LOADED;
    module.reason.clear();
    module.name = record.getName() ? record.getName() : "";
    module.company = record.getCompany() ? record.getCompany() : "";
    module.version = record.getVersion();
}

void tbiPlugInLog::note(const Module& module)
{
    tbiLockGuard guard(tbiLocks::plugIn);
    const auto known =
        std::find_if(modules->begin(), modules->end(),
                     [&](const Module& other)
                     { return other.moduleName == module.moduleName && other.path == module.path; });
    if (known != modules->end())
        modules->erase(known);
    if (modules->size() < MOST_MODULES)
        modules->push_back(module); // the latest is the last
}

const Module* tbiPlugInLog::find(const std::string& path)
{
    const auto known = std::find_if(modules->begin(), modules->end(),
                                    [&](const Module& module) { return module.path == path; });
    return known == modules->end() ? nullptr : &*known;
}

std::string tbiPlugInLog::getReason(const std::string& moduleName)
{
    tbiLockGuard guard(tbiLocks::plugIn);
    const auto last = std::find_if(modules->rbegin(), modules->rend(),
                                   [&](const Module& module) { return module.moduleName == moduleName; });
    return last == modules->rend() ? std::string() : last->reason;
}

const std::vector<Module>& tbiPlugInLog::getAll()
{
    return *modules;
}

void tbiPlugInLog::noteAskedFor(const std::string& path)
{
    tbiLockGuard guard(tbiLocks::plugIn);
    if (!isAskedFor(path))
        askedFor->push_back(tbiPathKey(path));
}

bool tbiPlugInLog::isAskedFor(const std::string& path)
{
    tbiLockGuard guard(tbiLocks::plugIn);
    return std::find(askedFor->begin(), askedFor->end(), tbiPathKey(path)) != askedFor->end();
}

void tbiPlugInLog::release()
{
    std::vector<std::string>().swap(*askedFor);
    std::vector<Module>().swap(*modules);
}
