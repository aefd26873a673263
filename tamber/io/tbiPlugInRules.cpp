#include <tamber/io/tbiPlugInRules.h>

#include <tamber/containers/tbiStatic.h>
#include <tamber/io/tbPlugIn.h>
#include <tamber/io/tbiPlugInAllowList.h>
#include <tamber/io/tbiSha256.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/kernel/tbiMemoryWatch.h>
#include <tamber/kernel/tbiText.h>
#include <tamber/platform/tbiModule.h>
#include <tamber/platform/tbiModuleFile.h>
#include <tamber/platform/tbiModuleName.h>
#include <tamber/thread/tbiLockGuard.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <vector>

namespace
{

constexpr const char* POLICY_VARIABLE = "TAMBER_PLUGINS";
constexpr const char* LIST_VARIABLE = "TAMBER_PLUGIN_ALLOW";

constexpr std::size_t PIECE = 64 * 1024; // of a file, in bytes

constexpr int POLICY_UNKNOWN = -1;
constinit std::atomic<int> searchPolicy{POLICY_UNKNOWN};

// What setAllowList() set, all guarded by the plug-in lock.
constinit tbiStatic<tbiPlugInAllowList> ownList;
constinit char* ownListText = nullptr;
constinit bool haveOwnList = false;

constinit std::atomic<bool> saidPolicy{false};
constinit std::atomic<bool> saidList{false};

// A variable that is empty counts as one that is not there.
const char* environment(const char* variable)
{
    const char* value = std::getenv(variable);
    return value && *value ? value : nullptr;
}

void complainOnce(std::atomic<bool>& said, const char* variable, const char* value, const char* meaning)
{
    if (!said.exchange(true))
        tbMessage("%s is not understood, %s: %s\n", variable, meaning, value);
}

// Whoever sets the variable wants less than the default; a slip of the pen must not give all.
tbPlugIn::SEARCH_POLICY policyFromEnvironment()
{
    const char* value = environment(POLICY_VARIABLE);
    const std::string_view word = value ? value : "all";
    if (word == "all")
        return tbPlugIn::SEARCH_ALL;
    if (word == "app")
        return tbPlugIn::SEARCH_APP;
    if (word != "none")
        complainOnce(saidPolicy, POLICY_VARIABLE, value, "no plug-in is looked for");
    return tbPlugIn::SEARCH_NONE;
}

std::optional<tbiPlugInAllowList> currentList()
{
    tbiLockGuard guard(tbiLocks::plugIn);
    if (haveOwnList)
        return *ownList;
    const char* value = environment(LIST_VARIABLE);
    if (!value)
        return std::nullopt;
    tbiPlugInAllowList list;
    if (!list.parse(value))
        complainOnce(saidList, LIST_VARIABLE, value, "a part of it allows nothing");
    return list;
}

// Empty when the file cannot be read.
std::string checksumOf(const tbiModuleFile& file)
{
    const int descriptor = file.getDescriptor();
    const std::int64_t length = descriptor > 0 ? tbiFileLength(descriptor) : -1;
    if (length < 0)
        return {};
    tbiSha256 sum;
    std::vector<std::byte> piece(PIECE);
    for (std::int64_t at = 0; at < length; at += std::int64_t(piece.size()))
    {
        const std::size_t n = std::size_t(std::min(length - at, std::int64_t(piece.size())));
        if (!tbiReadFile(descriptor, piece.data(), n, at))
            return {};
        sum.add({piece.data(), n});
    }
    return sum.finish();
}

// What is wrong with the content of a file; empty when the list has its checksum.
std::string faultOf(const tbiPlugInAllowList& list, const std::string& moduleName, const tbiModuleFile& file)
{
    const std::string checksum = checksumOf(file);
    if (checksum.empty())
        return "its content is to be checked and cannot be read";
    if (!list.matches(moduleName, checksum))
        return "its SHA-256 is not one that is allowed, but " + checksum;
    return {};
}

HINSTANCE loadChecked(const tbiPlugInAllowList& list, const std::string& moduleName, const std::string& path,
                      std::string& reason, bool& refused)
{
    tbiModuleFile file(path);
    reason = tbiFilePart(path) == path ? "its content is to be checked, and the system would choose its file"
                                       : faultOf(list, moduleName, file);
    refused = !reason.empty();
    if (refused)
        return nullptr;
    const HINSTANCE module = tbiLoadModule(path.c_str(), reason);
    if (!module || file.isUnchanged())
        return module;
    tbiFreeModule(module);
    reason = "its file was exchanged while it was being loaded";
    refused = true;
    return nullptr;
}

} // namespace

void tbPlugIn::setSearchPolicy(SEARCH_POLICY policy)
{
    searchPolicy.store(policy, std::memory_order_relaxed);
}

tbPlugIn::SEARCH_POLICY tbPlugIn::getSearchPolicy()
{
    const int policy = searchPolicy.load(std::memory_order_relaxed);
    return policy == POLICY_UNKNOWN ? policyFromEnvironment() : SEARCH_POLICY(policy);
}

bool tbPlugIn::setAllowList(const char* list)
{
    tbiLockGuard guard(tbiLocks::plugIn);
    *ownList = {}; // whatever fails from here on, nothing is allowed that is not in `list`
    tbiSetText(ownListText, list);
    haveOwnList = list != nullptr;
    return !list || tbiWithoutThrow(false, [list] { return ownList->parse(list); });
}

bool tbiPlugInRules::haveAllowList()
{
    return currentList().has_value();
}

std::optional<std::string> tbiPlugInRules::getOwnList()
{
    tbiLockGuard guard(tbiLocks::plugIn);
    return haveOwnList ? std::optional<std::string>(ownListText ? ownListText : "") : std::nullopt;
}

HINSTANCE tbiPlugInRules::load(const std::string& moduleName, const std::string& path, std::string& reason,
                               bool& refused)
{
    const std::optional<tbiPlugInAllowList> list = currentList();
    switch (list ? list->ask(moduleName) : tbiPlugInAllowList::Answer::YES)
    {
    case tbiPlugInAllowList::Answer::YES:
        refused = false;
        return tbiLoadModule(path.c_str(), reason);
    case tbiPlugInAllowList::Answer::IF_IT_MATCHES:
        return loadChecked(*list, moduleName, path, reason, refused);
    case tbiPlugInAllowList::Answer::NO:
        break;
    }
    reason = "it is not in the list of plug-ins that may be loaded";
    refused = true;
    return nullptr;
}

std::string tbiPlugInRules::checksumOf(const std::string& path)
{
    return ::checksumOf(tbiModuleFile(path));
}

void tbiPlugInRules::release()
{
    *ownList = {};
    tbiSetText(ownListText, nullptr);
    haveOwnList = false;
}
