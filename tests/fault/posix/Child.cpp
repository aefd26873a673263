#include <tests/fault/Child.h>

#include <csignal>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

struct tbtest::Child::Process
{
    pid_t id = 0;
};

tbtest::Child::Child(const std::vector<std::string>& command) : process(std::make_unique<Process>())
{
    std::vector<char*> arguments;
    for (const std::string& word : command)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    if (posix_spawn(&process->id, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0)
        process->id = 0;
}

tbtest::Child::~Child()
{
    if (process->id == 0)
        return;
    kill(process->id, SIGKILL);
    waitpid(process->id, nullptr, 0);
}

bool tbtest::Child::isRunning() const
{
    siginfo_t info = {};
    return process->id != 0 && waitid(P_PID, id_t(process->id), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == 0;
}
