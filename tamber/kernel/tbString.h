#pragma once

#include <tamber/kernel/tbTypes.h>

/// A 32-bit hash of the text; 0 for null and for the empty text.
TB_API unsigned int tbStrToInt(const char* text);
/// -1, 0 or 1 by unsigned bytes, or any sign of the order when case is ignored. 0 when both are null, -1 when
/// exactly one is.
TB_API int tbStrcmp(const char* a, const char* b, bool ignoreCase);
/// What stands behind the last '/' or '\\', within `path`; null for null, the empty text, and a path that ends in
/// a separator.
TB_API const char* tbGetFileName(const char* path);
