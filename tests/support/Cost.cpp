#include <tests/support/Cost.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace tbtest
{
namespace
{
// A word of /proc/self/status in bytes; 0 where there is no such file.
std::size_t statusBytes(const std::string& name)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.compare(0, name.size(), name) == 0)
            return std::size_t(std::strtoull(line.c_str() + name.size() + 1, nullptr, 10)) * 1024;
    return 0;
}
} // namespace

Cost::Cost() : begun(std::clock())
{
    std::ofstream("/proc/self/clear_refs") << 5; // the most counts from now on
    held = statusBytes("VmRSS:");
}

double Cost::seconds() const
{
    return MEASURE_COST ? double(std::clock() - begun) / CLOCKS_PER_SEC : 0;
}

std::size_t Cost::bytes() const
{
    const std::size_t most = MEASURE_COST ? statusBytes("VmHWM:") : 0;
    return most > held ? most - held : 0; // the system counts in steps: the most may lie below what was held
}

bool isCostMeasured()
{
    return MEASURE_COST;
}

std::size_t mostBytes(std::size_t size)
{
    return (std::size_t{64} << 20) + 160 * size;
}

double mostSeconds(std::size_t size)
{
    return 1.0 + double(size) / 1e7;
}
} // namespace tbtest
