#include <tamber/action/tbAction.h>
#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/thread/tbEvent.h>
#include <tamber/thread/tbQueue.h>
#include <tamber/thread/tbThread.h>

#include <benchmark/benchmark.h>

#include <vector>

namespace
{

class CountingAction : public tbAction
{
public:
    bool apply(tbBase*, tbEvent*) override
    {
        benchmark::DoNotOptimize(++times);
        return true;
    }

private:
    long times = 0;
};

// One item in, one item out, with `range(0)` items of `range(1)` bytes waiting.
void queuePutGet(benchmark::State& state)
{
    const int waiting = int(state.range(0));
    const int itemSize = int(state.range(1));
    const tbRef<tbQueue> queue = new tbQueue(itemSize, 16);
    queue->setMode(tbQueue::GROW);
    std::vector<unsigned char> item(std::size_t(itemSize), 7);
    for (int i = 0; i < waiting; ++i)
        queue->put(item.data());
    for (auto _ : state)
    {
        queue->put(item.data());
        queue->get(item.data());
    }
}

void queueFillAndDrain(benchmark::State& state)
{
    const auto items = state.range(0);
    for (auto _ : state)
    {
        const tbRef<tbQueue> queue = new tbQueue(16, 16);
        queue->setMode(tbQueue::GROW);
        long record[2] = {};
        for (long i = 0; i < items; ++i)
            queue->put(record);
        while (queue->get(record))
            benchmark::DoNotOptimize(record);
    }
    state.SetItemsProcessed(state.iterations() * items);
}

void eventTrigger(benchmark::State& state)
{
    const tbRef<tbEvent> event = new tbEvent;
    for (int i = 0; i < state.range(0); ++i)
        event->addAction(new CountingAction);
    for (auto _ : state)
        event->trigger(nullptr);
}

// From the last unRef() to the deletion, through the queues of the application thread and `range(0)` others.
void deferredDeletion(benchmark::State& state)
{
    tbThread* app = tbGetAppThread();
    std::vector<tbRef<tbThread>> threads;
    for (int i = 0; i < state.range(0); ++i)
    {
        threads.emplace_back(new tbThread);
        app->addDownstreamThread(threads.back().get());
    }
    constexpr int NUM_OBJECTS = 1000;
    for (auto _ : state)
    {
        for (int i = 0; i < NUM_OBJECTS; ++i)
            (new tbEvent)->unRef();
        app->processQueue(false);
        for (const auto& thread : threads)
            thread->processQueue(false);
        app->processQueue(true);
    }
    state.SetItemsProcessed(state.iterations() * NUM_OBJECTS);
    for (const auto& thread : threads)
        app->removeDownstreamThread(thread.get());
}

BENCHMARK(queuePutGet)->ArgsProduct({{1, 1000, 1000000}, {8, 16, 256}});
BENCHMARK(queueFillAndDrain)->RangeMultiplier(10)->Range(1000, 1000000);
BENCHMARK(eventTrigger)->Arg(0)->Arg(1)->Arg(16)->Arg(1000);
BENCHMARK(deferredDeletion)->Arg(0)->Arg(1)->Arg(3);

} // namespace
