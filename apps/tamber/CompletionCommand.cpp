#include "CompletionCommand.h"

#include "CommandLine.h"
#include "CompletionScript.h"

#include <iostream>

void CompletionCommand::define(CLI::App& app)
{
    CLI::App& command = addTo(app, "completion", "Print a script that has a shell complete what is typed");
    command.add_option("SHELL", shell, "bash, zsh or fish")
        ->required()
        ->check(CLI::IsMember(completedShells()));
    command.footer("bash: eval \"$(tamber completion bash)\" in ~/.bashrc\n"
                   "zsh:  eval \"$(tamber completion zsh)\" in ~/.zshrc, behind compinit\n"
                   "fish: tamber completion fish > ~/.config/fish/completions/tamber.fish");
}

int CompletionCommand::run()
{
    CommandLine line;
    std::cout << completionScript(tableOf(line), shell);
    return 0;
}
