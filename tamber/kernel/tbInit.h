#pragma once

#include <tamber/kernel/tbTypes.h>

class tbThread;

/// Starts the kernel: keeps `app`, lets modules be unloaded again, and looks for plug-ins. A repeated call only
/// keeps the new handle. Runs on the application thread.
TB_API void tbInit(HINSTANCE app);

/// Ends the kernel: flushes and releases the application thread, closes the render contexts and releases the
/// kernel's locks. What still lives keeps working, unlocked, on one thread. Plug-ins stay loaded.
TB_API void tbShutdown();

/// The handle that tbInit() was given last, null before.
TB_API HINSTANCE tbGetWindowsAppHandle();
/// Number of texture units: the setting "NumTextureUnits", else 1.
TB_API int tbGetNumTextureUnits();

/// The thread object that stands for the thread that loaded the library; null after tbShutdown(). Not referenced.
TB_API tbThread* tbGetAppThread();
/// True when called on the thread that loaded the library.
TB_API bool tbInAppThread();
