#pragma once

#include <tamber/platform/tbiThread.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

class tbiThreadControl;

/// Holds `mutex`, or nothing while the process is being torn down: the thread that holds it may be gone.
template <class Mutex>
std::unique_lock<Mutex> tbiHold(Mutex& mutex)
{
    return tbiIsProcessEnding() ? std::unique_lock<Mutex>() : std::unique_lock<Mutex>(mutex);
}

// One wait inside the kernel, a safe point of the waiting thread: killing the thread ends the wait, and a thread that
// was suspended meanwhile stays here until it runs again. Holds the mutex while it lives; the caller must not hold it.
class tbiWait
{
public:
    tbiWait(std::mutex& mutex, std::condition_variable& signal);
    ~tbiWait();
    tbiWait(const tbiWait&) = delete;
    tbiWait& operator=(const tbiWait&) = delete;

    /// Waits up to `milliseconds`, -1 for ever, until `ready`; returns whether it is.
    template <class Ready>
    bool until(int milliseconds, Ready ready)
    {
        if (!held.owns_lock())
            return ready();
        const auto over = [&] { return ready() || isKilled(); };
        if (milliseconds < 0)
            signal.wait(held, over);
        else
            signal.wait_for(held, std::chrono::milliseconds(milliseconds), over);
        return ready();
    }
    /// The waiting thread was killed.
    bool isKilled() const;
    /// The waiting thread is wanted for something else than its pass.
    bool isNudged() const;

private:
    tbiThreadControl* const control; // of the calling thread, null when it has none
    std::condition_variable& signal;
    std::unique_lock<std::mutex> held;
};
