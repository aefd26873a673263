// What a target finds wrong that no sanitizer sees.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace tbfuzz
{
/// Ends the run with a finding unless `holds`.
inline void check(bool holds, const char* rule)
{
    if (holds)
        return;
    std::fprintf(stderr, "finding: broken rule: %s\n", rule);
    std::abort();
}
} // namespace tbfuzz
