#pragma once

#include <tamber/kernel/tbTypes.h>

/// Imports a file and returns its root when it is of `type` or derived from it, with count 0; otherwise releases
/// the root and returns null.
TB_API tbBase* tbImportOfType(const char* fileName, const tbType* type);
