#pragma once

#include <tamber/kernel/tbTypes.h>

#include <cstdint>

/// What the reader of a foreign format may take. 0 is no limit.
struct tbImportLimits
{
    std::int64_t memory = std::int64_t{1} << 30; // bytes; not counted under a sanitizer
    double processorTime = 30;                   // seconds on a processor
    double time = 120;                           // seconds on the clock
};

/// As tbLoader::importFile(), but nothing that a file does to the reader of its format can reach this process. A
/// native file is read here, by a reader that survives any bytes. Any other is read by a child process within
/// `limits`, which hands the scene over as a native file among the temporary ones; this is removed in every case. The
/// child has the environment, the search paths and the plug-in policies of this process.
///
/// Returns the root with count 0; null with tbLoader's error and message set: those of the loader, or LOADER_STOPPED
/// and in words what became of the child.
///
/// The child's program, tamber-import, is looked for beside the executable, beside this library and where it was
/// installed, and nowhere else; the environment's TAMBER_IMPORT_PROGRAM names another, by an absolute path.
TB_API tbBase* tbImportIsolated(const char* name, const tbImportLimits& limits = {});
