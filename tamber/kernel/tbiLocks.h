#pragma once

class tbLock;

// The kernel's five named locks. Null before the library has loaded and after shut-down, when everything runs
// unlocked on one thread. Taken in one order: group, then type, then plug-in, then base, then memory.
struct tbiLocks
{
    static tbLock* memory;
    static tbLock* base;
    static tbLock* type;
    static tbLock* plugIn;
    static tbLock* group;
};
