#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

// A line on the terminal that says what goes on, from the first second of the work to its end. Nothing is shown
// for shorter work, and nothing when stderr is no terminal.
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
    void show();
    std::string line(int tick) const;

    std::string work;
    std::atomic<double> done{-1.0};
    std::mutex mutex;
    std::condition_variable wake;
    bool ended = false;
    std::thread painter;
};
