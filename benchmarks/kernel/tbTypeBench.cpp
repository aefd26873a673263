// Types and instances: making, finding and ending objects with many alive.
#include <tamber/kernel/tbBase.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

namespace
{

std::vector<tbBase*> makeObjects(std::int64_t n)
{
    std::vector<tbBase*> objects(static_cast<std::size_t>(n));
    for (tbBase*& object : objects)
    {
        object = new tbBase;
        object->ref();
    }
    return objects;
}

void unRefAll(std::vector<tbBase*>& objects)
{
    for (tbBase* object : objects)
        object->unRef();
}

// All alive at once, ended in the order of making or in the opposite one.
void makeAndEnd(benchmark::State& state)
{
    const bool backwards = state.range(1) != 0;
    for (auto _ : state)
    {
        std::vector<tbBase*> objects = makeObjects(state.range(0));
        if (backwards)
            std::reverse(objects.begin(), objects.end());
        unRefAll(objects);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(makeAndEnd)->ArgsProduct({{1000, 10000, 100000, 1000000}, {0, 1}})->Unit(benchmark::kMillisecond);

void refAndUnRef(benchmark::State& state)
{
    tbBase* object = new tbBase;
    object->ref();
    for (auto _ : state)
    {
        object->ref();
        object->unRef();
    }
    object->unRef();
}
BENCHMARK(refAndUnRef);

void findTypeByName(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(tbType::findType("TBTRANSFORM"));
}
BENCHMARK(findTypeByName);

void countInstances(benchmark::State& state)
{
    std::vector<tbBase*> objects = makeObjects(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(tbBase::getNum(true));
    unRefAll(objects);
}
BENCHMARK(countInstances)->RangeMultiplier(1000)->Range(1000, 1000000);

} // namespace
