#pragma once

#include "Command.h"

#include <string>

// tamber completion: a script with which a shell completes the program's command lines.
class CompletionCommand : public Command
{
public:
    void define(CLI::App& app) override;
    int run() override;
    bool needsKernel() const override { return false; }

private:
    std::string shell;
};
