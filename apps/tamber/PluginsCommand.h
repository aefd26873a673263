#pragma once

#include "Command.h"

// tamber plugins: where plug-ins are looked for, what lies there, and whether it can be loaded.
class PluginsCommand : public Command
{
public:
    void define(CLI::App& app) override;
    /// 1 when a plug-in that was found is refused or cannot be loaded.
    int run() override;
    bool needsModels() const override { return false; }

private:
    bool asJson = false;
};
