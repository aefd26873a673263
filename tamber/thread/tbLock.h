#pragma once

#include <tamber/kernel/tbBase.h>

#include <condition_variable>
#include <mutex>

class tbiThreadRecord;

// A re-entrant mutual-exclusion lock with a time-out. The thread that holds it may acquire it again, and releases it
// as often. Locks that a thread holds when it ends are released for it. Without contention neither acquire() nor
// release() enters the operating system.
class TB_API tbLock : public tbBase
{
    TB_CLASS(tbLock, tbBase)

public:
    tbLock();
    /// Takes the time-out; the copy is free.
    tbLock(const tbLock& other);
    tbLock& operator=(const tbLock& other);

    /// Waits up to `timeOut` milliseconds, -1 for ever. Says nothing of the outcome: isHeld() does.
    virtual void acquire(int timeOut) const;
    /// Waits up to the lock's time-out.
    virtual void acquire() const;
    /// Gives one acquisition back. Does nothing on a thread that does not hold the lock.
    virtual void release() const;
    virtual void setTimeOut(int milliseconds);

    /// Tries to acquire without waiting. A true result keeps the lock and is matched by release().
    bool available() const;
    /// True on the thread that holds the lock.
    bool isHeld() const;
    int getTimeOut() const { return timeOut.load(std::memory_order_relaxed); }

    /// Switching off first releases, once each, what the calling thread holds. While locks are off, every operation
    /// returns at once and available() is true.
    static void enableAll(bool enable);
    static bool isEnabled() { return locksEnabled.load(std::memory_order_relaxed); }

    tbBase* createCopy() const override;

protected:
    ~tbLock() override;

private:
    friend class tbiLockGuard;
    friend class tbiThreadRecord;

    /// Acquires, whatever the time-out; false when locks are off, also when they are switched off meanwhile.
    bool take() const;
    /// Gives back what take() acquired, also when locks were switched off since.
    void give() const;
    bool acquireFor(int milliseconds) const;
    bool waitFor(tbiThreadRecord* thread, int milliseconds) const;
    /// Frees the lock, whoever holds it.
    void abandon() const;
    void freeAndWake() const;
    std::uintptr_t getOwnerWord() const;

    // The record of the thread that holds the lock, and whether others wait for it; 0 when it is free.
    mutable std::atomic<std::uintptr_t> owner{0};
    mutable int depth = 0;             // acquisitions of the owner
    mutable std::atomic<int> place{0}; // among the locks that the owner holds
    mutable int waiting = 0;
    std::atomic<int> timeOut{-1};
    mutable std::mutex mutex; // guards the waiting threads only
    mutable std::condition_variable freed;

    static std::atomic<bool> locksEnabled;
};
