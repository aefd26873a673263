#pragma once

#include <atomic>
#include <thread>

// A mutex for library-wide state and short sections: ready before any static constructor runs, which std::mutex is
// not on every platform. Not re-entrant; works with std::lock_guard.
class tbiSpinMutex
{
public:
    void lock() noexcept
    {
        while (taken.test_and_set(std::memory_order_acquire))
            std::this_thread::yield();
    }
    void unlock() noexcept { taken.clear(std::memory_order_release); }

private:
    std::atomic_flag taken;
};
