#pragma once

#include <tamber/kernel/tbTypes.h>

// The list of directories that tbFindFile() searches. Set up on the application thread; nothing is locked.

/// Appends a directory, which then ends in a separator; nothing for null, the empty text and one that is listed.
TB_API void tbAddFilePath(const char* dir);
/// Appends every directory of a list split at ';'.
TB_API void tbAddFilePaths(const char* list);
TB_API void tbDeleteFilePaths();
TB_API int tbGetNumFilePaths();
/// Null when `i` is out of range.
TB_API const char* tbGetFilePath(int i);

/// Looks for a regular file: `name` as given, then in each directory in turn. Returns the length of the path that
/// opened plus one, 0 when there is none. `found` (may be null, holds `size` bytes) receives the path, cut to
/// `size` and always terminated; the empty text when nothing was found.
TB_API int tbFindFile(const char* name, int size, char* found);
