#pragma once

#include <tamber/kernel/tbMemory.h>

// A stopwatch that adds up the time between its starts and stops.
class TB_API tbTimer : public tbAllocated<tbTimer>
{
public:
    void start();
    void stop();
    void restart();
    /// Forgets the time added up. A running timer keeps running from its last start, which getSeconds() still counts:
    /// meant so, restart() begins anew.
    void reset() { accumulated = 0; }

    bool isRunning() const { return running; }
    double getSeconds() const;
    double getMilliseconds() const { return getSeconds() * 1000; }

    /// Sets up the clock; done when the library is loaded.
    static void initClass();

private:
    std::int64_t stamp = 0; // reading of the clock at the last start
    double accumulated = 0; // seconds
    bool running = false;
};
