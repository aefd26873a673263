#include <tamber/io/tbiPlugInSearch.h>

#include <tamber/io/tbPlugIn.h>
#include <tamber/io/tbiPlugInLog.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/platform/tbiModule.h>
#include <tamber/platform/tbiModuleName.h>

#include <algorithm>
#include <cstdlib>

namespace
{

constexpr std::size_t LONGEST_DIRECTORY = 255;

constexpr const char* CURRENT = "current";
constexpr const char* PATH = "PATH";

std::string pathOf(const std::string& directory, const std::string& fileName)
{
    const bool hasEnd = directory.ends_with('/') || directory.ends_with('\\');
    return directory + (hasEnd ? "" : std::string(1, tbiSeparator())) + fileName;
}

} // namespace

bool tbiPlugInSearch::Directory::isAnybodys() const
{
    return source == CURRENT || source == PATH; // constants of this file
}

tbiPlugInSearch::tbiPlugInSearch()
{
    const tbPlugIn::SEARCH_POLICY policy = tbPlugIn::getSearchPolicy();
    if (policy == tbPlugIn::SEARCH_NONE)
        return;
    addList("TAMBER_PLUGIN_PATH");
    addDirectory(tbiExecutableDirectory(), "program");
    if (policy == tbPlugIn::SEARCH_ALL)
        addDirectory(tbiCurrentDirectory(), CURRENT);
    for (const auto& [path, source] : tbiSharedDirectories(policy == tbPlugIn::SEARCH_ALL))
        addDirectory(path, source);
    if (policy == tbPlugIn::SEARCH_ALL)
        addList(PATH);
}

// Only absolute directories: an empty or relative one means another place in every working directory.
void tbiPlugInSearch::addDirectory(std::string path, const char* source)
{
    std::string skipped;
    if (path.size() > LONGEST_DIRECTORY)
        skipped = "its name is too long";
    else if (!tbiIsAbsolutePath(path))
        skipped = "it is not absolute";
    if (skipped.empty())
    {
        std::string key = tbiPathKey(path);
        if (std::find(keys.begin(), keys.end(), key) != keys.end())
            skipped = "it is listed before";
        else
            keys.push_back(std::move(key));
    }
    directories.push_back({std::move(path), source, std::move(skipped)});
}

void tbiPlugInSearch::addList(const char* variable)
{
    const char* value = std::getenv(variable);
    std::string_view rest = value ? value : "";
    while (!rest.empty())
    {
        const std::size_t end = std::min(rest.find(tbiListSeparator()), rest.size());
        addDirectory(std::string(rest.substr(0, end)), variable);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

const std::vector<std::string>& tbiPlugInSearch::list(Directory& directory)
{
    if (!directory.isListed && directory.skipped.empty())
        directory.files = tbiListFiles(directory.path);
    directory.isListed = true;
    return directory.files;
}

// Loading a module runs its code, so nothing is loaded that anybody on the machine can have put there.
bool tbiPlugInSearch::accept(const std::string& path)
{
    if (!tbiOthersMayWrite(path))
        return true;
    const std::string moduleName = tbiModuleName(path);
    tbMessage("Plug-in passed over, everybody may change it: %s\n", path.c_str());
    tbiPlugInLog::note(
        {moduleName, path, tbPlugInReport::REFUSED, "everybody may change it or a directory above it"});
    refused.push_back(moduleName);
    return false;
}

bool tbiPlugInSearch::hasRefused(std::string_view moduleName) const
{
    return std::find(refused.begin(), refused.end(), moduleName) != refused.end();
}

std::string tbiPlugInSearch::find(std::string_view moduleName)
{
    for (const bool anybodys : {false, true})
        for (Directory& directory : directories)
            if (directory.isAnybodys() == anybodys)
                if (std::string path = findIn(directory, moduleName); !path.empty())
                    return path;
    return {};
}

std::string tbiPlugInSearch::findIn(Directory& directory, std::string_view moduleName)
{
    for (const std::string& name : list(directory))
    {
        if (!tbiHasEnding(name, tbiModuleEnding()) || tbiModuleName(name) != moduleName)
            continue;
        if (std::string path = pathOf(directory.path, name); accept(path))
            return path;
    }
    return {};
}

std::vector<std::string> tbiPlugInSearch::findLoaders()
{
    std::vector<std::string> paths;
    for (Directory& directory : directories)
        for (const std::string& name : list(directory))
            if (tbiIsLoaderFile(name, tbiModuleEnding()))
                if (std::string path = pathOf(directory.path, name); accept(path))
                    paths.push_back(std::move(path));
    return paths;
}

std::vector<std::string> tbiPlugInSearch::findModules(std::size_t directory)
{
    std::vector<std::string> paths;
    for (const std::string& name : list(directories[directory]))
        if (tbiHasEnding(name, tbiModuleEnding()) && tbiIsPlugInName(tbiModuleName(name)))
            paths.push_back(pathOf(directories[directory].path, name));
    return paths;
}

bool tbiPlugInSearch::allows(const std::string& path)
{
    const std::string key = tbiPathKey(path.substr(0, path.find_last_of("/\\") + 1));
    return !key.empty() && std::find(keys.begin(), keys.end(), key) != keys.end() && accept(path);
}
