#pragma once

#include "Command.h"

#include <cstddef>
#include <string>

// tamber check: everything that is wrong with a native file.
class CheckCommand : public Command
{
public:
    void define(CLI::App& app) override;
    /// 0 for a sound file, 1 when there are warnings and nothing worse, 2 for errors.
    int run() override;
    int getFailureCode() const override { return 2; }
    std::vector<std::pair<int, std::string>> getExitCodes() const override
    {
        return {{0, "The file is sound."},
                {1, "It has warnings."},
                {2, "It has errors or cannot be read; or the command line was wrong."}};
    }
    bool needsKernel() const override { return false; }

private:
    std::string file;
    std::size_t limit = 0;
    bool json = false;
    bool kinds = false;
};
