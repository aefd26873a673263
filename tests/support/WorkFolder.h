#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace tbtest
{
/// A folder below the present one that a test process works in, gone with all that is in it when the process ends.
/// Processes run side by side, each in its own.
class WorkFolder
{
public:
    WorkFolder() : before(std::filesystem::current_path())
    {
        std::random_device random;
        do
            folder = before / ("tamber" + std::to_string(random()));
        while (!std::filesystem::create_directory(folder));
        std::filesystem::current_path(folder);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    ~WorkFolder()
    {
        std::error_code ignored;
        std::filesystem::current_path(before, ignored);
        std::filesystem::remove_all(folder, ignored);
    }

private:
    std::filesystem::path before;
    std::filesystem::path folder;
};
} // namespace tbtest
