// Calls to the file system that fail, as they do on a full or a broken disk. As with HeapFaults, the kernel library's
// calls come here first.
#pragma once

namespace tbtest
{
class FileFaults
{
public:
    enum KIND : unsigned char
    {
        NO_SPACE,    // fails with ENOSPC
        BROKEN,      // fails with EIO
        INTERRUPTED, // fails with EINTR where a call can
        SHORT        // a transfer ends half-way
    };

    /// Lets the n-th call of this thread fail, counted from 1 and from now.
    static void arm(long n, KIND kind);
    /// Ends it. The name of the call that was to fail; null when there were not so many.
    static const char* disarm();
};
} // namespace tbtest
