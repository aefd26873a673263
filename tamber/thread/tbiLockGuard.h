#pragma once

#include <tamber/thread/tbLock.h>

// Holds a lock for a scope. A null lock is none, and so is every lock while locks are switched off. The guard waits
// until it holds the lock, whatever the lock's time-out, and gives back exactly what it acquired.
class TB_API tbiLockGuard
{
public:
    explicit tbiLockGuard(const tbLock* lock) : held(lock && lock->take() ? lock : nullptr) {}
    ~tbiLockGuard()
    {
        if (held)
            held->give();
    }
    tbiLockGuard(const tbiLockGuard&) = delete;
    tbiLockGuard& operator=(const tbiLockGuard&) = delete;

private:
    const tbLock* held;
};
