#pragma once

#include <tamber/kernel/tbTypes.h>

#include <new>

// How operations that are done as a whole or not at all learn that memory ran out somewhere below them, where nobody
// could tell: in a constructor, in a list that did not grow, in a name that was not copied.
//
//     const tbiMemoryWatch memory;
//     tbRef<tbGroup> node = ...;
//     return memory.ranOut() ? nullptr : node;
class TB_API tbiMemoryWatch
{
public:
    tbiMemoryWatch() noexcept : before(count()) {}

    /// True when an allocation of this thread failed since the watch began.
    bool ranOut() const noexcept { return count() != before; }
    /// An allocation of this thread has failed.
    static void note() noexcept;

private:
    static unsigned count() noexcept;

    unsigned before;
};

/// Runs `work` and returns what it returns. What the standard library throws when memory is out ends here, and gives
/// `otherwise`.
template <class Result, class Work>
Result tbiWithoutThrow(Result otherwise, Work work) noexcept
{
    try
    {
        return work();
    }
    catch (const std::bad_alloc&)
    {
        tbiMemoryWatch::note();
        return otherwise;
    }
}

template <class Work>
void tbiWithoutThrow(Work work) noexcept
{
    tbiWithoutThrow(false, [&work] { return work(), true; });
}
