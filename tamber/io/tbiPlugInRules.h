#pragma once

#include <tamber/platform/tbPlatform.h>

#include <optional>
#include <string>

// Which modules may be loaded, whoever asks for them: the list of TAMBER_PLUGIN_ALLOW or tbPlugIn::setAllowList().
namespace tbiPlugInRules
{

bool haveAllowList();
/// The list that setAllowList() set, for a process that is to have the same; none when it set none.
std::optional<std::string> getOwnList();
/// Loads the file, whose content is the one that the list asks for. Null on failure, and `reason` says why; `refused`
/// when it was not allowed to be loaded.
HINSTANCE load(const std::string& moduleName, const std::string& path, std::string& reason, bool& refused);
/// The SHA-256 of a file; empty when it cannot be read.
std::string checksumOf(const std::string& path);
void release();

} // namespace tbiPlugInRules
