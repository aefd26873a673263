#include <tamber/io/tbiPlugInSearch.h>

#include <tamber/io/tbPlugIn.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/platform/tbiModule.h>
#include <tamber/platform/tbiModuleName.h>

#include <algorithm>
#include <cstdlib>

namespace
{

constexpr std::size_t LONGEST_DIRECTORY = 255;

} // namespace

tbiPlugInSearch::tbiPlugInSearch()
{
    const tbPlugIn::SEARCH_POLICY policy = tbPlugIn::getSearchPolicy();
    if (policy == tbPlugIn::SEARCH_NONE)
        return;
    addList("TAMBER_PLUGIN_PATH");
    addDirectory(tbiExecutableDirectory());
    if (policy == tbPlugIn::SEARCH_ALL)
        addDirectory(tbiCurrentDirectory());
    addDirectory(tbiInstalledDirectory());
    addDirectory(tbiKernelDirectory());
    if (policy == tbPlugIn::SEARCH_ALL)
        addList("PATH");
}

// Only absolute directories: an empty or relative one means another place in every working directory.
void tbiPlugInSearch::addDirectory(const std::string& directory)
{
    if (directory.size() > LONGEST_DIRECTORY || !tbiIsAbsolutePath(directory))
        return;
    if (std::find(directories.begin(), directories.end(), directory) != directories.end())
        return;
    directories.push_back(directory);
    files.emplace_back();
    listed.push_back(false);
}

void tbiPlugInSearch::addList(const char* variable)
{
    const char* value = std::getenv(variable);
    std::string_view rest = value ? value : "";
    while (!rest.empty())
    {
        const std::size_t end = std::min(rest.find(tbiListSeparator()), rest.size());
        addDirectory(std::string(rest.substr(0, end)));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

const std::vector<std::string>& tbiPlugInSearch::list(std::size_t directory)
{
    if (!listed[directory])
    {
        listed[directory] = true;
        files[directory] = tbiListFiles(directories[directory]);
    }
    return files[directory];
}

// Loading a module runs its code, so nothing is loaded that anybody on the machine can have put there.
std::string tbiPlugInSearch::accept(std::size_t directory, const std::string& fileName) const
{
    std::string path = directories[directory] + tbiSeparator() + fileName;
    if (!tbiOthersMayWrite(path))
        return path;
    tbMessage("Plug-in passed over, everybody may change it: %s\n", path.c_str());
    return {};
}

std::string tbiPlugInSearch::find(std::string_view moduleName)
{
    const std::string_view ending = tbiModuleEnding();
    for (std::size_t i = 0; i < directories.size(); ++i)
    {
        for (const std::string& name : list(i))
        {
            if (!tbiHasEnding(name, ending) || tbiModuleName(name) != moduleName)
                continue;
            if (std::string path = accept(i, name); !path.empty())
                return path;
        }
    }
    return {};
}

std::vector<std::string> tbiPlugInSearch::findLoaders()
{
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < directories.size(); ++i)
        for (const std::string& name : list(i))
            if (tbiIsLoaderFile(name, tbiModuleEnding()))
                if (std::string path = accept(i, name); !path.empty())
                    paths.push_back(std::move(path));
    return paths;
}
