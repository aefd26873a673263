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

std::string Progress::line(int tick) const
{
    const double fraction = done.load(std::memory_order_relaxed);
    if (fraction < 0.0)
        return work + " " + "|/-\\"[tick % 4];
    const int filled = std::clamp(int(fraction * BAR_WIDTH), 0, BAR_WIDTH);
    const std::string bar =
        std::string(std::size_t(filled), '#') + std::string(std::size_t(BAR_WIDTH - filled), '.');
    return work + " [" + bar + "] " + std::to_string(int(fraction * 100.0)) + " %";
}
