#pragma once

#include <atomic>

class tbLock;

// The kernel's five named locks. Null before the library has loaded and after shut-down, when everything runs
// unlocked on one thread. Taken in one order: group, then type, then plug-in, then base, then memory.
struct tbiLocks
{
    static std::atomic<tbLock*> memory; // arenas
    static std::atomic<tbLock*> base;   // deferred deletion
    static std::atomic<tbLock*> type;   // type registry and instance lists
    static std::atomic<tbLock*> plugIn; // plug-in list and loading
    static std::atomic<tbLock*> group;  // deep copies and splitting of shared instances

    static void create();
    /// Releases the locks: group, plug-in, type, base, memory.
    static void release();
};
