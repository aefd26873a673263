// Files of one test, gone when the test ends.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace tbtest
{
/// A directory of its own for a test, removed with all that is in it.
class TempDirectory
{
public:
    TempDirectory()
    {
        static int number = 0;
        do
            directory = std::filesystem::current_path() / ("files" + std::to_string(++number));
        while (!std::filesystem::create_directory(directory));
    }
    TempDirectory(const TempDirectory&) = delete;
    TempDirectory& operator=(const TempDirectory&) = delete;
    ~TempDirectory()
    {
        std::error_code ignored;
        std::filesystem::remove_all(directory, ignored);
    }

    std::string path(const std::string& name) const { return (directory / name).string(); }
    /// Number of files in it.
    int count() const
    {
        return int(std::distance(std::filesystem::directory_iterator(directory),
                                 std::filesystem::directory_iterator()));
    }

private:
    std::filesystem::path directory;
};

inline std::string readAll(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

inline void writeAll(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
}
} // namespace tbtest
