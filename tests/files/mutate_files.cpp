// mutate_files [--number N] [--seed S] [--folder F] FILE...: reads N damaged versions of good native files whole, walks,
// updates and saves what came of them, and reads that again. Ends with 1 when a file leaves something behind, costs more
// memory than it may or fails without a text, with 3 when one takes longer than 5 s. The file that was read last stays
// in the folder when the process does not end by itself; others of which something is said stay under their numbers.
#include <tests/files/Mutator.h>
#include <tests/files/WholeFile.h>

#include <tests/support/FileNode.h>
#include <tests/support/TempFile.h>

#include <portable/tbMesh.h>
#include <tamber/kernel/tbMessage.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace
{

constexpr double MOST_SECONDS = 5;
constexpr unsigned MOST_PATHS = 1u << 14;

struct Options
{
    std::uint64_t number = 2000;
    std::uint64_t seed = 1;
    std::filesystem::path folder = std::filesystem::temp_directory_path();
    std::vector<std::string> files;
};

bool parse(int argc, char** argv, Options& options)
{
    for (int i = 1; i < argc; ++i)
    {
        const std::string word = argv[i];
        if (word.compare(0, 2, "--") != 0)
            options.files.push_back(tbtest::readAll(word));
        else if (++i == argc)
            return false;
        else if (word == "--number")
            options.number = std::strtoull(argv[i], nullptr, 10);
        else if (word == "--seed")
            options.seed = std::strtoull(argv[i], nullptr, 10);
        else if (word == "--folder")
            options.folder = argv[i];
        else
            return false;
    }
    return !options.files.empty();
}

// Ends the process when one file takes too long.
class Watchdog
{
public:
    Watchdog() : thread([this] { watch(); }) {}
    ~Watchdog()
    {
        done = true;
        thread.join();
    }
    void next() { ++file; }

private:
    void watch()
    {
        std::uint64_t last = 0;
        auto since = std::chrono::steady_clock::now();
        for (; !done; std::this_thread::sleep_for(std::chrono::milliseconds(20)))
        {
            const auto now = std::chrono::steady_clock::now();
            if (file != last)
                since = now;
            last = file;
            if (std::chrono::duration<double>(now - since).count() < MOST_SECONDS)
                continue;
            std::printf("file %llu takes longer than %g s\n", static_cast<unsigned long long>(last),
                        MOST_SECONDS);
            std::fflush(stdout);
            std::_Exit(3);
        }
    }

    std::atomic<std::uint64_t> file{0};
    std::atomic<bool> done{false};
    std::thread thread;
};

struct Outcome
{
    const char* fault = nullptr;
    bool opened = false;
    bool hasRoot = false;
};

Outcome useFile(const std::string& path, const std::string& folder, std::size_t size)
{
    Outcome outcome;
    const tbtest::Cost cost;
    const tbtest::WholeFile file(path);
    if (MEASURE_COST && cost.bytes() > tbtest::mostBytes(size))
        outcome.fault = "costs more memory than it may";
    outcome.opened = file.opened;
    if (file.text.empty() && file.error != tbFile::FILE_OK)
        outcome.fault = "fails without a text";
    tbBase* root = file.objects.empty() ? nullptr : file.objects[0].get();
    outcome.hasRoot = root != nullptr;
    if (root)
    {
        const tbRef<tbBase> copy = tbtest::saveAndRead(root, folder);
        if (!copy)
            outcome.fault = "what it holds cannot be saved and read";
        else if (tbtest::countPaths(copy.get(), MOST_PATHS) <= MOST_PATHS)
            tbtest::useGraph(copy.get());
    }
    for (const tbRef<tbBase>& object : file.objects)
        if (tbtest::countPaths(object.get(), MOST_PATHS) <= MOST_PATHS)
            tbtest::useGraph(object.get());
    return outcome;
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    if (!parse(argc, argv, options))
    {
        std::fprintf(stderr, "usage: mutate_files [--number N] [--seed S] [--folder F] FILE...\n");
        return 2;
    }
    tbtest::FileNode::makeKnown();
    tbMesh::getClassType();
    tbSetMessageFunc([](const char*) {});
    tbtest::Mutator mutator(options.files, options.seed);
    const std::string path = (options.folder / ("mutated" + std::to_string(options.seed) + ".tb")).string();
    const std::filesystem::path saved = options.folder / ("saved" + std::to_string(options.seed));
    std::filesystem::create_directories(saved);
    std::uint64_t faults = 0, opened = 0, roots = 0;
    double slowest = 0;
    Watchdog watchdog;
    for (std::uint64_t i = 0; i < options.number; ++i)
    {
        watchdog.next();
        const std::string bytes = mutator.next();
        tbtest::writeAll(path, bytes);
        const tbtest::Alive before;
        const auto begun = std::chrono::steady_clock::now();
        Outcome outcome = useFile(path, saved.string(), bytes.size());
        slowest = std::max(slowest,
                           std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count());
        tbtest::Alive after;
        bool grows = !(after == before);
        for (int again = 0; grows && again < 4; ++again) // what a process makes once is there the next time
        {
            const tbtest::Alive held = after;
            useFile(path, saved.string(), bytes.size());
            after = tbtest::Alive();
            grows = !(after == held);
        }
        if (grows)
            outcome.fault = "leaves something behind";
        opened += outcome.opened ? 1 : 0;
        roots += outcome.hasRoot ? 1 : 0;
        if (!outcome.fault)
            continue;
        ++faults;
        const std::string kept =
            (options.folder / ("fault" + std::to_string(options.seed) + "-" + std::to_string(i) + ".tb"))
                .string();
        tbtest::writeAll(kept, bytes);
        std::printf("%s: %s\n", kept.c_str(), outcome.fault);
    }
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    std::filesystem::remove_all(saved, ignored);
    std::printf("%llu files, %llu opened, %llu with a root, slowest %.3f s, %llu faults\n",
                static_cast<unsigned long long>(options.number), static_cast<unsigned long long>(opened),
                static_cast<unsigned long long>(roots), slowest, static_cast<unsigned long long>(faults));
    return faults == 0 ? 0 : 1;
}
