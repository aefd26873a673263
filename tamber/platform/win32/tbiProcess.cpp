#include <tamber/platform/tbiProcess.h>

#include <tamber/platform/tbiModule.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>

namespace
{

using Clock = std::chrono::steady_clock;

constexpr DWORD LONGEST_WAIT_MS = 50;       // until the times of the process are looked at again
constexpr double MOST_PROCESSOR_TIME = 1e9; // seconds; more are no limit to speak of
constexpr int DIRECTORY_ATTEMPTS = 100;
constexpr std::uint32_t FIRST_EXCEPTION = 0xC0000000;
constexpr UINT ENDED = 1; // the exit code of a process that is ended from here

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// A handle, closed when it goes.
class Handle
{
public:
    explicit Handle(HANDLE owned = nullptr) : handle(owned == INVALID_HANDLE_VALUE ? nullptr : owned) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle()
    {
        if (handle)
            CloseHandle(handle);
    }
    operator HANDLE() const { return handle; }

private:
    HANDLE handle;
};

std::string errorText(const char* what)
{
    return std::string(what) + ", error " + std::to_string(GetLastError());
}

std::wstring wide(const std::string& text)
{
    const int n = MultiByteToWideChar(CP_ACP, 0, text.data(), int(text.size()), nullptr, 0);
    std::wstring converted(std::size_t(n), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text.data(), int(text.size()), converted.data(), n);
    return converted;
}

// As the runtime library of the child takes a command line apart: backslashes count before a quote only.
void appendQuoted(std::string& line, const std::string& argument)
{
    line += '"';
    std::size_t backslashes = 0;
    for (const char c : argument)
    {
        if (c == '"')
            line.append(backslashes + 1, '\\');
        backslashes = c == '\\' ? backslashes + 1 : 0;
        line += c;
    }
    line.append(backslashes, '\\');
    line += '"';
}

std::wstring commandLine(const tbiProcessOrder& order)
{
    std::string line;
    appendQuoted(line, order.program);
    for (const std::string& argument : order.arguments)
    {
        line += ' ';
        appendQuoted(line, argument);
    }
    return wide(line);
}

// The one handle that the child gets: the empty device.
class StartSettings
{
public:
    StartSettings() : device(openEmptyDevice())
    {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        storage.resize(size);
        list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(storage.data());
        handles[0] = device;
        if (!device || !InitializeProcThreadAttributeList(list, 1, 0, &size))
            list = nullptr;
        else if (!UpdateProcThreadAttribute(list, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles,
                                            sizeof handles, nullptr, nullptr))
            good = false;
        info.StartupInfo.cb = sizeof info;
        info.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
        info.StartupInfo.hStdInput = info.StartupInfo.hStdOutput = info.StartupInfo.hStdError = device;
        info.lpAttributeList = list;
    }
    StartSettings(const StartSettings&) = delete;
    StartSettings& operator=(const StartSettings&) = delete;
    ~StartSettings()
    {
        if (list)
            DeleteProcThreadAttributeList(list);
    }

    bool isGood() const { return list && good; }
    STARTUPINFOW* get() { return &info.StartupInfo; }

private:
    static HANDLE openEmptyDevice()
    {
        SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
        return CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                           &inherited, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    }

    Handle device;
    HANDLE handles[1] = {};
    std::vector<unsigned char> storage;
    LPPROC_THREAD_ATTRIBUTE_LIST list = nullptr;
    bool good = true;
    STARTUPINFOEXW info = {};
};

// Limits what is put into the job; what is still in it when the job goes, ends.
HANDLE makeJob(const tbiProcessOrder& order)
{
    const HANDLE job = CreateJobObjectW(nullptr, nullptr);
    if (!job)
        return nullptr;
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    DWORD& flags = limits.BasicLimitInformation.LimitFlags;
    flags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_DIE_ON_UNHANDLED_EXCEPTION;
    if (order.memory > 0)
    {
        flags |= JOB_OBJECT_LIMIT_PROCESS_MEMORY;
        limits.ProcessMemoryLimit = SIZE_T(std::min<std::uint64_t>(std::uint64_t(order.memory), SIZE_MAX));
    }
    if (order.processorTime > 0)
    {
        flags |= JOB_OBJECT_LIMIT_PROCESS_TIME;
        const double seconds = std::min(order.processorTime, MOST_PROCESSOR_TIME);
        limits.BasicLimitInformation.PerProcessUserTimeLimit.QuadPart = LONGLONG(seconds * 1e7);
    }
    if (SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits))
        return job;
    CloseHandle(job);
    return nullptr;
}

double secondsOf(const FILETIME& time)
{
    return double((std::uint64_t(time.dwHighDateTime) << 32) | time.dwLowDateTime) * 1e-7;
}

double processorTimeOf(HANDLE process)
{
    FILETIME created, ended, kernel, user;
    return GetProcessTimes(process, &created, &ended, &kernel, &user) ? secondsOf(kernel) + secondsOf(user)
                                                                      : 0;
}

bool hasPassed(double spent, double limit)
{
    return limit > 0 && spent >= limit;
}

// The job looks at the time that a process spends on a processor now and then, and not everywhere; so it is looked
// at here as well.
tbiProcessEnd::HOW waitFor(HANDLE process, const tbiProcessOrder& order, Clock::time_point start)
{
    while (WaitForSingleObject(process, LONGEST_WAIT_MS) == WAIT_TIMEOUT)
    {
        const bool spent = hasPassed(processorTimeOf(process), order.processorTime);
        if (!spent && !hasPassed(secondsSince(start), order.time))
            continue;
        TerminateProcess(process, ENDED);
        WaitForSingleObject(process, INFINITE);
        return spent ? tbiProcessEnd::PROCESSOR_TIME : tbiProcessEnd::TIME;
    }
    return tbiProcessEnd::EXITED;
}

void describeEnd(tbiProcessEnd& end, HANDLE process, const tbiProcessOrder& order)
{
    DWORD code = 0;
    GetExitCodeProcess(process, &code);
    end.code = code;
    if (end.how != tbiProcessEnd::EXITED)
        return;
    if (code == ERROR_NOT_ENOUGH_QUOTA && hasPassed(processorTimeOf(process), order.processorTime))
        end.how = tbiProcessEnd::PROCESSOR_TIME;
    if (end.how != tbiProcessEnd::EXITED || code < FIRST_EXCEPTION)
        return;
    end.how = tbiProcessEnd::STOPPED;
    char text[32];
    std::snprintf(text, sizeof text, "exception 0x%08lX", code);
    end.text = text;
}

} // namespace

tbiProcessEnd tbiRunProcess(const tbiProcessOrder& order)
{
    tbiProcessEnd end;
    const Clock::time_point start = Clock::now();
    StartSettings settings;
    const Handle job(makeJob(order));
    if (!settings.isGood() || !job)
    {
        end.text = errorText("its limits cannot be set");
        return end;
    }
    std::wstring line = commandLine(order);
    PROCESS_INFORMATION started = {};
    const BOOL created = CreateProcessW(wide(order.program).c_str(), line.data(), nullptr, nullptr, TRUE,
                                        CREATE_SUSPENDED | CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT,
                                        nullptr, nullptr, settings.get(), &started);
    if (!created)
    {
        end.text = errorText("the program cannot be started");
        return end;
    }
    const Handle process(started.hProcess);
    const Handle thread(started.hThread);
    if (!AssignProcessToJobObject(job, process))
    {
        end.text = errorText("its limits cannot be set");
        TerminateProcess(process, ENDED);
        return end;
    }
    ResumeThread(thread);
    end.how = waitFor(process, order, start);
    end.seconds = secondsSince(start);
    describeEnd(end, process, order);
    return end;
}

// The mode is the process's own: the parent's, which its children begin with, is not touched. The parent's job ends the
// child with it.
void tbiBeginChild() noexcept
{
    SetErrorMode(GetErrorMode() | SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
}

bool tbiLimitsMemory()
{
    return true;
}

const char* tbiProgramEnding()
{
    return ".exe";
}

// The folder for temporary files is the user's own, and what is made in it has its rights.
std::string tbiMakePrivateDirectory()
{
    static constinit std::atomic<unsigned> counter{0};
    std::string temporary(MAX_PATH + 1, '\0');
    const DWORD n = GetTempPathA(DWORD(temporary.size()), temporary.data());
    if (n == 0 || n > temporary.size())
        return {};
    temporary.resize(n);
    for (int attempt = 0; attempt < DIRECTORY_ATTEMPTS; ++attempt)
    {
        char name[64];
        std::snprintf(name, sizeof name, "tamber-%lx-%llx-%x", GetCurrentProcessId(),
                      static_cast<unsigned long long>(GetTickCount64()), counter.fetch_add(1));
        if (CreateDirectoryA((temporary + name).c_str(), nullptr))
            return temporary + name;
        if (GetLastError() != ERROR_ALREADY_EXISTS)
            return {};
    }
    return {};
}

void tbiRemovePrivateDirectory(const std::string& directory)
{
    if (directory.empty())
        return;
    for (const std::string& name : tbiListFiles(directory))
        DeleteFileA((directory + "\\" + name).c_str());
    RemoveDirectoryA(directory.c_str());
}
