#include "Commands.h"

#include "CommandLine.h"
#include "CompletionScript.h"

#include <iostream>

namespace
{
// tamber completion: a script with which a shell completes the program's command lines.
class CompletionCommand : public Command
{
public:
    void define(CLI::App& app) override
    {
        CLI::App& command =
            addTo(app, "completion", "Print a script that has a shell complete what is typed");
        command.add_option("SHELL", shell, "bash, zsh or fish")
            ->required()
            ->check(CLI::IsMember(completedShells()));
        command.footer("bash: eval \"$(tamber completion bash)\" in ~/.bashrc\n"
                       "zsh:  eval \"$(tamber completion zsh)\" in ~/.zshrc, behind compinit\n"
                       "fish: tamber completion fish > ~/.config/fish/completions/tamber.fish");
    }

    int run() override
    {
        CommandLine line;
        std::cout << completionScript(tableOf(line), shell);
        return 0;
    }

    bool needsKernel() const override { return false; }

private:
    std::string shell;
};
} // namespace

std::unique_ptr<Command> makeCompletionCommand()
{
    return std::make_unique<CompletionCommand>();
}
