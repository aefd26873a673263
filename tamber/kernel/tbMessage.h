#pragma once

#include <tamber/kernel/tbTypes.h>

/// Prints one of the library's diagnostics; nothing is added, so the format carries its own "\n". Messages go to
/// stdout or to the function that tbSetMessageFunc() installed. Safe from any thread.
[[gnu::format(printf, 1, 2)]] TB_API void tbMessage(const char* format, ...);

/// Receives every message as finished text; `text` is valid during the call only.
using tbMessageFunc = void (*)(const char* text);
/// Installs a receiver for messages and returns the one before; null stands for stdout.
TB_API tbMessageFunc tbSetMessageFunc(tbMessageFunc func);

/// Opens a console window for stdout where the process has none.
TB_API void tbCreateConsole();
