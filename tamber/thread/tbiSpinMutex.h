#pragma once

#include <atomic>
#include <chrono>
#include <thread>

// A mutex for library-wide values: ready before any static constructor runs, with nothing to destroy. For sections of
// moments, so that a thread that finds it busy only steps aside; one of a higher priority sleeps, or the holder might
// never come to its end.
class tbiSpinMutex
{
public:
    constexpr tbiSpinMutex() = default;
    tbiSpinMutex(const tbiSpinMutex&) = delete;
    tbiSpinMutex& operator=(const tbiSpinMutex&) = delete;

    void lock() noexcept
    {
        for (int tries = 0; busy.test_and_set(std::memory_order_acquire); ++tries)
        {
            if (tries < NUM_YIELDS)
                std::this_thread::yield();
            else
                std::this_thread::sleep_for(std::chrono::microseconds(100));
        }
    }
    void unlock() noexcept { busy.clear(std::memory_order_release); }

private:
    static constexpr int NUM_YIELDS = 32;

    std::atomic_flag busy;
};
