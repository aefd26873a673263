#pragma once

#include "Command.h"
#include "ModelFile.h"

#include <string>

// tamber convert: a model of one format becomes a file of another, or of the native one written in another way.
class ConvertCommand : public Command
{
public:
    void define(CLI::App& app) override;
    int run() override;

private:
    std::string source;
    std::string target;
    NativeOptions options;
};
