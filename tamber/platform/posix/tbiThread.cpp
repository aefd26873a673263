#include <tamber/platform/tbiThread.h>

#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

constexpr unsigned NUM_MASK_BITS = 32;

// Nice values by class and step. Above the normal class the system may ask for a privilege.
constexpr int niceValues[3][tbiPrioritySteps] = {
    {19, 17, 15, 13, 11, 9},
    {4, 2, 0, -2, -4, -6},
    {-8, -10, -12, -14, -16, -18},
};

constinit pthread_key_t endKey = 0;
constinit bool endInstalled = false;

} // namespace

tbiThreadHandle tbiOpenThread() noexcept
{
    const auto id = static_cast<std::uint32_t>(::syscall(SYS_gettid));
    return {id, id};
}

void tbiCloseThread(tbiThreadHandle& thread) noexcept
{
    thread = {};
}

bool tbiSetThreadPriority(const tbiThreadHandle& thread, tbiPriorityClass priorityClass, int step) noexcept
{
    const auto id = static_cast<pid_t>(thread.id);
    sched_param parameters = {};
    if (priorityClass == tbiPriorityClass::REAL_TIME)
    {
        const int lowest = ::sched_get_priority_min(SCHED_RR);
        parameters.sched_priority =
            lowest + step * (::sched_get_priority_max(SCHED_RR) - lowest) / tbiPrioritySteps;
        return ::sched_setscheduler(id, SCHED_RR, &parameters) == 0;
    }
    const int niceValue = niceValues[static_cast<int>(priorityClass)][step];
    return ::sched_setscheduler(id, SCHED_OTHER, &parameters) == 0 &&
           ::setpriority(PRIO_PROCESS, static_cast<id_t>(id), niceValue) == 0;
}

bool tbiSetThreadProcessors(const tbiThreadHandle& thread, unsigned mask) noexcept
{
    cpu_set_t processors;
    CPU_ZERO(&processors);
    for (unsigned i = 0; i < NUM_MASK_BITS; ++i)
        if (mask >> i & 1)
            CPU_SET(i, &processors);
    return ::sched_setaffinity(static_cast<pid_t>(thread.id), sizeof processors, &processors) == 0;
}

unsigned tbiGetProcessors() noexcept
{
    cpu_set_t processors;
    CPU_ZERO(&processors);
    if (::sched_getaffinity(0, sizeof processors, &processors) != 0)
        return ~0u;
    unsigned mask = 0;
    for (unsigned i = 0; i < NUM_MASK_BITS; ++i)
        if (CPU_ISSET(i, &processors))
            mask |= 1u << i;
    return mask;
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
    return false;
}
