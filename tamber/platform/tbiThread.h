#pragma once

#include <cstdint>

// What the standard library lacks of threads.

// One operating-system thread, for the operations below. An id of 0 stands for none.
struct tbiThreadHandle
{
    std::uintptr_t handle = 0;
    std::uint32_t id = 0;
};

/// Handle of the calling thread; closed with tbiCloseThread().
tbiThreadHandle tbiOpenThread() noexcept;
void tbiCloseThread(tbiThreadHandle& thread) noexcept;

// Classes of priority, each with the same steps inside.
enum class tbiPriorityClass : int
{
    IDLE,
    NORMAL,
    HIGH,
    REAL_TIME
};
/// Steps inside a class: lowest, below normal, normal, above normal, highest, time-critical.
inline constexpr int tbiPrioritySteps = 6;

/// False when the system refuses.
bool tbiSetThreadPriority(const tbiThreadHandle& thread, tbiPriorityClass priorityClass, int step) noexcept;
/// Bit i allows processor i. False when the system refuses.
bool tbiSetThreadProcessors(const tbiThreadHandle& thread, unsigned mask) noexcept;
/// The processors, of the first 32, that the calling thread may run on.
unsigned tbiGetProcessors() noexcept;

/// From now on `ended` is called, on each thread that armed itself, with the thread's value when it ends. Nothing
/// that must be destroyed by the thread is left behind, so that the library can be unloaded while threads live.
bool tbiInstallThreadEnd(void (*ended)(void*)) noexcept;
/// Sets the calling thread's value. A thread may come to its end several times, and then with null.
void tbiArmThreadEnd(void* value) noexcept;
/// `ended` is not called any more.
void tbiRemoveThreadEnd() noexcept;

/// True while the process is being torn down and its other threads are gone already, wherever they were: what they
/// hold is never given back, and nobody is worth waiting for.
bool tbiIsProcessEnding() noexcept;
