#define _FILE_OFFSET_BITS 64 // NOLINT: limits above 4 GiB for 32-bit programs, before any system header

#include <tamber/platform/tbiProcess.h>

#include <tamber/platform/posix/tbiUntilDone.h>
#include <tamber/platform/tbiModule.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace
{

using Clock = std::chrono::steady_clock;

constexpr double LONGEST_WAIT = 1.0;                 // seconds until the clock is looked at again
constexpr double MOST_PROCESSOR_TIME = 1e9;          // seconds; more are no limit to speak of
constexpr auto PAUSE = std::chrono::milliseconds(2); // where an end cannot be waited for

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool LIMITS_MEMORY = false;
#elif defined(__has_feature)
constexpr bool LIMITS_MEMORY = !__has_feature(address_sanitizer) && !__has_feature(thread_sanitizer);
#else
constexpr bool LIMITS_MEMORY = true;
#endif

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// The child's standard input, which is empty and ends once the child is limited: a program that reads it to the end does
// nothing before that.
class Gate
{
public:
    Gate()
    {
        if (pipe2(ends, O_CLOEXEC) != 0)
            ends[0] = ends[1] = -1;
    }
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;
    ~Gate()
    {
        open();
        if (ends[0] >= 0)
            close(ends[0]);
    }

    bool isMade() const { return ends[0] >= 0; }
    int getInput() const { return ends[0]; }
    void open()
    {
        if (ends[1] >= 0)
            close(std::exchange(ends[1], -1));
    }

private:
    int ends[2];
};

// What the child begins with: no file of ours but the empty standard streams, and signals as for a new program.
class SpawnSettings
{
public:
    explicit SpawnSettings(const Gate& gate)
    {
        posix_spawn_file_actions_init(&files);
        note(posix_spawn_file_actions_adddup2(&files, gate.getInput(), STDIN_FILENO));
        for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
            note(posix_spawn_file_actions_addopen(&files, stream, "/dev/null", O_WRONLY, 0));
        note(posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1));
        posix_spawnattr_init(&attributes);
        sigset_t signals;
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&attributes, &signals);
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes, &signals);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings()
    {
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&files);
    }

    /// 0, or the number of the error.
    int spawn(pid_t& child, const char* program, char* const* arguments) const
    {
        return error ? error : posix_spawn(&child, program, &files, &attributes, arguments, environ);
    }

private:
    void note(int result)
    {
        if (!error)
            error = result;
    }

    int error = 0;
    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
};

bool setLimit(pid_t child, int resource, rlim_t soft, rlim_t hard)
{
    rlimit limit = {};
    if (prlimit(child, __rlimit_resource(resource), nullptr, &limit) != 0)
        return false;
    limit.rlim_max = std::min(limit.rlim_max, hard);
    limit.rlim_cur = std::min(limit.rlim_max, soft);
    return prlimit(child, __rlimit_resource(resource), &limit, nullptr) == 0;
}

// A child that has not come far yet is limited from outside, because nothing but its start can run between the
// copying of a process with threads and the new program.
bool setLimits(pid_t child, const tbiProcessOrder& order)
{
    bool set = setLimit(child, RLIMIT_CORE, 0, 0);
    if (order.memory > 0 && LIMITS_MEMORY)
        set = setLimit(child, RLIMIT_AS, rlim_t(order.memory), rlim_t(order.memory)) && set;
    // The soft limit is a signal that says why, the hard one ends a program that holds it off.
    if (order.processorTime > 0)
    {
        const auto seconds = rlim_t(std::ceil(std::min(order.processorTime, MOST_PROCESSOR_TIME)));
        set = setLimit(child, RLIMIT_CPU, seconds, seconds + 2) && set;
    }
    return set;
}

// Waits for the end of a child, or for `seconds` if that is less. The end may be missed, never invented.
void waitForEnd(int processDescriptor, double seconds)
{
    if (processDescriptor < 0)
    {
        std::this_thread::sleep_for(PAUSE);
        return;
    }
    pollfd end = {processDescriptor, POLLIN, 0};
    poll(&end, 1, int(std::ceil(std::clamp(seconds, 0.001, LONGEST_WAIT) * 1000)));
}

// The status of the child, which is killed when its time is over. False when the program lets nobody wait for its
// children; the child has ended then.
bool waitFor(pid_t child, double limit, Clock::time_point start, int& status, bool& late)
{
    const int descriptor = int(syscall(SYS_pidfd_open, child, 0));
    late = false;
    pid_t ended = 0;
    while ((ended = tbiUntilDone([&] { return waitpid(child, &status, WNOHANG); })) == 0)
    {
        const double left = limit > 0 ? limit - secondsSince(start) : LONGEST_WAIT;
        if (left <= 0 && !late)
        {
            late = true;
            kill(child, SIGKILL);
        }
        waitForEnd(descriptor, left);
    }
    if (descriptor >= 0)
        close(descriptor);
    return ended == child;
}

void describeEnd(tbiProcessEnd& end, int status, bool late)
{
    if (!WIFSIGNALED(status))
    {
        end.how = tbiProcessEnd::EXITED;
        end.code = std::uint32_t(WEXITSTATUS(status));
        return;
    }
    end.code = std::uint32_t(WTERMSIG(status));
    end.text = "signal " + std::to_string(end.code);
    end.how = WTERMSIG(status) == SIGXCPU ? tbiProcessEnd::PROCESSOR_TIME : tbiProcessEnd::STOPPED;
    if (late && WTERMSIG(status) == SIGKILL)
        end.how = tbiProcessEnd::TIME;
}

} // namespace

tbiProcessEnd tbiRunProcess(const tbiProcessOrder& order)
{
    std::vector<char*> arguments = {const_cast<char*>(order.program.c_str())};
    for (const std::string& argument : order.arguments)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);

    tbiProcessEnd end;
    const Clock::time_point start = Clock::now();
    Gate gate;
    if (!gate.isMade())
    {
        end.text = std::strerror(errno);
        return end;
    }
    pid_t child = -1;
    if (const int error = SpawnSettings(gate).spawn(child, order.program.c_str(), arguments.data()))
    {
        end.text = std::strerror(error);
        return end;
    }
    const bool limited = setLimits(child, order);
    if (!limited)
        kill(child, SIGKILL);
    gate.open();
    int status = 0;
    bool late = false;
    const bool known = waitFor(child, order.time, start, status, late);
    end.seconds = secondsSince(start);
    if (!limited && (!known || WIFSIGNALED(status)))
        end.text = "its limits cannot be set";
    else if (known)
        describeEnd(end, status, late);
    else
        end.how = tbiProcessEnd::EXITED;
    return end;
}

// The parent's thread that started the child waits for it, so it goes with the parent only.
void tbiBeginChild() noexcept
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
}

bool tbiLimitsMemory()
{
    return LIMITS_MEMORY;
}

const char* tbiProgramEnding()
{
    return "";
}

std::string tbiMakePrivateDirectory()
{
    const char* temporary = std::getenv("TMPDIR");
    std::string path = temporary && *temporary == '/' ? temporary : "/tmp";
    path += "/tamber-XXXXXX";
    return mkdtemp(path.data()) ? path : std::string();
}

void tbiRemovePrivateDirectory(const std::string& directory)
{
    if (directory.empty())
        return;
    std::error_code ignored;
    std::filesystem::remove_all(directory, ignored);
}
