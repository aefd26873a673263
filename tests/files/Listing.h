// What a graph holds as text, for comparing with what a file is expected to hold.
#pragma once

#include <string>
#include <vector>

class tbBase;

namespace tbtest
{
/// One line for each object that `roots` lead to, each object once: number, class, fields in the order of the file.
/// References are numbers; null roots are lines as well. Only the first `most` lines come, then how many more.
std::string listGraph(const std::vector<tbBase*>& roots, int most = 1000000);
} // namespace tbtest
