#include <tamber/io/tbiUnknownFormat.h>

#include <tamber/io/tbiLoaderLookup.h>
#include <tamber/io/tbiPlugInLog.h>
#include <tamber/io/tbiPlugInSearch.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/platform/tbiModule.h>
#include <tamber/platform/tbiModuleName.h>
#include <tamber/thread/tbiLockGuard.h>

namespace
{

std::string extensions()
{
    std::string text = tbiGroupExtension;
    for (int i = 0; i < tbLoader::getNumTamberFileTypes(); ++i)
        text += std::string(" ") + tbLoader::getTamberFileType(i);
    for (int i = 0; i < tbLoader::getNumLoaders(); ++i)
        for (int j = 0; j < tbLoader::getNumLoaderExtensions(i); ++j)
            text += std::string(" ") + tbLoader::getLoaderExtension(i, j);
    return text;
}

std::string directories()
{
    std::string text;
    const tbiPlugInSearch search;
    for (const auto& directory : search.getDirectories())
        if (directory.skipped.empty())
            text += (text.empty() ? "" : ", ") + directory.path;
    return text.empty() ? "no directory, for the search is switched off" : text;
}

std::string brokenLoaders()
{
    tbiLockGuard guard(tbiLocks::plugIn);
    std::string text;
    for (const auto& module : tbiPlugInLog::getAll())
    {
        const bool isBroken = module.state == tbPlugInReport::REFUSED ||
                              module.state == tbPlugInReport::FAILED ||
                              module.state == tbPlugInReport::FOREIGN;
        if (isBroken && tbiIsLoaderFile(tbiFilePart(module.path), tbiModuleEnding()))
            text += (text.empty() ? "" : "; ") + module.path + " (" + module.reason + ")";
    }
    return text;
}

} // namespace

std::string tbiUnknownFormat(const std::string& path)
{
    std::string text = "\"" + path +
                       "\" is in no format that is known here. Known extensions: " + extensions() +
                       ". Loaders were looked for in: " + directories();
    if (const std::string broken = brokenLoaders(); !broken.empty())
        text += ". Not loaded, so that their extensions may be missing: " + broken;
    return text;
}
