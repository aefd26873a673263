#pragma once

#include "Command.h"

#include <string>

// tamber build: the native file of a text.
class BuildCommand : public Command
{
public:
    void define(CLI::App& app) override;
    int run() override;
    bool needsKernel() const override { return false; }

private:
    std::string file;
    std::string out;
};
