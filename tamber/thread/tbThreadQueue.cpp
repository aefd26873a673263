// The work queue of a thread: posting records, handling them, and waiting until they are handled.
#include <tamber/thread/tbThread.h>

#include <tamber/action/tbAction.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/thread/tbFlushThread.h>
#include <tamber/thread/tbQueue.h>
#include <tamber/thread/tbSemaphore.h>
#include <tamber/thread/tbiHeldList.h>
#include <tamber/thread/tbiLockGuard.h>
#include <tamber/thread/tbiThreadControl.h>
#include <tamber/thread/tbiThreadTree.h>

namespace
{

// Who waits for a flush looks up this often: the thread may have been suspended, or may itself be flushed by the one
// that it waits for.
constexpr int FLUSH_LOOK_MILLISECONDS = 2;

} // namespace

bool tbThread::postDeleteReference(tbBase* object)
{
    Tree tree;
    return tree.startDeletion(object);
}

bool tbThread::post(std::uint32_t kind, tbBase* carried)
{
    if (!carried || getState() == STATE_DEAD)
        return false;
    carried->ref();
    const Record record = {kind, carried};
    if (queue->put(&record))
        return true;
    carried->unRef();
    return false;
}

void tbThread::addActionToQueue(tbAction* action)
{
    post(Record::ACTION, action);
}

void tbThread::addActionToQueue(tbFlushThread* request)
{
    if (!post(Record::FLUSH, request) && request)
        request->finish(); // nobody will apply it, so nobody waits for that
}

void tbThread::processQueue(bool untilEmpty)
{
    tbiThreadControl* const own = control;
    if (!own)
        return;
    own->ref();
    bool goesOn = true;
    do
    {
        // Records that are posted meanwhile wait for the next call, so that a thread always comes to its actions.
        for (int waiting = queue->getCount(); waiting > 0 && goesOn; --waiting)
            goesOn =
                processRecord() && own->getObject() == this; // a record may have deleted this very object
    } while (goesOn && untilEmpty && queue->getCount() > 0);
    own->unRef();
}

bool tbThread::processRecord()
{
    Record record;
    {
        tbiLockGuard guard(queue->lock);
        if (!queue->sample(&record))
            return false;
        if (!record.belongsToTree())
            queue->get(&record);
    }
    switch (record.kind)
    {
    case Record::DELETE_NOW:
        tbBase::markDeleted(record.object);
        break;
    case Record::DELETE_REFERENCE:
    case Record::DELETE_PASS:
    case Record::STALE:
    {
        Tree tree;
        tree.passFirst(this);
        break;
    }
    case Record::ACTION:
    case Record::QUEUED_ACTION:
    {
        auto* action = static_cast<tbAction*>(record.object);
        action->apply(this, nullptr);
        action->unRef();
        break;
    }
    case Record::FLUSH:
    {
        auto* request = static_cast<tbFlushThread*>(record.object);
        flushDownstream();
        if (request == flushRequest)
            flushesDone.fetch_add(1, std::memory_order_release);
        request->apply(this, nullptr);
        request->unRef();
        break;
    }
    default:
        break;
    }
    return true;
}

void tbThread::flushDownstream()
{
    tbiHeldList<tbThread> threads;
    {
        const Tree tree;
        threads.take(downstreamThreads);
    }
    for (int i = threads.getNum() - 1; i >= 0; --i)
        threads[i]->flushQueue();
}

void tbThread::flushQueue()
{
    // What is handled meanwhile, here or there, may release this thread.
    const tbRef<tbThread> kept(getRefCount() > 0 ? this : nullptr);
    if (inCurrentThread())
    {
        processQueue(false);
        flushDownstream();
        return;
    }
    if (!canRun())
        return;
    unsigned ticket = 0;
    {
        tbiLockGuard guard(queue->lock); // tickets in the order of their records
        if (!post(Record::FLUSH, flushRequest))
            return;
        ticket = ++flushesPosted;
    }
    control->nudge();
    waitForFlush(ticket);
}

void tbThread::waitForFlush(unsigned ticket)
{
    tbThread* waiting = getCurrentThread();
    while (canRun() && static_cast<int>(flushesDone.load(std::memory_order_acquire) - ticket) < 0)
    {
        if (flushRequest->finished->take(FLUSH_LOOK_MILLISECONDS, false) == tbSemaphore::INTERRUPTED)
            return;
        if (waiting && waiting->flushesPosted != waiting->flushesDone)
            waiting->processQueue(false);
    }
}
