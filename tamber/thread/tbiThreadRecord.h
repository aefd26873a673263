#pragma once

#include <atomic>
#include <cstdint>

class tbLock;
class tbiThreadControl;

// What the library keeps for one operating-system thread: the locks that it holds and its thread object. Made when the
// thread first needs it, gone when the thread ends; locks that are held then are freed for those who wait.
//
// Its address stands for the thread in the locks' owner words. It lies on the heap, and a plain pointer leads to it: a
// thread-local object with a destructor would keep the library from being unloaded.
class alignas(8) tbiThreadRecord
{
public:
    tbiThreadRecord(const tbiThreadRecord&) = delete;
    tbiThreadRecord& operator=(const tbiThreadRecord&) = delete;

    /// The calling thread's record.
    static tbiThreadRecord* current() { return own ? own : make(); }
    /// Null when the calling thread has none yet.
    static tbiThreadRecord* find() { return own; }
    /// A lock is destroyed that another thread holds.
    static void forget(const tbLock* lock);
    /// Releases once, from the last acquired to the first, what the calling thread holds.
    static void releaseHeld();
    /// The library is being unloaded: threads that end from now on are not noticed.
    static void stopWatching();
    /// Frees the calling thread's record when it has nothing to tell. The last thing that the library does.
    static void freeOwn();

    /// The record as the owner word of a lock; its lowest bit is free.
    std::uintptr_t getWord() const { return reinterpret_cast<std::uintptr_t>(this); }

    /// The place that the lock keeps while it is held; -1 when there is no memory for one: should the thread end while
    /// it holds the lock, the lock stays taken.
    int add(const tbLock* lock)
    {
        if (top == capacity) [[unlikely]]
        {
            makeRoom();
            if (top == capacity)
                return -1;
        }
        places[top].store(lock, std::memory_order_relaxed);
        return top++;
    }
    void remove(int place)
    {
        if (place < 0) [[unlikely]]
            return;
        places[place].store(nullptr, std::memory_order_relaxed);
        while (top > 0 && !places[top - 1].load(std::memory_order_relaxed))
            --top;
    }

    tbiThreadControl* getControl() const { return control; }
    /// Keeps a reference on `newControl`, which may be null.
    void setControl(tbiThreadControl* newControl);

private:
    using Place = std::atomic<const tbLock*>;
    static constexpr int NUM_FIRST_PLACES = 24;

    tbiThreadRecord() = default;
    ~tbiThreadRecord();
    static tbiThreadRecord* make();
    static void threadEnded(void* record);
    void makeRoom();
    void abandonLocks();

    static thread_local constinit tbiThreadRecord* own;

    Place* places = firstPlaces;
    int capacity = NUM_FIRST_PLACES;
    int top = 0;
    tbiThreadControl* control = nullptr;
    Place firstPlaces[NUM_FIRST_PLACES] = {};
};
