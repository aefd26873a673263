// A child process for tests: does what its first argument says.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <new>
#include <string>
#include <thread>
#include <vector>

namespace
{

constexpr int OUT_OF_MEMORY = 3;

// The other arguments, with their lengths, so that the parent sees each as it came.
int writeArguments(int argc, char** argv)
{
    std::ofstream out(argv[2], std::ios::binary);
    for (int i = 3; i < argc; ++i)
        out << std::string(argv[i]).size() << ':' << argv[i];
    return 0;
}

int takeMemory(long long bytes)
{
    static auto& blocks = *new std::vector<char*>; // which stay reachable to the end
    constexpr long long BLOCK = 1 << 20;
    for (; bytes > 0; bytes -= BLOCK)
        if (char* block = new (std::nothrow) char[BLOCK])
            blocks.push_back(block);
        else
            return OUT_OF_MEMORY;
    return 0;
}

[[noreturn]] void spin()
{
    for (volatile unsigned turns = 0;;)
        turns = turns + 1;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string order = argc > 1 ? argv[1] : "";
    if (order == "arguments")
        return writeArguments(argc, argv);
    if (order == "exit")
        return std::atoi(argv[2]);
    while (order == "memory" && std::getchar() != EOF) // the limits hold when the input ends
    {
    }
    if (order == "memory")
        return takeMemory(std::atoll(argv[2]));
    if (order == "crash")
        std::abort();
    if (order == "exception")
        *reinterpret_cast<volatile int*>(std::atoi(argv[2])) = 1;
    if (order == "spin")
        spin();
    if (order == "sleep")
        std::this_thread::sleep_for(std::chrono::minutes(5));
    if (order == "streams") // what the parent has open must not have come along
        return std::getchar() == EOF && std::fputs("lost", stdout) >= 0 && std::fflush(stdout) == 0 ? 0 : 1;
    return 99;
}
