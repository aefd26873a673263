#include "Progress.h"

#include "Terminal.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <utility>

namespace
{
using namespace std::chrono_literals;

constexpr auto SHORT_WORK = 1s;
constexpr auto INTERVAL = 100ms;
constexpr int BAR_WIDTH = 30;
constexpr double SMALLEST_PART = 0.02; // from which the rest is estimated
constexpr const char* CLEAR_LINE = "\r\033[K";
} // namespace

Progress::Progress(std::string what) : work(std::move(what))
{
    if (isErrorOnTerminal())
        painter = std::thread([this] { show(); });
}

Progress::~Progress()
{
    if (!painter.joinable())
        return;
    {
        std::lock_guard guard(mutex);
        ended = true;
    }
    wake.notify_one();
    painter.join();
}

void Progress::show()
{
    std::unique_lock lock(mutex);
    if (wake.wait_for(lock, SHORT_WORK, [this] { return ended; }))
        return;
    int tick = 0;
    do
        std::cerr << CLEAR_LINE << line(tick++) << std::flush;
    while (!wake.wait_for(lock, INTERVAL, [this] { return ended; }));
    std::cerr << CLEAR_LINE << std::flush;
}

// As long again for each part as for those before. The estimate is renewed when more is done, and counts down between.
std::string Progress::timeLeft(double fraction)
{
    const Clock::time_point now = Clock::now();
    if (fraction < SMALLEST_PART)
        return {};
    if (fraction != estimatedAt)
    {
        estimatedAt = fraction;
        estimatedEnd =
            now + std::chrono::duration_cast<Clock::duration>((now - start) * (1.0 / fraction - 1.0));
    }
    const auto left = std::chrono::ceil<std::chrono::seconds>(estimatedEnd - now).count();
    if (left < 1)
        return {};
    return left < 60 ? ", " + std::to_string(left) + " s left"
                     : ", " + std::to_string((left + 59) / 60) + " min left";
}

std::string Progress::line(int tick)
{
    const double fraction = std::min(done.load(std::memory_order_relaxed), 1.0);
    if (fraction < 0.0)
    {
        const auto spent = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start).count();
        return work + " " + "|/-\\"[tick % 4] + " " + std::to_string(spent) + " s";
    }
    const int filled = std::clamp(int(fraction * BAR_WIDTH), 0, BAR_WIDTH);
    const std::string bar =
        std::string(std::size_t(filled), '#') + std::string(std::size_t(BAR_WIDTH - filled), '.');
    return work + " [" + bar + "] " + std::to_string(int(fraction * 100.0)) + " %" + timeLeft(fraction);
}
