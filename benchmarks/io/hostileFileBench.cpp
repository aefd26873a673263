// What the worst files cost to read, against a normal file: seconds of processor time per MB of the file. Where no two
// entries share bytes, five times as much as the normal one is the aim.
#include <tamber/graph/tbGroup.h>
#include <tamber/io/tbFile.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/kernel/tbRef.h>

#include <benchmark/benchmark.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace
{

using Words = std::vector<std::uint32_t>;

constexpr std::size_t FILE_SIZE = 4 << 20; // about

std::string bytesOf(const Words& words)
{
    return {reinterpret_cast<const char*>(words.data()), words.size() * 4};
}

std::string tag(std::uint32_t index, const char* name)
{
    std::string record = bytesOf({index}) + name;
    record.resize(68, '\0');
    return record;
}

// A group without a name; flags and children as given.
std::string group(const Words& children)
{
    Words words{0, 0, 0, 0x00010001, std::uint32_t(children.size())};
    words.insert(words.end(), children.begin(), children.end());
    return bytesOf(words);
}

struct Record
{
    std::uint32_t tag, offset, compression, size;
};

class File
{
public:
    explicit File(const std::vector<const char*>& names) : classes(names) {}

    /// Offsets are from the start of the data.
    void add(std::uint32_t tagIndex, std::size_t offset, std::size_t size, std::uint32_t compression = 0)
    {
        records.push_back({tagIndex, std::uint32_t(offset), compression, std::uint32_t(size)});
    }
    void add(const std::string& bytes, std::uint32_t tagIndex = 0)
    {
        add(tagIndex, data.size(), bytes.size());
        data += bytes;
    }
    std::string build(std::size_t gap = 0) const
    {
        std::string out = bytesOf({0xBA773265, 0x01020000});
        out.resize(72, '\0');
        out += bytesOf({std::uint32_t(records.size()), std::uint32_t(classes.size()), 0, 0, 0, 0});
        for (std::size_t i = 0; i < classes.size(); ++i)
            out += tag(std::uint32_t(i), classes[i]);
        const std::size_t start = out.size() + (24 + gap) * records.size();
        for (const Record& record : records)
            out += bytesOf({0xBA773265, record.tag, std::uint32_t(start + record.offset), record.compression,
                            record.size, 0x01020000});
        out.resize(start, '\0');
        return out + data;
    }

    std::vector<const char*> classes;
    std::vector<Record> records;
    std::string data;
};

Words upTo(std::uint32_t first, std::uint32_t number)
{
    Words words;
    for (std::uint32_t i = 0; i < number; ++i)
        words.push_back(first + i);
    return words;
}

// Groups of a thousand below one root, as the library writes them.
std::string normal()
{
    constexpr std::uint32_t GROUPS = 32;
    File file({"tbGroup"});
    file.add(group(upTo(1, GROUPS)));
    for (std::uint32_t i = 0; i < GROUPS; ++i)
        file.add(group(upTo(1 + GROUPS + 900 * i, 900)));
    for (std::uint32_t i = 0; i < GROUPS * 900; ++i)
        file.add(group({}));
    return file.build(88);
}

std::string manyOnOnePlace(const char* className)
{
    constexpr std::uint32_t NUMBER = FILE_SIZE / 28;
    File file({"tbGroup", className});
    file.add(group(upTo(1, NUMBER)));
    const std::size_t place = file.data.size();
    file.data += group({});
    for (std::uint32_t i = 0; i < NUMBER; ++i)
        file.add(1, place, 20);
    return file.build();
}

std::string tinyEntries()
{
    return manyOnOnePlace("tbGroup");
}

std::string unknownClass()
{
    return manyOnOnePlace("tbNobodysClass");
}

std::string wrongKind()
{
    return manyOnOnePlace("tbArray");
}

// Each entry lies at the other end of the file than the one before it.
std::string jumping()
{
    constexpr std::uint32_t NUMBER = FILE_SIZE / 48;
    File file({"tbGroup"});
    file.add(group(upTo(1, NUMBER)));
    const std::size_t place = file.data.size();
    for (std::uint32_t i = 0; i < NUMBER; ++i)
        file.data += group({});
    for (std::uint32_t i = 0; i < NUMBER; ++i)
        file.add(0, place + 20 * std::size_t(i % 2 == 0 ? i : NUMBER - i), 20);
    return file.build();
}

std::string oneChildManyTimes()
{
    File file({"tbGroup"});
    file.add(group(Words(FILE_SIZE / 4, 1)));
    file.add(group({}));
    return file.build();
}

std::string referencesBeyond()
{
    File file({"tbGroup"});
    file.add(group(Words(FILE_SIZE / 4, 77)));
    return file.build();
}

std::string deep()
{
    constexpr std::uint32_t NUMBER = FILE_SIZE / 48;
    File file({"tbGroup"});
    Words chains;
    for (std::uint32_t i = 1; i < NUMBER; i += 1000)
        chains.push_back(i);
    file.add(group(chains));
    for (std::uint32_t i = 1; i < NUMBER; ++i)
        file.add(group(i % 1000 == 0 || i + 1 == NUMBER ? Words() : Words{i + 1}));
    return file.build();
}

// Nodes with the same children, amid whose lists stands a node that fails after it has read a list of its own.
std::string failingNodes()
{
    constexpr std::uint32_t WIDTH = 1000;
    File file({"tbGroup", "tbSwitch"});
    file.add(group(upTo(1, WIDTH)));
    for (std::uint32_t i = 0; i < WIDTH; ++i)
    {
        Words children = upTo(1 + 2 * WIDTH, WIDTH);
        children[WIDTH / 2] = 1 + WIDTH + i;
        file.add(group(children));
    }
    for (std::uint32_t i = 0; i < WIDTH; ++i)
        file.add(group({1 + 2 * WIDTH, 2 + 2 * WIDTH}) + bytesOf({77}), 1);
    for (std::uint32_t i = 0; i < WIDTH; ++i)
        file.add(group({}));
    return file.build();
}

// Hardly any entries, and tags that all have the same name.
std::string sameTags()
{
    File file(std::vector<const char*>(FILE_SIZE / 68, "tbGroup"));
    file.add(group({}));
    return file.build();
}

// Every node of a level has every node of the next as a child.
template <std::uint32_t WIDTH>
std::string lattice()
{
    constexpr std::uint32_t NUMBER = FILE_SIZE / 4 / (WIDTH * WIDTH);
    File file({"tbGroup"});
    file.add(group(upTo(1, NUMBER)));
    for (std::uint32_t n = 0, next = 1 + NUMBER; n < NUMBER; ++n, next += 2 * WIDTH)
        file.add(group(upTo(next, WIDTH)));
    for (std::uint32_t n = 0, next = 1 + NUMBER; n < NUMBER; ++n, next += 2 * WIDTH)
    {
        for (std::uint32_t i = 0; i < WIDTH; ++i)
            file.add(group(upTo(next + WIDTH, WIDTH)));
        for (std::uint32_t i = 0; i < WIDTH; ++i)
            file.add(group({}));
    }
    return file.build();
}

// Lists that all lie on the same bytes, of more edges than the file may make.
std::string sharedLists()
{
    constexpr std::uint32_t NUMBER = FILE_SIZE / 56;
    File file({"tbGroup"});
    file.add(group(upTo(1, NUMBER)));
    const std::string list = group(upTo(1 + NUMBER, NUMBER));
    const std::size_t place = file.data.size();
    for (std::uint32_t i = 0; i < NUMBER; ++i)
        file.add(0, place, list.size());
    for (std::uint32_t i = 0; i < NUMBER; ++i)
        file.add(0, place + list.size(), 20);
    file.data += list + group({});
    return file.build();
}

// Packed names of zeros, as long as packing allows.
std::string packed(std::size_t pairs, std::uint32_t number)
{
    File file({"tbGroup"});
    file.add(group(upTo(1, number)));
    const std::size_t size = 255 * pairs;
    std::string bytes = bytesOf({std::uint32_t(2 * pairs + 9)});
    const std::string length = bytesOf({std::uint32_t(size - 100)});
    for (const char byte : length)
        bytes += {1, byte};
    for (std::size_t i = 0; i < pairs; ++i)
        bytes += {'\xFF', 'x'};
    bytes += '\0';
    for (std::uint32_t i = 0; i < number; ++i)
    {
        file.add(0, file.data.size(), size, 1);
        if (i == 0 || pairs < 1000)
            file.data += bytes;
        else
            file.records.back().offset = file.records[1].offset;
    }
    return file.build();
}

std::string packedSmall()
{
    return packed(500, 4000);
}

std::string packedInOnePlace()
{
    return packed(FILE_SIZE / 2, 100);
}

// Memory that one run gives back stays for the next. Shapes that give back much at once would otherwise be charged with
// getting every page from the system again, the others not.
#ifdef __GLIBC__
void keepMemory()
{
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 32 << 20);
}
#else
void keepMemory() {}
#endif

void readFile(benchmark::State& state, std::string (*make)())
{
    keepMemory();
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    const std::string path =
        (folder / ("tamber_hostile_" + std::to_string(std::random_device()()) + ".tb")).string();
    const std::string bytes = make();
    std::ofstream(path, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
    const tbMessageFunc before = tbSetMessageFunc([](const char*) {});
    for (auto _ : state)
    {
        tbFile file;
        file.open(path.c_str(), "r");
        tbRef<tbBase> root = file.readObject(0);
        file.close();
        state.PauseTiming();
        root.reset();
        state.ResumeTiming();
    }
    tbSetMessageFunc(before);
    state.counters["MB"] = double(bytes.size()) / 1e6;
    state.counters["s_per_MB"] =
        benchmark::Counter(double(bytes.size()) / 1e6 * double(state.iterations()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    std::filesystem::remove(path);
}

} // namespace

BENCHMARK_CAPTURE(readFile, normal, normal)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, tinyEntries, tinyEntries)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, unknownClass, unknownClass)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, wrongKind, wrongKind)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, jumping, jumping)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, oneChildManyTimes, oneChildManyTimes)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, referencesBeyond, referencesBeyond)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, deep, deep)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, latticeWide, lattice<1000>)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, lattice500, lattice<500>)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, lattice100, lattice<100>)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, latticeNarrow, lattice<30>)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, lattice16, lattice<15>)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, failingNodes, failingNodes)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, sameTags, sameTags)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, sharedLists, sharedLists)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, packedSmall, packedSmall)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFile, packedInOnePlace, packedInOnePlace)->Unit(benchmark::kMillisecond);
