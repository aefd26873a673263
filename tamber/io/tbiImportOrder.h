#pragma once

#include <tamber/platform/tbPlatform.h>

// What tbImportIsolated() and its child process agree on.
//
// The child's arguments are, in this order: the directory for what it hands over, the loader's module, the search
// policy, the list of plug-ins that may be loaded (behind a mark; nothing when the environment's holds), 1 or 0 for
// whether files may load plug-ins, the same for whether models may open files anywhere, the file to import, and the
// search paths. It leaves in the directory the scene, the messages of the import, and its report: the loader's error
// as a number on the first line and in words behind.

namespace tbiImportOrder
{

inline constexpr const char* SCENE_FILE = "scene.tb";
inline constexpr const char* MESSAGES_FILE = "messages";
inline constexpr const char* REPORT_FILE = "report";

inline constexpr char LIST_MARK = '=';

enum ARGUMENT : int
{
    DIRECTORY = 1,
    MODULE,
    POLICY,
    LIST,
    TRUST,
    ANYWHERE,
    FILE_NAME,
    FIRST_PATH
};

enum EXIT_CODE : int
{
    DONE = 0,
    CHILD_REFUSED = 20, // the report says why
    MEMORY_IS_OUT = 21  // the limit, or what the system has
};

/// What the child calls first: it ends with its parent, and no fault of it shows a window.
TB_API void beginChild() noexcept;

} // namespace tbiImportOrder
