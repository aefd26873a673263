#pragma once

#include <tests/support/TempFile.h>

namespace tbtest
{
/// A folder below the present one that a test process works in, gone with all that is in it when the process ends.
/// Processes run side by side, each in its own.
class WorkFolder
{
public:
    WorkFolder() : before(std::filesystem::current_path()) { std::filesystem::current_path(folder.path("")); }
    ~WorkFolder()
    {
        std::error_code ignored;
        std::filesystem::current_path(before, ignored);
    }

private:
    std::filesystem::path before;
    TempDirectory folder;
};
} // namespace tbtest
