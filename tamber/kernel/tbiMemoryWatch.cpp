#include <tamber/kernel/tbiMemoryWatch.h>

namespace
{

// A plain number: a thread-local object with a destructor would keep the library from being unloaded.
thread_local constinit unsigned numFailures = 0;

} // namespace

unsigned tbiMemoryWatch::count() noexcept
{
    return numFailures;
}

void tbiMemoryWatch::note() noexcept
{
    ++numFailures;
}
