#include <tamber/thread/tbTimer.h>

#include <chrono>

namespace
{

using Clock = std::chrono::steady_clock;

constinit double secondsPerTick = 0;

std::int64_t readClock()
{
    return Clock::now().time_since_epoch().count();
}

double secondsSince(std::int64_t earlier)
{
    return static_cast<double>(readClock() - earlier) * secondsPerTick;
}

} // namespace

void tbTimer::initClass()
{
    secondsPerTick = static_cast<double>(Clock::period::num) / static_cast<double>(Clock::period::den);
}

void tbTimer::start()
{
    if (running)
        return;
    stamp = readClock();
    running = true;
}

void tbTimer::stop()
{
    if (!running)
        return;
    accumulated += secondsSince(stamp);
    running = false;
}

void tbTimer::restart()
{
    stamp = readClock();
    accumulated = 0;
    running = true;
}

double tbTimer::getSeconds() const
{
    return running ? accumulated + secondsSince(stamp) : accumulated;
}
