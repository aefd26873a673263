// What a graph holds as text, for comparing with what a file is expected to hold.
#pragma once

#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbRef.h>

#include <string>
#include <vector>

namespace tbtest
{
/// One line for each object that `root` leads to, each object once: number, class, fields in the order of the file.
/// References are numbers.
std::string listGraph(const tbBase* root);
/// The same for several roots, after a line that tells which of them are null. Only the first lines come, then how
/// many more; what is long is cut to its beginning, its length and a checksum.
std::string listShortly(const std::vector<tbRef<tbBase>>& roots);
} // namespace tbtest
