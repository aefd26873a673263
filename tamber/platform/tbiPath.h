#pragma once

/// Brings a path into the form that the operating system wants, in place: on POSIX every '\\' becomes '/'.
void tbiToNativePath(char* path) noexcept;
/// True for an existing regular file that can be opened for reading. Never blocks. `path` is in native form.
bool tbiIsReadableFile(const char* path) noexcept;
