#include <tamber/io/tbiLoaderDefs.h>

#include <tamber/containers/tbiStatic.h>
#include <tamber/kernel/tbString.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/kernel/tbiText.h>
#include <tamber/thread/tbiLockGuard.h>

#include <algorithm>

namespace
{

constinit tbiStatic<tbTList<tbiLoaderDef*>> definitions;

bool sameName(const char* a, const char* b)
{
    return tbStrcmp(a, b, true) == 0;
}

tbiLoaderDef* find(const char* moduleName)
{
    for (tbiLoaderDef* def : *definitions)
        if (sameName(def->moduleName, moduleName))
            return def;
    return nullptr;
}

} // namespace

int tbiLoaderDefs::getNum()
{
    return definitions->getNum();
}

const tbiLoaderDef* tbiLoaderDefs::get(int i)
{
    return definitions->indexInRange(i) ? (*definitions)[i] : nullptr;
}

tbiLoaderDef* tbiLoaderDefs::of(const char* moduleName)
{
    if (tbiLoaderDef* known = find(moduleName))
        return known;
    auto* def = new tbiLoaderDef;
    if (!def)
        return nullptr;
    def->moduleName = tbiCopyText(moduleName);
    if (def->moduleName && definitions->add(def) >= 0)
        return def;
    tbMemory::free(def->moduleName);
    delete def;
    return nullptr;
}

// The last of a loader's extensions first.
tbiLoaderDef* tbiLoaderDefs::forExtension(const char* extension)
{
    for (tbiLoaderDef* def : *definitions)
        for (int i = def->extensions.getNum() - 1; i >= 0; --i)
            if (sameName(def->extensions[i], extension))
                return def;
    return nullptr;
}

void tbiLoaderDefs::addExtension(tbiLoaderDef::Extensions& extensions, const char* extension)
{
    tbiLockGuard guard(tbiLocks::plugIn);
    const auto isIt = [extension](const char* known) { return sameName(known, extension); };
    if (!extension || std::any_of(extensions.begin(), extensions.end(), isIt))
        return;
    char* copy = tbiCopyText(extension);
    if (copy && extensions.add(copy) < 0)
        tbMemory::free(copy);
}

std::vector<std::string> tbiLoaderDefs::extensionsOf(const std::string& moduleName)
{
    tbiLockGuard guard(tbiLocks::plugIn);
    const tbiLoaderDef* def = find(moduleName.c_str());
    return def ? std::vector<std::string>(def->extensions.begin(), def->extensions.end())
               : std::vector<std::string>();
}

void tbiLoaderDefs::cutTo(int num)
{
    while (definitions->getNum() > num)
    {
        tbiLoaderDef* def = definitions->removeLast();
        for (tbiLoaderDef::Extensions* list : {&def->extensions, &def->exportExtensions})
            for (char* extension : *list)
                tbMemory::free(extension);
        tbMemory::free(def->moduleName);
        tbMemory::free(def->path);
        delete def;
    }
}

void tbiLoaderDefs::release()
{
    cutTo(0);
    definitions->setSize(0);
}
