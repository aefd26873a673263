#include <tamber/io/tbPlugIn.h>

#include <tamber/containers/tbiStatic.h>
#include <tamber/io/tbiFileTypes.h>
#include <tamber/io/tbiLoaderDefs.h>
#include <tamber/io/tbiPlugInLists.h>
#include <tamber/io/tbiPlugInLog.h>
#include <tamber/io/tbiPlugInRules.h>
#include <tamber/io/tbiPlugInSearch.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/kernel/tbType.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/kernel/tbiMemoryWatch.h>
#include <tamber/kernel/tbiText.h>
#include <tamber/platform/tbiModule.h>
#include <tamber/platform/tbiModuleName.h>
#include <tamber/thread/tbiLockGuard.h>

namespace
{

constinit tbiStatic<tbTList<tbPlugIn*>> plugIns; // every record, in the order of construction

constexpr int LIST_CAPACITY = 8;

constinit std::atomic<bool> dynamicFromNowOn{false};

constexpr const char* NOWHERE = "it is in none of the plug-in directories";

// Loading and unloading run module code that registers or deletes types, so the type lock comes first.
struct LoadLocks
{
    tbiLockGuard type{tbiLocks::type};
    tbiLockGuard plugIn{tbiLocks::plugIn};
};

bool isBareName(const char* path)
{
    return std::string_view(path).find_first_of("/\\") == std::string_view::npos;
}

// The file to load; empty when there is none.
std::string fileFor(const char* path, tbiPlugInSearch& search, bool trusted)
{
    if (trusted && !isBareName(path))
        return path;
    const std::string nameOfModule = tbiModuleName(path);
    std::string file = search.find(nameOfModule);
    const bool systemMayLook = trusted && tbPlugIn::getSearchPolicy() == tbPlugIn::SEARCH_ALL;
    return file.empty() && systemMayLook && !search.hasRefused(nameOfModule) ? path : file;
}

// A module whose start ran out of memory goes again with all that it registered: a part of it may be missing.
HINSTANCE loadWhole(tbPlugInReport::Module& noted, bool& refused)
{
    const tbiMemoryWatch memory;
    const int numLoaders = tbiLoaderDefs::getNum();
    const HINSTANCE handle = tbiPlugInRules::load(noted.moduleName, noted.path, noted.reason, refused);
    if (handle && !tbiIsAbsolutePath(noted.path))
        tbiWithoutThrow([&noted, handle] { noted.path = tbiModulePath(handle); });
    if (!handle || !memory.ranOut())
        return handle;
    tbiFreeModule(handle);
    tbiLoaderDefs::cutTo(numLoaders);
    noted.reason = "memory is out";
    return nullptr;
}

// Loads a module's file, which makes its record. Null when it is not let in or makes none; what is noted says why.
HINSTANCE loadFile(tbPlugInReport::Module& noted)
{
    bool refused = false;
    HINSTANCE handle = loadWhole(noted, refused);
    if (refused)
        noted.state = tbPlugInReport::REFUSED;
    if (handle && !tbPlugIn::find(noted.moduleName.c_str()))
    {
        tbiFreeModule(handle);
        handle = nullptr;
        noted.state = tbPlugInReport::FOREIGN;
        noted.reason = "it made no record of its name";
    }
    if (!handle && noted.state == tbPlugInReport::FAILED && isBareName(noted.path.c_str()))
    {
        noted.path.clear(); // the system did not find it either
        noted.reason = NOWHERE;
    }
    return handle;
}

} // namespace

tbPlugIn::tbPlugIn(const char* moduleFile)
{
    if (moduleFile)
        tbiWithoutThrow([=, this] { nameAfter(moduleFile); });
    tbiLockGuard guard(tbiLocks::plugIn);
    plugIns->add(this);
}

void tbPlugIn::nameAfter(const char* moduleFile)
{
    const std::string normalised = tbiModuleName(moduleFile);
    tbiSetText(moduleName, normalised.c_str());
    tbMessage("Loading plug-in:   %s\n", normalised.c_str());
    module = tbiFindModule(normalised);
    dynamic = module && dynamicFromNowOn.load(std::memory_order_relaxed);
}

tbPlugIn::~tbPlugIn()
{
    LoadLocks locks;
    plugIns->checkRemoveOrdered(this);
    tbType::unregisterClasses(this);
    deleteTypes();
    tbMemory::free(name);
    tbMemory::free(buildDate);
    tbMemory::free(company);
    tbMemory::free(moduleName);
}

// Derived classes came after their parents. A class with live objects goes with the last of them.
void tbPlugIn::deleteTypes()
{
    while (types.getNum() > 0)
    {
        tbType* type = types.removeLast();
        tbiFileTypes::forget(type);
        type->plugIn = nullptr;
        type->deleteType();
    }
}

void tbPlugIn::addType(tbType* type)
{
    tbiLockGuard guard(tbiLocks::plugIn);
    types.add(type);
}

void tbPlugIn::removeType(tbType* type)
{
    tbiLockGuard guard(tbiLocks::plugIn);
    types.checkRemoveOrdered(type);
    tbiFileTypes::forget(type);
}

// The count is one atomic word. Whoever may be the first to count holds the type lock, as unloading does.
void tbPlugIn::ref()
{
    if (dynamic)
        refCount.fetch_add(1, std::memory_order_relaxed);
}

void tbPlugIn::unRef()
{
    if (dynamic)
        refCount.fetch_sub(1, std::memory_order_release);
}

void tbPlugIn::setCompany(const char* text)
{
    tbiSetText(company, text);
}

void tbPlugIn::setName(const char* text)
{
    tbiSetText(name, text);
}

void tbPlugIn::setRelease(int majorNumber, int minorNumber, int buildNumber, const char* date)
{
    major = majorNumber;
    minor = minorNumber;
    build = buildNumber;
    tbiSetText(buildDate, date);
}

void tbPlugIn::enableSaveWithFile(bool save)
{
    saveWithFile = save;
}

bool tbPlugIn::unload()
{
    LoadLocks locks;
    if (!dynamic || !loadedByKernel || !module || refCount.load(std::memory_order_acquire) >= 1)
        return false;
    return tbiWithoutThrow(false, [this] { return unloadModule(); });
}

bool tbPlugIn::unloadModule()
{
    const std::string nameOfModule = moduleName ? moduleName : "";
    if (!tbiFreeModule(module))
        return false;
    if (tbiFindModule(nameOfModule))
    {
        loadedByKernel = false; // somebody else keeps the module; the kernel's share is given back
        return true;
    }
    // The record went with its module. One that the module left behind is not asked anything any more.
    plugIns->checkRemoveOrdered(this);
    tbiForgetLoader(this);
    return true;
}

tbPlugIn* tbPlugIn::load(const char* path)
{
    if (!path || *path == 0)
        return nullptr;
    return tbiWithoutThrow<tbPlugIn*>(nullptr,
                                      [path]
                                      {
                                          if (!isBareName(path))
                                              tbiPlugInLog::noteAskedFor(path);
                                          tbiPlugInSearch search;
                                          return load(path, search, true);
                                      });
}

tbPlugIn* tbPlugIn::load(const char* path, tbiPlugInSearch& search, bool trusted)
{
    LoadLocks locks;
    const std::string nameOfModule = tbiModuleName(path);
    if (tbPlugIn* known = find(nameOfModule.c_str()))
        return known;
    tbMessage("Attempting to load plug-in: %s \n", nameOfModule.c_str());
    if (tbiFindModule(nameOfModule))
        return nullptr;

    tbPlugInReport::Module noted = {nameOfModule, fileFor(path, search, trusted), tbPlugInReport::FAILED,
                                    NOWHERE};
    const HINSTANCE handle = noted.path.empty() ? nullptr : loadFile(noted);
    tbPlugIn* record = handle ? findNormalised(nameOfModule) : nullptr;
    if (record)
    {
        record->module = handle;
        record->dynamic = true;
        record->loadedByKernel = true;
        tbiWithoutThrow([&noted, record] { tbiPlugInLog::takeRecord(noted, *record); });
    }
    else
    {
        tbMessage("Error loading plug-in: %s \n", nameOfModule.c_str());
        if (!noted.path.empty() || noted.state == tbPlugInReport::REFUSED)
            tbMessage("%s: %s\n", noted.path.c_str(), noted.reason.c_str());
    }
    if (!noted.path.empty() || !search.hasRefused(nameOfModule))
        tbiWithoutThrow([&noted] { tbiPlugInLog::note(noted); }); // a gap in a report is no failure
    return record;
}

void tbPlugIn::unloadAll()
{
    LoadLocks locks;
    // What goes may free others of their last reference.
    for (int i = 0; i < plugIns->getNum();)
        i = (*plugIns)[i]->unload() ? 0 : i + 1;
}

tbPlugIn* tbPlugIn::find(const char* nameOfModule)
{
    if (!nameOfModule)
        return nullptr;
    return tbiWithoutThrow<tbPlugIn*>(nullptr,
                                      [nameOfModule] { return findNormalised(tbiModuleName(nameOfModule)); });
}

tbPlugIn* tbPlugIn::findNormalised(const std::string& nameOfModule)
{
    tbiLockGuard guard(tbiLocks::plugIn);
    for (tbPlugIn* plugIn : *plugIns)
        if (plugIn->moduleName && nameOfModule == plugIn->moduleName)
            return plugIn;
    return nullptr;
}

tbPlugIn* tbPlugIn::find(HINSTANCE handle)
{
    tbiLockGuard guard(tbiLocks::plugIn);
    for (tbPlugIn* plugIn : *plugIns)
        if (plugIn->module == handle)
            return plugIn;
    return nullptr;
}

int tbPlugIn::getNum()
{
    tbiLockGuard guard(tbiLocks::plugIn);
    return plugIns->getNum();
}

tbPlugIn* tbPlugIn::get(int i)
{
    tbiLockGuard guard(tbiLocks::plugIn);
    return plugIns->indexInRange(i) ? (*plugIns)[i] : nullptr;
}

void tbPlugIn::makeDynamicFromNowOn()
{
    dynamicFromNowOn.store(true, std::memory_order_relaxed);
}

void tbiReservePlugInLists()
{
    plugIns->setSize(LIST_CAPACITY);
}

void tbiReleasePlugInLists()
{
    plugIns->setSize(0);
    tbiReleaseLoaderLists();
    tbiPlugInLog::release();
    tbiPlugInRules::release();
}
