#pragma once

#include <string>

/// What to say of a file that no loader takes: every extension that is known, every place where loaders were looked
/// for, and every loader that was found there and not let in or not to be loaded.
std::string tbiUnknownFormat(const std::string& path);
