#pragma once

#include "Command.h"
#include "FrameLoop.h"

#include <string>

// tamber run: a model goes through a number of frames, and what they cost is printed.
class RunCommand : public Command
{
public:
    void define(CLI::App& app) override;
    int run() override;

private:
    std::string model;
    std::string saveFile;
    FrameOptions options;
};
