#pragma once

#include <tamber/kernel/tbBase.h>

#include <condition_variable>
#include <mutex>

// A counting semaphore.
class TB_API tbSemaphore : public tbBase
{
    TB_CLASS(tbSemaphore, tbBase)

public:
    /// Initial count 0, maximum 1024.
    tbSemaphore();
    /// With a maximum below 1, or an initial count outside 0..maximum, inc() does nothing and dec() fails at once.
    tbSemaphore(int initial, int maximum);
    /// Takes maximum, time-out and what is available now.
    tbSemaphore(const tbSemaphore& other);
    /// Likewise; whoever waits looks again.
    tbSemaphore& operator=(const tbSemaphore& other);

    /// Adds `n` at once, or nothing when that would pass the maximum. getCount() becomes the count before.
    virtual void inc(int n);
    virtual void inc();
    /// Waits up to `timeOut` milliseconds, -1 for ever. True when the wait is over, also when the time is up: callers
    /// ask only whether they may go on. False when the wait could not be made or the thread was killed in it.
    virtual bool dec(int timeOut);
    /// Waits up to the semaphore's time-out.
    virtual bool dec();
    virtual void setTimeout(int milliseconds);

    /// Not what is available: inc() stores the count before it, and every dec() that returns true takes one off.
    int getCount() const { return count.load(std::memory_order_relaxed); }
    int getTimeout() const { return timeOut.load(std::memory_order_relaxed); }

    /// While semaphores are off, inc() does nothing and dec() is true at once.
    static void enableAll(bool enable);
    static bool isEnabled() { return enabled.load(std::memory_order_relaxed); }

    tbBase* createCopy() const override;

protected:
    ~tbSemaphore() override;

private:
    friend class tbThread;

    enum WAIT : int
    {
        TAKEN,
        TIMED_OUT,
        INTERRUPTED
    };
    WAIT take(int milliseconds, bool heedsNudges);
    int getAvailable() const;

    std::atomic<int> maximum;
    std::atomic<int> timeOut{-1};
    std::atomic<int> count;
    mutable std::mutex mutex;
    std::condition_variable raised;
    int available;

    static std::atomic<bool> enabled;
};
