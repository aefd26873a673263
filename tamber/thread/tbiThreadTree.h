#pragma once

#include <tamber/thread/tbThread.h>
#include <tamber/thread/tbiSpinMutex.h>

#include <mutex>

class tbiThreadControl;

// What stands in a thread's work queue. Actions and requests are referenced by their records.
struct tbThread::Record
{
    enum KIND : std::uint32_t
    {
        DELETE_NOW = 1,       // the deletion of an object has gone round
        DELETE_REFERENCE = 2, // the deletion of an object passes, and goes on to the downstream threads
        ACTION = 3,
        QUEUED_ACTION = 4, // handled as ACTION
        FLUSH = 5,
        DELETE_PASS = 6, // passes and goes no further: another upstream thread's record goes on
        STALE = 7        // of a deletion that starts again as soon as the tree is unlocked
    };
    std::uint32_t kind;
    tbBase* object;

    bool isPass() const { return kind == DELETE_REFERENCE || kind == DELETE_PASS; }
    /// Is taken with the tree locked: a change of the tree takes such records back.
    bool belongsToTree() const { return isPass() || kind == STALE; }
};

// The tree of threads and the deletions on their way through it, locked while an object of this class lives.
//
// A deletion passes the application thread and every attachment once: an object starts with count -1 - attachments,
// each pass counts up, and the pass that reaches 0 posts the delete-now record. A thread below several others gets one
// record from each and goes on with the one of its first upstream thread. A thread that has ended passes at once. When
// the tree changes, deletions under way are taken out of the queues and start again, so that the number that an object
// started with is always the number of passes that it gets.
class tbThread::Tree
{
public:
    Tree();
    /// Unlocks, then deletes what has nobody left to wait for.
    ~Tree();
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    void addThread(tbThread* thread);
    /// The thread has no children any more.
    void removeThread(tbThread* thread);
    static void threadEnded(tbiThreadControl& control);

    bool attach(tbThread* parent, tbThread* child);
    /// The reference on the child is the caller's afterwards.
    bool detach(tbThread* parent, tbThread* child);
    /// The child, null when there is none left.
    tbThread* detachAny(tbThread* parent);
    bool isAbove(tbThread* above, tbThread* thread) const;
    /// `thread` and all threads above it, without duplicates.
    static void findAncestry(tbThread* thread, tbTList<tbThread*>& found);

    /// False, and nothing done, when there is nobody to wait for.
    bool startDeletion(tbBase* object);
    /// Takes the delete-reference record at the head of the thread's queue and passes it. Does nothing when another
    /// record stands there.
    void passFirst(tbThread* thread);

private:
    class Restart;

    void pass(tbThread* thread, tbBase* object, bool goesOn);
    void goOn(tbThread* parent, tbBase* object);
    void deleteNow(tbBase* object);
    void endPasses(tbThread* thread);
    static void unlinkChild(tbThread* parent, int i);

    std::unique_lock<tbiSpinMutex> held;
    tbTList<tbBase*> deletable;
};
