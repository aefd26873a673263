#include "Commands.h"

#include "CompletionScript.h"

#include <iostream>

namespace
{
// tamber completion: a script with which a shell completes the program's command lines.
class CompletionCommand : public Command
{
public:
    void define(CommandTable& commandTable) override
    {
        table = &commandTable;
        CommandRow& command =
            table->add("completion", "Print a script that has a shell complete what is typed");
        command.add("SHELL", &shell, "bash, zsh or fish").require().chooseFrom(completedShells());
        command.notes = "bash: eval \"$(tamber completion bash)\" in ~/.bashrc\n"
                        "zsh:  eval \"$(tamber completion zsh)\" in ~/.zshrc, behind compinit\n"
                        "fish: tamber completion fish > ~/.config/fish/completions/tamber.fish";
    }

    int run() override
    {
        std::cout << completionScript(*table, shell);
        return 0;
    }

    bool needsKernel() const override { return false; }

private:
    CommandTable* table = nullptr;
    std::string shell;
};
} // namespace

std::unique_ptr<Command> makeCompletionCommand()
{
    return std::make_unique<CompletionCommand>();
}
