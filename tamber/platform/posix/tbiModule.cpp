#define _FILE_OFFSET_BITS 64 // NOLINT: inode numbers of 64 bits for 32-bit programs, before any system header

#include <tamber/platform/tbiModule.h>

#include <tamber/kernel/tbiMemoryWatch.h>
#include <tamber/platform/posix/tbiFolderOf.h>
#include <tamber/platform/tbiModuleName.h>
#include <tamber/platform/tbiPath.h>

#include <algorithm>
#include <dlfcn.h>
#include <filesystem>
#include <link.h>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace
{

struct ModuleSearch
{
    std::string_view wanted;
    std::string path;

    bool tryModule(const char* name)
    {
        if (!name || tbiModuleName(name) != wanted)
            return false;
        path = name;
        return true;
    }
};

// Nothing is thrown through the system's loop, which holds a lock.
int compareModule(dl_phdr_info* info, std::size_t, void* context)
{
    auto* search = static_cast<ModuleSearch*>(context);
    return tbiWithoutThrow(false, [=] { return search->tryModule(info->dlpi_name); }) ? 1 : 0;
}

// `protection` is the bit that makes a directory safe although everybody may write to it.
bool othersMayChange(const std::string& path, mode_t protection)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0)
        return true;
    return (status.st_mode & S_IWOTH) != 0 && (status.st_mode & protection) == 0;
}

} // namespace

HINSTANCE tbiFindModule(const std::string& moduleName)
{
    ModuleSearch search{moduleName, {}};
    if (dl_iterate_phdr(&compareModule, &search) == 0)
        return nullptr;
    void* module = dlopen(search.path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (module)
        dlclose(module); // the reference that looking took; the module stays
    return module;
}

HINSTANCE tbiLoadModule(const char* path, std::string& error)
{
    const std::string native = tbiNativePath(path);
    void* module = dlopen(native.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module)
    {
        const char* reason = dlerror();
        error = reason ? reason : "";
        if (error.starts_with(native + ": "))
            error.erase(0, native.size() + 2);
    }
    return module;
}

bool tbiFreeModule(HINSTANCE module)
{
    return dlclose(module) == 0;
}

std::string tbiModulePath(HINSTANCE module)
{
    link_map* map = nullptr;
    if (!module || dlinfo(module, RTLD_DI_LINKMAP, &map) != 0 || !map || !map->l_name)
        return {};
    std::error_code error;
    const fs::path absolute = fs::absolute(map->l_name, error);
    return error ? std::string(map->l_name) : absolute.string();
}

std::string tbiExecutableDirectory()
{
    std::error_code error;
    const fs::path executable = fs::read_symlink("/proc/self/exe", error);
    return error ? std::string() : tbiFolderOf(executable.string());
}

std::string tbiCurrentDirectory()
{
    std::error_code error;
    const fs::path current = fs::current_path(error);
    return error ? std::string() : current.string();
}

std::string tbiLibraryDirectory()
{
    Dl_info info = {};
    if (dladdr(reinterpret_cast<void*>(&tbiLibraryDirectory), &info) == 0 || !info.dli_fname)
        return {};
    std::error_code error;
    const fs::path library = fs::canonical(info.dli_fname, error);
    return error ? std::string() : tbiFolderOf(library.string());
}

std::vector<tbiModuleDirectory> tbiSharedDirectories(bool)
{
    return {{TAMBER_PLUGIN_DIRECTORY, "installed"}, {tbiLibraryDirectory(), "library"}};
}

std::vector<std::string> tbiListFiles(const std::string& directory)
{
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(directory, fs::directory_options::skip_permission_denied, error);
    for (const fs::directory_iterator end; !error && entry != end; entry.increment(error))
    {
        std::error_code ignored;
        if (entry->is_regular_file(ignored))
            names.push_back(entry->path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

const char* tbiModuleEnding()
{
    return ".so";
}

char tbiSeparator()
{
    return '/';
}

char tbiListSeparator()
{
    return ':';
}

bool tbiIsAbsolutePath(const std::string& path)
{
    return !path.empty() && path[0] == '/';
}

// What is said of a directory holds for those above it as well, except that in a sticky one, as the one for temporary
// files is, nobody can rename or remove what others put there.
bool tbiOthersMayWrite(const std::string& path)
{
    std::error_code error;
    const fs::path file = fs::canonical(path, error);
    if (error)
        return true;
    const std::string nearest = tbiFolderOf(file.string());
    if (othersMayChange(file.string(), 0) || othersMayChange(nearest, 0))
        return true;
    for (std::string above = nearest; above != "/";)
    {
        above = tbiFolderOf(above);
        if (othersMayChange(above, S_ISVTX))
            return true;
    }
    return false;
}

std::string tbiPathKey(const std::string& path)
{
    std::error_code error;
    const fs::path canonical = fs::canonical(path, error);
    if (!error)
        return canonical.string();
    std::string key = path;
    while (key.size() > 1 && key.back() == '/')
        key.pop_back();
    return key;
}
