#pragma once

#include "Command.h"

#include <string>

// tamber man: the manual pages of the program and its commands.
class ManCommand : public Command
{
public:
    void define(CLI::App& app) override;
    int run() override;
    bool needsKernel() const override { return false; }

private:
    std::string page;
    std::string folder;
};
