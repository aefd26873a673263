#pragma once

#include <tamber/platform/tbiThread.h>
#include <tamber/thread/tbThread.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

// The operating-system side of a thread object: the thread itself, its handle and its state. Shared by the object and
// the thread, so that either may go first.
class tbiThreadControl : public tbAllocated<tbiThreadControl>
{
public:
    /// Count 1.
    explicit tbiThreadControl(tbThread* ofThread) : object(ofThread) {}
    tbiThreadControl(const tbiThreadControl&) = delete;
    tbiThreadControl& operator=(const tbiThreadControl&) = delete;

    void ref() { references.fetch_add(1, std::memory_order_relaxed); }
    void unRef();

    /// The control of the calling thread, null when it has none.
    static tbiThreadControl* getCurrent();

    /// Makes the thread, suspended. False, and dead, when the system refuses.
    bool create();
    /// Takes the calling thread, which runs.
    void adopt();
    void resume();
    void suspend();
    void kill();
    /// Kills the thread and waits until it has ended. An adopted thread is only let go; the calling thread ends by
    /// itself later.
    void end();
    /// Ends a wait of the thread's loop for its next pass.
    void nudge();
    bool setPriority(tbiPriorityClass priorityClass, int step);
    bool setProcessors(unsigned mask);
    /// The process's processors, as they were when this was asked first.
    static unsigned getProcessors();
    /// Kills all threads that were made and waits for them until `limit`.
    static void endAll(std::chrono::milliseconds limit);

    tbThread::STATE getState() const { return state.load(std::memory_order_acquire); }
    /// False for a thread that is suspended, dead, or has ended.
    bool canRun() const
    {
        return getState() == tbThread::STATE_RUNNING && !over.load(std::memory_order_acquire);
    }
    bool isCurrent() const;
    /// Null once the object is gone.
    tbThread* getObject() const { return object.load(std::memory_order_acquire); }
    /// Called with the tree locked: the thread does not reach its object any more.
    void forgetObject() { object.store(nullptr, std::memory_order_release); }

    // For the thread itself.
    /// Stays while the thread is suspended. False when the thread is to end.
    bool passSafePoint();
    /// Not for adopted threads, which end when their program wants.
    bool isToEnd() const { return !adopted && getState() == tbThread::STATE_DEAD; }
    /// The loop ends by itself.
    void die();
    bool isNudged() const { return nudged.load(std::memory_order_acquire); }
    void clearNudge() { nudged.store(false, std::memory_order_release); }
    void beginWait(std::mutex& mutex, std::condition_variable& signal);
    void endWait();
    /// The operating-system thread is on its way out.
    void systemThreadEnded();

private:
    ~tbiThreadControl() = default;

    void main();
    void interruptWait();
    void join();
    /// False when no thread is made any more.
    bool link();
    void unlink();
    static void joinOrphans();

    std::atomic<int> references{1};
    std::atomic<tbThread*> object;
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::atomic<tbThread::STATE> state{tbThread::STATE_SUSPENDED};
    std::atomic<bool> nudged{false};
    std::atomic<bool> over{false}; // the thread touches its object no more
    bool started = false;          // the handle is there
    bool adopted = false;
    std::atomic<bool> givenUp{false}; // did not end in time when the library was unloaded
    tbiThreadHandle handle;
    std::thread::id id;
    std::thread thread;
    std::mutex* waitMutex = nullptr; // of the wait that the thread is in
    std::condition_variable* waitSignal = nullptr;
    tbiThreadControl* next = nullptr; // among those whose thread is not joined yet
    tbiThreadControl* previous = nullptr;
};
