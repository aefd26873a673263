#include <tamber/platform/tbiThread.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <pthread.h>

namespace
{

constexpr DWORD classes[] = {IDLE_PRIORITY_CLASS, NORMAL_PRIORITY_CLASS, HIGH_PRIORITY_CLASS,
                             REALTIME_PRIORITY_CLASS};
constexpr int steps[tbiPrioritySteps] = {THREAD_PRIORITY_LOWEST,  THREAD_PRIORITY_BELOW_NORMAL,
                                         THREAD_PRIORITY_NORMAL,  THREAD_PRIORITY_ABOVE_NORMAL,
                                         THREAD_PRIORITY_HIGHEST, THREAD_PRIORITY_TIME_CRITICAL};

// A key of the thread library that std::thread is built on: its destructor runs for every thread of the process.
constinit pthread_key_t endKey = 0;
constinit bool endInstalled = false;

HANDLE handleOf(const tbiThreadHandle& thread)
{
    return reinterpret_cast<HANDLE>(thread.handle);
}

} // namespace

tbiThreadHandle tbiOpenThread() noexcept
{
    HANDLE copy = nullptr;
    const HANDLE process = ::GetCurrentProcess();
    if (!::DuplicateHandle(process, ::GetCurrentThread(), process, &copy, 0, FALSE, DUPLICATE_SAME_ACCESS))
        return {};
    return {reinterpret_cast<std::uintptr_t>(copy), ::GetCurrentThreadId()};
}

void tbiCloseThread(tbiThreadHandle& thread) noexcept
{
    if (thread.id)
        ::CloseHandle(handleOf(thread));
    thread = {};
}

bool tbiSetThreadPriority(const tbiThreadHandle& thread, tbiPriorityClass priorityClass, int step) noexcept
{
    ::SetPriorityClass(::GetCurrentProcess(), classes[static_cast<int>(priorityClass)]);
    return ::SetThreadPriority(handleOf(thread), steps[step]) != 0;
}

bool tbiSetThreadProcessors(const tbiThreadHandle& thread, unsigned mask) noexcept
{
    return ::SetThreadAffinityMask(handleOf(thread), mask) != 0;
}

unsigned tbiGetProcessors() noexcept
{
    DWORD_PTR process = 0;
    DWORD_PTR system = 0;
    if (!::GetProcessAffinityMask(::GetCurrentProcess(), &process, &system))
        return ~0u;
    return static_cast<unsigned>(process);
}

bool tbiInstallThreadEnd(void (*ended)(void*)) noexcept
{
    endInstalled = ::pthread_key_create(&endKey, ended) == 0;
    return endInstalled;
}

void tbiArmThreadEnd(void* value) noexcept
{
    if (endInstalled)
        ::pthread_setspecific(endKey, value);
}

void tbiRemoveThreadEnd() noexcept
{
    if (endInstalled)
        ::pthread_key_delete(endKey);
    endInstalled = false;
}

bool tbiIsProcessEnding() noexcept
{
    using Question = BOOLEAN(NTAPI*)();
    static constinit Question isEnding = nullptr;
    if (!isEnding)
    {
        const FARPROC found = ::GetProcAddress(::GetModuleHandleA("ntdll.dll"), "RtlDllShutdownInProgress");
        isEnding = reinterpret_cast<Question>(reinterpret_cast<void (*)()>(found));
    }
    return isEnding && isEnding();
}
