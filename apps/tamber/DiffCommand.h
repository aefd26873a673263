#pragma once

#include "Command.h"

#include <apps/tamber/native/Diff.h>

#include <string>

// tamber diff: what differs between two files or models.
class DiffCommand : public Command
{
public:
    void define(CLI::App& app) override;
    /// 0 when they are equal, 1 when they differ.
    int run() override;
    int getFailureCode() const override { return 2; }
    std::vector<std::pair<int, std::string>> getExitCodes() const override
    {
        return {{0, "They are equal."},
                {1, "They differ."},
                {2, "One of them cannot be read; or the command line was wrong."}};
    }
    /// For models of foreign formats.
    bool needsKernel() const override;

private:
    std::string fileA;
    std::string fileB;
    native::DiffOptions options;
    bool json = false;
};
