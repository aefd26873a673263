#pragma once

#include <string>
#include <string_view>

/// Puts a file of these bytes at `path`, which is the old file or the whole new one at every moment: it is written
/// beside it and renamed. Rights of an old file are kept. Throws CommandError.
void replaceFile(const std::string& path, std::string_view bytes);
