// Allocations that fail. The program is searched before the system's libraries, so every call to the heap, also by the
// kernel library and the standard library, comes here first.
#pragma once

#include <cstddef>

namespace tbtest
{
class HeapFaults
{
public:
    enum KIND : unsigned char
    {
        ONE,    // a single allocation fails
        LASTING // it and all that follow
    };

    /// Lets the n-th allocation of this thread fail, counted from 1 and from now.
    static void arm(long n, KIND kind);
    /// Ends it. True when an allocation failed.
    static bool disarm();
    /// Blocks of the whole process that are not freed.
    static long getNumBlocks();
};
} // namespace tbtest
