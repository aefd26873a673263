#pragma once

#include "Command.h"

#include <string>
#include <vector>

// tamber pick: a ray from one point to another, and what of the model it strikes first.
class PickCommand : public Command
{
public:
    void define(CLI::App& app) override;
    int run() override;

private:
    std::string model;
    std::vector<float> from;
    std::vector<float> to;
};
