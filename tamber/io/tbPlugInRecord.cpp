// The list of plug-ins that a file needs.
#include <tamber/io/tbPlugIn.h>

#include <tamber/io/tbFile.h>
#include <tamber/io/tbiPlugInLists.h>
#include <tamber/io/tbiPlugInSearch.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/kernel/tbiMemoryWatch.h>
#include <tamber/platform/tbiModuleName.h>
#include <tamber/thread/tbiLockGuard.h>

#include <algorithm>
#include <cstring>

namespace
{

constexpr const char* listTag = "tbPlugIns";

constexpr int MOST_PLUGINS = 256;
constexpr int SMALLEST_RECORD = 7 * 4; // four lengths and three numbers
constexpr int LONGEST_TEXT = 4096;     // of which anything is done; what a text has beyond is passed over

constinit std::atomic<bool> plugInLoadingEnabled{true};

void writeText(tbEntry* entry, const char* text)
{
    entry->writeInt(text ? int(std::strlen(text)) + 1 : 0);
    if (text)
        entry->writeString(text);
}

std::string readText(tbEntry* entry)
{
    const int length = entry->readCount(1);
    char text[LONGEST_TEXT] = {};
    if (length > 0)
        entry->readString(text, std::min(length, LONGEST_TEXT));
    char rest[256];
    for (int left = length - LONGEST_TEXT; left > 0; left -= int(sizeof(rest)))
        entry->readChunk(rest, std::min(left, int(sizeof(rest))));
    return text;
}

} // namespace

void tbPlugIn::enableDynamicPlugIns(bool enable)
{
    plugInLoadingEnabled.store(enable, std::memory_order_relaxed);
}

bool tbPlugIn::isDynamicPlugInsEnabled()
{
    return plugInLoadingEnabled.load(std::memory_order_relaxed);
}

void tbPlugIn::savePlugIns(tbFile* file)
{
    tbEntry* entry = file->findEntry(listTag);
    if (entry)
        entry->setData(nullptr, 0);
    else
        entry = file->newEntry(file->newTag(listTag));
    if (!entry)
        return;
    entry->reset();
    entry->setVersion(tbGetVersion());

    tbiLockGuard guard(tbiLocks::plugIn); // the number and the records belong together
    int number = 0;
    for (int i = 0; i < getNum(); ++i)
        number += get(i)->isSaveWithFileEnabled() ? 1 : 0;
    entry->writeInt(number);
    for (int i = 0; i < getNum(); ++i)
    {
        const tbPlugIn* plugIn = get(i);
        if (!plugIn->isSaveWithFileEnabled())
            continue;
        writeText(entry, plugIn->getCompany());
        writeText(entry, plugIn->getName());
        writeText(entry, plugIn->getBuildDate());
        writeText(entry, plugIn->getModuleName());
        entry->writeInt(plugIn->getMajorVersion());
        entry->writeInt(plugIn->getMinorVersion());
        entry->writeInt(plugIn->getBuild());
    }
}

void tbPlugIn::loadPlugIns(tbFile* file)
{
    tbEntry* entry = file->findEntry(listTag);
    if (!entry || !plugInLoadingEnabled.load(std::memory_order_relaxed) || !file->readEntry(entry))
        return;
    entry->reset();
    tbiWithoutThrow([entry] { loadListed(entry); });
}

void tbPlugIn::loadListed(tbEntry* entry)
{
    tbiPlugInSearch search; // the directories are listed once for the whole file
    load(tbiCompanionModule, search, false);

    const int number = entry->readCount(SMALLEST_RECORD);
    if (number > MOST_PLUGINS)
        entry->fail("more plug-ins than a file may list");
    std::vector<std::string> tried{tbiModuleName(tbiCompanionModule)};
    for (int i = 0; i < number && !entry->hasFailed(); ++i)
    {
        readText(entry);
        readText(entry);
        readText(entry);
        const std::string nameOfModule = tbiModuleName(readText(entry));
        int release[3];
        entry->readInts(release, 3);
        if (entry->hasFailed() || !tbiIsPlugInName(nameOfModule))
            continue;
        if (std::find(tried.begin(), tried.end(), nameOfModule) == tried.end())
        {
            tried.push_back(nameOfModule);
            load(nameOfModule.c_str(), search, false);
        }
    }
}
