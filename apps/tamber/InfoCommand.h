#pragma once

#include "Command.h"
#include "ModelTree.h"

#include <string>

// tamber info: what a native file holds, from its tables alone, or the tree of any model.
class InfoCommand : public Command
{
public:
    void define(CLI::App& app) override;
    int run() override;
    /// The tables of a native file are read without it.
    bool needsKernel() const override;

private:
    int showFile() const;
    int showModel() const;

    std::string file;
    TreeLimits limits;
    bool tree = false;
    bool json = false;
};
