#include <tamber/kernel/tbTime.h>

#include <tamber/kernel/tbiClock.h>

#include <chrono>

namespace
{

constinit double clockStart = 0;

double now()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

void tbiStartClock()
{
    clockStart = now();
}

double tbGetTime()
{
    return now() - clockStart;
}
