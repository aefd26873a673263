#pragma once

#include "Command.h"

#include <string>

// tamber dump: a native file as text.
class DumpCommand : public Command
{
public:
    void define(CLI::App& app) override;
    int run() override;
    bool needsKernel() const override { return false; }

private:
    std::string file;
    std::string out;
};
