#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

// A line on the terminal that says what goes on and how long it will take, from the first second of the work to its
// end. Nothing is shown for shorter work, and nothing when stderr is no terminal.
class Progress
{
public:
    explicit Progress(std::string work);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// 0 to 1; without any call the line shows that work goes on and no bar.
    void setDone(double fraction) { done.store(fraction, std::memory_order_relaxed); }

private:
    using Clock = std::chrono::steady_clock;

    void show();
    std::string line(int tick);
    std::string timeLeft(double fraction);

    std::string work;
    std::atomic<double> done{-1.0};
    const Clock::time_point start = Clock::now();
    double estimatedAt = -1.0; // what was done when the end was estimated last
    Clock::time_point estimatedEnd;
    std::mutex mutex;
    std::condition_variable wake;
    bool ended = false;
    std::thread painter;
};
