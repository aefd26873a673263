#pragma once

#include <tamber/kernel/tbTypes.h>

/// Seconds since the library was loaded. Safe from any thread.
TB_API double tbGetTime();
