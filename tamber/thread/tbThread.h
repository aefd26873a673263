#pragma once

#include <tamber/kernel/tbBase.h>

#include <mutex>

class tbAction;
class tbFlushThread;
class tbQueue;
class tbSemaphore;
class tbTravContext;
class tbiThreadControl;

// A thread with a work queue and a list of actions that it runs on every pass of its loop. Threads form a tree: the
// application thread is the root, every other thread hangs below one or several upstream threads. A thread is born
// suspended and starts with run().
//
// Suspending and killing take effect at the thread's next safe point: the top of its loop, or a wait for a semaphore
// or an event. The destructor waits for the thread to end. A derived class whose apply() uses its own fields ends the
// thread in its own destructor with endThread().
//
// When memory is out, or the system has no thread, a thread is born dead: it takes no work, and without memory it has
// neither queue nor context.
class TB_API tbThread : public tbBase
{
    TB_CLASS(tbThread, tbBase)

public:
    enum MODE : int
    {
        THREAD_YIELD = 0, // the loop yields the processor before each pass
        THREAD_WAIT = 1   // the loop waits before each pass: n calls of run() give n passes
    };

    enum STATE : int
    {
        STATE_RUNNING = 1,
        STATE_SUSPENDED = 2,
        STATE_DEAD = 4
    };

    tbThread();
    /// With `adopt`, stands for the calling thread, which counts as running and handles its queue itself.
    explicit tbThread(bool adopt);
    tbThread(const tbThread&) = delete;
    tbThread& operator=(const tbThread&) = delete;

    /// Applies every action with (argument, null), in order. False when any of them returned false.
    virtual bool apply(tbBase* argument);
    /// Lets the thread run, unless it is dead, and releases one pass of a loop that waits.
    virtual void run();
    /// As run(); `argument` is what the passes are given from now on. Not referenced.
    virtual void run(tbBase* argument);
    virtual void suspend();
    virtual void kill();
    /// 0..31: idle class to 10, normal to 17, high to 24, real-time to 31. False outside, and when refused.
    virtual bool setPriority(int priority);
    /// Bit i allows processor i. False when none of the process's is among them, and when refused.
    virtual bool setProcessors(unsigned int mask);
    virtual void setThreadMode(MODE mode);
    /// Handles the records that the work queue holds when it begins, or, with `untilEmpty`, all until it is empty.
    /// Called by the thread itself; an application calls it for the application thread.
    virtual void processQueue(bool untilEmpty);
    /// Take a reference; null is ignored. A thread picks changes up with its next pass.
    virtual void addAction(tbAction* action);
    virtual void removeAction(tbAction* action);
    virtual void addInitAction(tbAction* action);
    virtual void removeInitAction(tbAction* action);
    /// Posts work, with a reference, for the thread's next pass. Dropped when the thread is dead.
    virtual void addActionToQueue(tbAction* action);
    virtual void addActionToQueue(tbFlushThread* request);
    /// Returns when all that is in the work queue now has been handled, here and in every downstream thread; at once
    /// when the thread cannot run. From the thread itself, handles the queue in place.
    virtual void flushQueue();
    virtual bool inCurrentThread();
    virtual int getNumDownstreamThreads();
    /// Null outside the range.
    virtual tbThread* getDownstreamThread(int i);
    /// Flushes, then takes a reference. False for null, this thread, the application thread, a child of this thread
    /// and an ancestor of it.
    virtual bool addDownstreamThread(tbThread* child);
    /// Flushes, then drops the reference. False for a stranger.
    virtual bool removeDownstreamThread(tbThread* child);
    /// True when `thread` lies anywhere above this one.
    virtual bool hasAncestor(tbThread* thread);
    /// True when some thread is, or lies above, both this one and `thread`.
    virtual bool shareCommonAncestor(tbThread* thread);

    /// The object of the calling thread, null when it has none.
    static tbThread* getCurrentThread();

    MODE getThreadMode() const { return mode.load(std::memory_order_relaxed); }
    STATE getState() const;
    bool isAdopted() const { return (flags & ADOPTED) != 0; }
    /// For walks on this thread; it belongs to the thread. Null when there was no memory for the thread.
    tbTravContext* getTravContext() const { return context; }
    /// The records that wait. Null when there was no memory for the thread.
    tbQueue* getQueue() const { return queue; }
    int getNumActions() const;
    int getNumInitActions() const;
    int getNumUpstreamThreads() const;
    /// Null outside the range, and for the root.
    tbThread* getUpstreamThread(int i) const;
    tbThread* getFirstUpstreamThread() const;

    /// Attachments of one thread below another in the whole process. While there are none, objects are deleted at
    /// once.
    static int getTotalDownstreamThreads() { return numDownstreamThreads.load(std::memory_order_acquire); }
    /// Sends an object whose last reference was dropped round the threads: sets its count for their number and posts
    /// the record to the application thread. False, and nothing done, when there is nobody to wait for.
    static bool postDeleteReference(tbBase* object);
    /// Ends every thread that the library made and waits for it, a few seconds at most; done when the library is
    /// unloaded. Never waits for the calling thread.
    static void stopAll();

protected:
    ~tbThread() override;

    /// Kills the thread and waits until it has ended, unless it is the calling one.
    void endThread();

private:
    friend class tbiThreadControl;
    class Tree;
    struct Record;

    static constexpr unsigned ADOPTED = 1;

    bool makeParts();
    void releaseParts();
    void leaveTree();
    void runLoop(tbiThreadControl& own);
    bool waitForPass();
    bool canRun() const;
    bool post(std::uint32_t kind, tbBase* carried);
    bool processRecord();
    void flushDownstream();
    void flushBefore(tbThread* child);
    void waitForFlush(unsigned ticket);
    void dropRecords();

    tbFlushThread* flushRequest = nullptr;
    tbTList<tbThread*> upstreamThreads;   // with the three below, guarded by the tree's lock
    tbTList<tbThread*> downstreamThreads; // referenced
    tbThread* firstUpstreamThread = nullptr;
    bool ended = false; // handles no more records; what is posted passes on at once
    tbQueue* queue = nullptr;
    tbiThreadControl* control = nullptr; // handle, id and state
    std::atomic<MODE> mode{THREAD_YIELD};
    const std::uint16_t flags;
    std::atomic<tbBase*> runArgument{nullptr};
    tbSemaphore* wakeUp = nullptr;
    tbTravContext* context = nullptr;
    tbTList<tbAction*> initActions;
    tbTList<tbAction*> actions;
    mutable std::mutex listsMutex; // guards the two lists of actions
    std::atomic<unsigned> flushesPosted{0};
    std::atomic<unsigned> flushesDone{0};
    tbThread* nextThread = nullptr; // among all thread objects
    tbThread* previousThread = nullptr;

    static std::atomic<int> numDownstreamThreads;
};
