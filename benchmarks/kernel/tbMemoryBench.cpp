// Blocks from the heap and from arenas, and lists that grow in both.
#include <tamber/containers/tbList.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/kernel/tbMemory.h>

#include <benchmark/benchmark.h>

namespace
{

void heapBlock(benchmark::State& state)
{
    const auto size = static_cast<std::size_t>(state.range(0));
    for (auto _ : state)
        tbMemory::free(tbMemory::malloc(size));
}
BENCHMARK(heapBlock)->Arg(16)->Arg(256)->Arg(4096);

void arenaBlocks(benchmark::State& state)
{
    const auto size = static_cast<std::size_t>(state.range(0));
    tbArena arena(1 << 16);
    for (auto _ : state)
    {
        for (int i = 0; i < 1000; ++i)
            benchmark::DoNotOptimize(arena.malloc(size));
        arena.reset();
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(arenaBlocks)->Arg(16)->Arg(256);

void listAppend(benchmark::State& state)
{
    int item = 0;
    for (auto _ : state)
    {
        tbTList<int*> list;
        for (std::int64_t i = 0; i < state.range(0); ++i)
            list.add(&item);
        benchmark::DoNotOptimize(list.getNum());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(listAppend)->RangeMultiplier(10)->Range(1000, 1000000);

void listAppendInArena(benchmark::State& state)
{
    int item = 0;
    tbArena unused; // the arena of index 0 makes heap lists
    tbArena arena(1 << 20);
    for (auto _ : state)
    {
        tbTList<int*> list(0, &arena);
        for (std::int64_t i = 0; i < state.range(0); ++i)
            list.add(&item);
        benchmark::DoNotOptimize(list.getNum());
        arena.reset();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(listAppendInArena)->RangeMultiplier(10)->Range(1000, 100000);

void listSearchFromTheEnd(benchmark::State& state)
{
    int items[2] = {};
    tbTList<int*> list;
    list.add(&items[0]);
    for (std::int64_t i = 1; i < state.range(0); ++i)
        list.add(&items[1]);
    for (auto _ : state)
        benchmark::DoNotOptimize(list.getIndex(&items[0]));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(listSearchFromTheEnd)->RangeMultiplier(10)->Range(1000, 1000000);

} // namespace
