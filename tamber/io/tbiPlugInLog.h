#pragma once

#include <tamber/io/tbPlugInReport.h>

// What became of the modules that were asked for. The plug-in lock guards it; it counts a bounded number of modules.
namespace tbiPlugInLog
{

/// Says of a module what its record says: it is loaded.
void takeRecord(tbPlugInReport::Module& module, const tbPlugIn& record);
/// Takes the place of what was noted of the same module name and path.
void note(const tbPlugInReport::Module& module);
/// What was noted of a path; null when nothing was.
const tbPlugInReport::Module* find(const std::string& path);
/// Why the last try of a module failed; empty when it did not.
std::string getReason(const std::string& moduleName);
const std::vector<tbPlugInReport::Module>& getAll();
/// The application has named this path itself.
void noteAskedFor(const std::string& path);
bool isAskedFor(const std::string& path);
void release();

} // namespace tbiPlugInLog
