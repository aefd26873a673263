// Writing and reading files of 1e3 to 1e6 objects. The time for one object must not depend on their number.
#include <tamber/graph/tbTransform.h>
#include <tamber/io/tbFile.h>
#include <tamber/kernel/tbRef.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace
{

std::string filePath()
{
    return (std::filesystem::temp_directory_path() / "tamber_bench.tb").string();
}

// Groups of up to a thousand transforms, named, below one root.
tbRef<tbGroup> makeGraph(int size)
{
    tbRef<tbGroup> root = new tbGroup;
    tbGroup* group = nullptr;
    for (int i = 1; i < size; ++i)
    {
        if (i % 1000 == 1)
        {
            root->addChild(group = new tbGroup);
            continue;
        }
        auto* node = new tbTransform;
        node->setName("node");
        group->addChild(node);
    }
    return root;
}

bool save(const tbGroup* root)
{
    tbFile file;
    return file.create(filePath().c_str()) && root->write(&file, nullptr) && file.write();
}

void writeFile(benchmark::State& state)
{
    const tbRef<tbGroup> root = makeGraph(int(state.range(0)));
    for (auto _ : state)
        if (!save(root.get()))
            state.SkipWithError("the file cannot be written");
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["bytes"] = double(std::filesystem::file_size(filePath()));
    std::remove(filePath().c_str());
}

void readFile(benchmark::State& state)
{
    save(makeGraph(int(state.range(0))).get());
    for (auto _ : state)
    {
        tbFile file;
        file.open(filePath().c_str(), "r");
        tbRef<tbBase> root = file.readObject(0);
        file.close();
        if (!root)
            state.SkipWithError("the file cannot be read");
        state.PauseTiming();
        root.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    std::remove(filePath().c_str());
}

// Header, tags and directory alone.
void openFile(benchmark::State& state)
{
    save(makeGraph(int(state.range(0))).get());
    for (auto _ : state)
    {
        tbFile file;
        benchmark::DoNotOptimize(file.open(filePath().c_str(), "r"));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    std::remove(filePath().c_str());
}

void findEntry(benchmark::State& state)
{
    tbFile file;
    file.create(filePath().c_str());
    const int tag = file.newTag("tbGroup");
    std::vector<int> objects(std::size_t(state.range(0)));
    for (const int& object : objects)
        file.newEntry(tag)->setHandle(&object);
    for (auto _ : state)
        for (const int& object : objects)
            benchmark::DoNotOptimize(file.findEntry(&object));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(writeFile)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(readFile)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(openFile)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(findEntry)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond);
