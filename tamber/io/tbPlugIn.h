#pragma once

#include <tamber/containers/tbList.h>
#include <tamber/kernel/tbMemory.h>
#include <tamber/kernel/tbVersion.h>

#include <atomic>
#include <string>

class tbiPlugInSearch;
struct tbPlugInReport;

// The record of one plug-in module, a dynamic library that supplies classes, drawing, audio or foreign file formats.
// No entry point is looked up: loading the module runs its static initialisers, which construct its record, name it
// and register its classes with it. The record counts the live objects of those classes, so that the module is
// unloaded only when nothing of it is in use. Its destructor, which runs as the module goes, takes its classes along.
//
// Records, counts and loading are safe from any thread.
class TB_API tbPlugIn : public tbMemory
{
public:
    // Where modules are looked for.
    enum SEARCH_POLICY : int
    {
        SEARCH_ALL = 0, // also in the current directory, the system's and the directories of PATH
        SEARCH_APP =
            1, // TAMBER_PLUGIN_PATH, the application's, the installation's and the library's own directories
        SEARCH_NONE = 2 // nowhere: modules are loaded by path only
    };

    /// The record of the module of that file name; null for one that stands for no module.
    explicit tbPlugIn(const char* moduleFile);
    tbPlugIn(const tbPlugIn&) = delete;
    tbPlugIn& operator=(const tbPlugIn&) = delete;
    /// Deletes its types and drops its registrations. Classes with live objects end with their last object.
    ~tbPlugIn() override;

    /// Only the record of a module that may be unloaded counts.
    virtual void ref();
    virtual void unRef();
    virtual void setCompany(const char* text);
    virtual void setName(const char* text);
    virtual void setRelease(int majorNumber, int minorNumber, int buildNumber, const char* date);
    /// Whether files that are written name this plug-in as needed, as they do at first.
    virtual void enableSaveWithFile(bool save);
    /// Frees the module when the kernel loaded it, it may be unloaded and nothing refers to it; the record is gone
    /// then. False when it stays.
    virtual bool unload();

    const char* getName() const { return name; }
    const char* getCompany() const { return company; }
    const char* getBuildDate() const { return buildDate; }
    /// The file name in upper case, without directory and "-dbg", ending in ".DLL" on every platform.
    const char* getModuleName() const { return moduleName; }
    HINSTANCE getModule() const { return module; }
    int getMajorVersion() const { return major; }
    int getMinorVersion() const { return minor; }
    int getBuild() const { return build; }
    unsigned int getVersion() const
    {
        return tbMakeVersion(unsigned(major), unsigned(minor), unsigned(build));
    }
    int getRefCount() const { return refCount.load(std::memory_order_relaxed); }
    bool isSaveWithFileEnabled() const { return saveWithFile; }
    bool isDynamic() const { return dynamic; }
    int getNumTypes() const { return types.getNum(); }
    tbType* getType(int i) const { return types[i]; }

    /// Loads a module and returns its record, the one that stands when the module is known already. A path is taken
    /// as it is, whatever the search policy. A bare name is looked for in the plug-in directories and then, under
    /// SEARCH_ALL, left to the system. Null when there is none, when the list of setAllowList() does not let it in,
    /// and for a module that is in the process without a record.
    static tbPlugIn* load(const char* path);
    /// Unloads every module that nothing refers to.
    static void unloadAll();
    /// By module name, case ignored.
    static tbPlugIn* find(const char* nameOfModule);
    static tbPlugIn* find(HINSTANCE handle);
    static int getNum();
    static tbPlugIn* get(int i);

    /// Whether reading a file loads the plug-ins that it lists, as it does at first.
    static void enableDynamicPlugIns(bool enable);
    static bool isDynamicPlugInsEnabled();
    /// Lists in `file` every plug-in that is to be saved with files.
    static void savePlugIns(tbFile* file);
    /// Loads what `file` lists, from the plug-in directories only.
    static void loadPlugIns(tbFile* file);

    /// The environment's TAMBER_PLUGINS ("all", "app" or "none"; any other word stands for "none") says at first, else
    /// SEARCH_ALL.
    static void setSearchPolicy(SEARCH_POLICY policy);
    static SEARCH_POLICY getSearchPolicy();
    /// Only modules of `list` are loaded from now on, whoever asks and by whatever path: "tbFoo,tbBar=HEX", where HEX
    /// is the SHA-256 that the file must have. An empty list allows none; null returns to the environment's
    /// TAMBER_PLUGIN_ALLOW, and to all when that is empty. False when a part is not understood; it allows nothing.
    static bool setAllowList(const char* list);
    /// Where plug-ins are looked for at this moment, what lies there, and what became of it. Reads every file for its
    /// checksum; when memory runs out, the report ends where it did. Needs <tamber/io/tbPlugInReport.h>.
    static tbPlugInReport report();
    /// From now on records of loaded modules count references and may be unloaded.
    static void makeDynamicFromNowOn();

private:
    friend class tbLoader;
    friend class tbType;

    void addType(tbType* type);
    void removeType(tbType* type);
    void deleteTypes();
    void nameAfter(const char* moduleFile);
    bool unloadModule();
    static tbPlugIn* findNormalised(const std::string& nameOfModule);
    static void loadListed(tbEntry* entry);
    /// `trusted` paths are taken as they are and may be left to the system's search; others must be bare names of
    /// modules in the plug-in directories.
    static tbPlugIn* load(const char* path, tbiPlugInSearch& search, bool trusted);

    tbTList<tbType*> types;
    std::atomic<int> refCount{0};
    HINSTANCE module = nullptr;
    int major = 0;
    int minor = 0;
    int build = 0;
    char* name = nullptr;
    char* buildDate = nullptr;
    char* company = nullptr;
    char* moduleName = nullptr;
    bool dynamic = false;
    bool loadedByKernel = false;
    bool saveWithFile = true;
};
