// For tests with several threads: no wait in them is without an end.
#pragma once

#include <tamber/action/tbAction.h>

#include <atomic>
#include <chrono>
#include <concepts>
#include <functional>
#include <thread>
#include <vector>

namespace tbtest
{
/// Whether `condition` comes true within ten seconds. Looks often, so that a test takes no longer than it must.
template <class Condition>
bool comesTrue(Condition condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition())
    {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    return true;
}

inline void sleep(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

/// Does it on another thread and waits until it is done.
template <class Work>
void doElsewhere(Work work)
{
    std::thread(work).join();
}

/// So many threads that do it, each told its number; they are joined when the list goes.
template <class Work>
std::vector<std::jthread> startThreads(int number, Work work)
{
    std::vector<std::jthread> threads;
    for (int i = 0; i < number; ++i)
        threads.emplace_back(work, i);
    return threads;
}

/// An action made of a function; counts how often it was applied.
class FuncAction : public tbAction
{
public:
    using Func = std::function<bool(tbBase* initiator, tbEvent* event)>;

    FuncAction() = default;
    explicit FuncAction(Func work) : func(std::move(work)) {}
    /// Work that does not fail and needs no arguments.
    template <std::invocable Work>
    explicit FuncAction(Work work)
        : func(
              [work](tbBase*, tbEvent*)
              {
                  work();
                  return true;
              })
    {
    }

    bool apply(tbBase* initiator, tbEvent* event) override
    {
        const bool done = !func || func(initiator, event);
        times.fetch_add(1);
        return done;
    }
    int getTimes() const { return times; }

private:
    Func func;
    std::atomic<int> times{0};
};
} // namespace tbtest
