#pragma once

#include <cstddef>
#include <ctime>

namespace tbtest
{
/// Time and memory that something took. What the system does not tell is 0, and so is all under a sanitizer.
class Cost
{
public:
    Cost();
    /// Of the processor: a busy machine takes longer without doing more.
    double seconds() const;
    /// The most that the process held beyond what it held at the start.
    std::size_t bytes() const;

private:
    std::clock_t begun;
    std::size_t held;
};

/// False under a sanitizer, where small inputs do.
bool isCostMeasured();

/// What reading a file of `size` bytes may cost: 64 MiB and 160 times the file; 1 s and 1 s more for each 10 MB.
std::size_t mostBytes(std::size_t size);
double mostSeconds(std::size_t size);
} // namespace tbtest
