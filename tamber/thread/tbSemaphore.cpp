#include <tamber/thread/tbSemaphore.h>

#include <tamber/kernel/tbiWhole.h>
#include <tamber/thread/tbiWait.h>

TB_DEFINE_SERVICE_CLASS(tbSemaphore, tbBase)

constinit std::atomic<bool> tbSemaphore::enabled{true};

namespace
{

constexpr int DEFAULT_MAXIMUM = 1024;

} // namespace

tbSemaphore::tbSemaphore() : tbSemaphore(0, DEFAULT_MAXIMUM) {}

tbSemaphore::tbSemaphore(int initial, int most)
    : maximum(most > 0 && initial >= 0 && initial <= most ? most : 0),
      count(initial),
      available(initial)
{
    initInstance();
}

tbSemaphore::tbSemaphore(const tbSemaphore& other)
    : tbBase(other),
      maximum(other.maximum.load(std::memory_order_relaxed)),
      timeOut(other.getTimeout()),
      count(other.getCount()),
      available(other.getAvailable())
{
    initInstance();
}

tbSemaphore& tbSemaphore::operator=(const tbSemaphore& other)
{
    if (this == &other)
        return *this;
    tbBase::operator=(other);
    setTimeout(other.getTimeout());
    const int theirs = other.getAvailable(); // one lock at a time
    const auto held = tbiHold(mutex);
    maximum.store(other.maximum.load(std::memory_order_relaxed), std::memory_order_relaxed);
    count.store(other.getCount(), std::memory_order_relaxed);
    available = theirs;
    raised.notify_all();
    return *this;
}

tbSemaphore::~tbSemaphore()
{
    deleteInstance();
    const auto free = tbiHold(mutex); // whoever raised it last is done with it
}

tbBase* tbSemaphore::createCopy() const
{
    return tbiCopyOf(*this);
}

void tbSemaphore::enableAll(bool enable)
{
    enabled.store(enable, std::memory_order_relaxed);
}

int tbSemaphore::getAvailable() const
{
    const auto held = tbiHold(mutex);
    return available;
}

void tbSemaphore::setTimeout(int milliseconds)
{
    timeOut.store(milliseconds, std::memory_order_relaxed);
}

void tbSemaphore::inc()
{
    inc(1);
}

void tbSemaphore::inc(int n)
{
    if (!isEnabled() || n < 1)
        return;
    const auto held = tbiHold(mutex);
    if (n > maximum.load(std::memory_order_relaxed) - available)
        return;
    // The count before, not after: meant so, callers compare it with 0 to see whether they were first.
    count.store(available, std::memory_order_relaxed);
    available += n;
    if (n == 1)
        raised.notify_one();
    else
        raised.notify_all();
}

bool tbSemaphore::dec()
{
    return dec(getTimeout());
}

bool tbSemaphore::dec(int milliseconds)
{
    if (!isEnabled())
        return true;
    // A time-out counts as success: meant so, for callers a true result only says that the wait is over.
    if (maximum.load(std::memory_order_relaxed) == 0 || take(milliseconds, false) == INTERRUPTED)
        return false;
    count.fetch_sub(1, std::memory_order_relaxed);
    return true;
}

tbSemaphore::WAIT tbSemaphore::take(int milliseconds, bool heedsNudges)
{
    {
        const auto held = tbiHold(mutex);
        if (available > 0)
        {
            --available;
            return TAKEN;
        }
    }
    if (milliseconds == 0)
        return TIMED_OUT;
    tbiWait wait(mutex, raised);
    const auto wanted = [&] { return heedsNudges && wait.isNudged(); };
    wait.until(milliseconds, [&] { return available > 0 || wanted(); });
    if (available > 0)
    {
        --available;
        return TAKEN;
    }
    return wait.isKilled() || wanted() ? INTERRUPTED : TIMED_OUT;
}
