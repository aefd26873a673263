#pragma once

#include <string>

/// Brings a path into the form that the operating system wants, in place: on POSIX every '\\' becomes '/'.
void tbiToNativePath(char* path) noexcept;
/// The path in that form. Null counts as empty.
inline std::string tbiNativePath(const char* path)
{
    std::string native = path ? path : "";
    tbiToNativePath(native.data());
    return native;
}
/// True for an existing regular file that can be opened for reading. Never blocks. `path` is in native form.
bool tbiIsReadableFile(const char* path) noexcept;
