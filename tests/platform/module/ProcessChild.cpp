// A child process for tests: does what its first argument says.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

namespace
{

// The other arguments, with their lengths, so that the parent sees each as it came.
int writeArguments(int argc, char** argv)
{
    std::ofstream out(argv[2], std::ios::binary);
    for (int i = 3; i < argc; ++i)
        out << std::string(argv[i]).size() << ':' << argv[i];
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string order = argc > 1 ? argv[1] : "";
    if (order == "arguments")
        return writeArguments(argc, argv);
    if (order == "exit")
        return std::atoi(argv[2]);
    if (order == "crash")
        std::abort();
    if (order == "exception")
        *reinterpret_cast<volatile int*>(std::atoi(argv[2])) = 1;
    if (order == "streams") // what the parent has open must not have come along
        return std::getchar() == EOF && std::fputs("lost", stdout) >= 0 && std::fflush(stdout) == 0 ? 0 : 1;
    return 99;
}
