// Files of one test, gone when the test ends.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>
#include <utility>

namespace tbtest
{
inline std::string readAll(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return std::move(bytes).str();
}

inline void writeAll(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
}

/// A directory of its own for a test, removed with all that is in it.
class TempDirectory
{
public:
    TempDirectory()
    {
        // Other processes make and remove theirs beside it, which may fail as "exists" of one that is gone.
        static int number = 0;
        std::error_code error;
        do
            directory = std::filesystem::current_path() / ("files" + std::to_string(++number));
        while (!std::filesystem::create_directory(directory, error) &&
               (!error || error == std::errc::file_exists));
        if (error)
            throw std::filesystem::filesystem_error("no folder for a test", directory, error);
    }
    TempDirectory(const TempDirectory&) = delete;
    TempDirectory& operator=(const TempDirectory&) = delete;
    ~TempDirectory()
    {
        std::error_code ignored;
        std::filesystem::remove_all(directory, ignored);
    }

    std::string path(const std::string& name) const { return (directory / name).string(); }
    /// The path of a file that holds these bytes from now on.
    std::string write(const std::string& name, const std::string& bytes) const
    {
        writeAll(path(name), bytes);
        return path(name);
    }
    /// Number of files in it.
    int count() const
    {
        return int(std::distance(std::filesystem::directory_iterator(directory),
                                 std::filesystem::directory_iterator()));
    }

private:
    std::filesystem::path directory;
};
} // namespace tbtest
