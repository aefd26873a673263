#include <tests/fault/Child.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

struct tbtest::Child::Process
{
    HANDLE handle = nullptr;
};

tbtest::Child::Child(const std::vector<std::string>& command) : process(std::make_unique<Process>())
{
    std::string line;
    for (const std::string& word : command)
        line += '"' + word + "\" ";
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started = {};
    if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &started))
        return;
    CloseHandle(started.hThread);
    process->handle = started.hProcess;
}

tbtest::Child::~Child()
{
    if (!process->handle)
        return;
    TerminateProcess(process->handle, 1);
    WaitForSingleObject(process->handle, INFINITE);
    CloseHandle(process->handle);
}

bool tbtest::Child::isRunning() const
{
    return process->handle && WaitForSingleObject(process->handle, 0) == WAIT_TIMEOUT;
}
