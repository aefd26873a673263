#include <tamber/kernel/tbRef.h>
#include <tamber/thread/tbLock.h>
#include <tamber/thread/tbSemaphore.h>
#include <tamber/thread/tbiLockGuard.h>

#include <benchmark/benchmark.h>

#include <mutex>

namespace
{

void lockAcquireRelease(benchmark::State& state)
{
    const tbRef<tbLock> lock = new tbLock;
    for (auto _ : state)
    {
        lock->acquire();
        lock->release();
    }
}

void lockGuard(benchmark::State& state)
{
    const tbRef<tbLock> lock = new tbLock;
    for (auto _ : state)
        const tbiLockGuard guard(lock.get());
}

void lockReentry(benchmark::State& state)
{
    const tbRef<tbLock> lock = new tbLock;
    const tbiLockGuard outer(lock.get());
    for (auto _ : state)
        const tbiLockGuard guard(lock.get());
}

// What the standard library's re-entrant mutex costs, for comparison.
void standardReentrantMutex(benchmark::State& state)
{
    std::recursive_mutex mutex;
    for (auto _ : state)
        const std::lock_guard guard(mutex);
}

template <class Mutex>
void contend(benchmark::State& state, Mutex lockAndCount)
{
    for (auto _ : state)
        lockAndCount();
    state.SetItemsProcessed(state.iterations());
}

void lockContended(benchmark::State& state)
{
    static tbLock* lock = nullptr;
    static std::once_flag once;
    static long shared = 0;
    std::call_once(once,
                   []
                   {
                       lock = new tbLock;
                       lock->ref();
                   });
    contend(state,
            []
            {
                const tbiLockGuard guard(lock);
                benchmark::DoNotOptimize(++shared);
            });
}

void standardContended(benchmark::State& state)
{
    static std::recursive_mutex mutex;
    static long shared = 0;
    contend(state,
            []
            {
                const std::lock_guard guard(mutex);
                benchmark::DoNotOptimize(++shared);
            });
}

void semaphoreIncDec(benchmark::State& state)
{
    const tbRef<tbSemaphore> semaphore = new tbSemaphore;
    for (auto _ : state)
    {
        semaphore->inc();
        semaphore->dec();
    }
}

void refUnRef(benchmark::State& state)
{
    const tbRef<tbLock> object = new tbLock;
    for (auto _ : state)
    {
        object->ref();
        object->unRef();
    }
}

void refUnRefShared(benchmark::State& state)
{
    static const tbRef<tbLock> object = new tbLock;
    for (auto _ : state)
    {
        object->ref();
        object->unRef();
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(lockAcquireRelease);
BENCHMARK(lockGuard);
BENCHMARK(lockReentry);
BENCHMARK(standardReentrantMutex);
BENCHMARK(lockContended)->ThreadRange(1, 4)->UseRealTime();
BENCHMARK(standardContended)->ThreadRange(1, 4)->UseRealTime();
BENCHMARK(semaphoreIncDec);
BENCHMARK(refUnRef);
BENCHMARK(refUnRefShared)->ThreadRange(1, 4)->UseRealTime();

} // namespace
