#include <tamber/thread/tbiThreadTree.h>

#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbiMemoryWatch.h>
#include <tamber/thread/tbQueue.h>
#include <tamber/thread/tbiLockGuard.h>
#include <tamber/thread/tbiSpinMutex.h>
#include <tamber/thread/tbiThreadControl.h>
#include <tamber/thread/tbiWait.h>

#include <climits>

namespace
{

constinit tbiSpinMutex treeMutex;
constinit tbThread* firstThread = nullptr; // of all thread objects

} // namespace

// Around a change of the attachments: keeps one record of each deletion under way, and starts them again for the new
// number. Needs no memory: what is kept stays in its queue.
class tbThread::Tree::Restart
{
public:
    explicit Restart(Tree& changing) : tree(changing)
    {
        for (tbThread* thread = firstThread; thread; thread = thread->nextThread)
            rotate(thread->queue, &Restart::mark);
    }
    ~Restart()
    {
        for (tbThread* thread = firstThread; thread; thread = thread->nextThread)
            rotate(thread->queue, &Restart::restart);
    }
    Restart(const Restart&) = delete;
    Restart& operator=(const Restart&) = delete;

private:
    static constexpr int TO_START = INT_MIN; // the count of an object whose deletion is to start again

    /// Hands over what the queue holds, each record once, and puts back, in order, those that are kept.
    void rotate(tbQueue* records, bool (Restart::*keep)(Record&))
    {
        tbiLockGuard guard(records->lock);
        Record record;
        for (int waiting = records->getCount(); waiting > 0; --waiting)
            if (records->get(&record) && (this->*keep)(record))
                records->put(&record); // into the room that it left
    }
    bool mark(Record& record)
    {
        if (!record.isPass())
            return true;
        if (record.object->getRefCount() == TO_START)
            return false;
        record.object->setRefCount(TO_START);
        record.kind = Record::STALE;
        return true;
    }
    bool restart(Record& record)
    {
        if (record.kind != Record::STALE)
            return true;
        if (!tree.startDeletion(record.object))
            tree.deleteNow(record.object);
        return false;
    }

    Tree& tree;
};

tbThread::Tree::Tree() : held(tbiHold(treeMutex)) {}

tbThread::Tree::~Tree()
{
    if (deletable.getNum() == 0)
        return;
    if (held.owns_lock())
        held.unlock();
    for (tbBase* object : deletable)
        tbBase::markDeleted(object);
}

void tbThread::Tree::addThread(tbThread* thread)
{
    thread->nextThread = firstThread;
    if (firstThread)
        firstThread->previousThread = thread;
    firstThread = thread;
}

void tbThread::Tree::removeThread(tbThread* thread)
{
    if (thread->upstreamThreads.getNum() + thread->queue->getCount() > 0)
    {
        const Restart restart(*this);
        // Nothing above references this thread any more, or it would live.
        while (thread->upstreamThreads.getNum() > 0)
        {
            tbThread* parent = thread->upstreamThreads[0];
            unlinkChild(parent, parent->downstreamThreads.getIndex(thread));
        }
    }
    (thread->previousThread ? thread->previousThread->nextThread : firstThread) = thread->nextThread;
    if (thread->nextThread)
        thread->nextThread->previousThread = thread->previousThread;
    thread->control->forgetObject();
}

void tbThread::Tree::threadEnded(tbiThreadControl& control)
{
    Tree tree;
    tbThread* thread = control.getObject();
    // The application's queue is handled by whoever handles it, also when its thread is gone.
    if (thread && thread != tbGetAppThread())
        tree.endPasses(thread);
}

void tbThread::Tree::endPasses(tbThread* thread)
{
    thread->ended = true;
    struct Passes
    {
        Tree& tree;
        tbThread* from;
    } passes{*this, thread};
    thread->queue->takeOut(
        [](const void* item, void* passesOf)
        {
            const auto* record = static_cast<const Record*>(item);
            const auto* to = static_cast<Passes*>(passesOf);
            if (record->isPass())
                to->tree.pass(to->from, record->object, record->kind == Record::DELETE_REFERENCE);
            return record->isPass();
        },
        &passes);
}

bool tbThread::Tree::attach(tbThread* parent, tbThread* child)
{
    // The application thread is the root, and the tree has no circles; without memory it is not known.
    const tbiMemoryWatch memory;
    if (!parent->control || !child->control || child == parent || child == tbGetAppThread() ||
        parent->downstreamThreads.contains(child) || isAbove(child, parent) || memory.ranOut())
        return false;
    const Restart restart(*this);
    if (child->upstreamThreads.add(parent) < 0)
        return false;
    if (parent->downstreamThreads.add(child) < 0)
    {
        child->upstreamThreads.removeLast();
        return false;
    }
    child->refNoCheck();
    if (!child->firstUpstreamThread)
        child->firstUpstreamThread = parent;
    numDownstreamThreads.fetch_add(1, std::memory_order_acq_rel);
    return true;
}

bool tbThread::Tree::detach(tbThread* parent, tbThread* child)
{
    const int i = parent->downstreamThreads.getIndex(child);
    if (i < 0)
        return false;
    const Restart restart(*this);
    unlinkChild(parent, i);
    return true;
}

tbThread* tbThread::Tree::detachAny(tbThread* parent)
{
    tbThread* child = parent->downstreamThreads.getNum() > 0 ? parent->downstreamThreads[0] : nullptr;
    detach(parent, child);
    return child;
}

void tbThread::Tree::unlinkChild(tbThread* parent, int i)
{
    tbThread* child = parent->downstreamThreads[i];
    parent->downstreamThreads.removeIndex(i);
    child->upstreamThreads.remove(parent);
    if (child->firstUpstreamThread == parent)
        child->firstUpstreamThread =
            child->upstreamThreads.getNum() > 0 ? child->upstreamThreads[0] : nullptr;
    numDownstreamThreads.fetch_sub(1, std::memory_order_acq_rel);
}

void tbThread::Tree::findAncestry(tbThread* thread, tbTList<tbThread*>& found)
{
    found.add(thread);
    for (int i = 0; i < found.getNum(); ++i)
        for (tbThread* above : found[i]->upstreamThreads)
            found.addUnique(above);
}

bool tbThread::Tree::isAbove(tbThread* above, tbThread* thread) const
{
    tbTList<tbThread*> ancestry;
    findAncestry(thread, ancestry);
    return above != thread && ancestry.contains(above);
}

bool tbThread::Tree::startDeletion(tbBase* object)
{
    const int passes = numDownstreamThreads.load(std::memory_order_relaxed);
    tbThread* root = tbGetAppThread();
    if (!root || passes == 0)
        return false;
    object->setRefCount(-1 - passes);
    const Record record = {Record::DELETE_REFERENCE, object};
    if (!root->queue->put(&record))
        pass(root, object, true);
    return true;
}

void tbThread::Tree::passFirst(tbThread* thread)
{
    Record record;
    if (!thread->queue->sample(&record) || !record.isPass() || !thread->queue->get(&record))
        return;
    pass(thread, record.object, record.kind == Record::DELETE_REFERENCE);
}

void tbThread::Tree::pass(tbThread* thread, tbBase* object, bool goesOn)
{
    if (object->passDeletion())
    {
        deleteNow(object);
        return;
    }
    if (!goesOn)
        return;
    goOn(thread, object);
    if (thread != tbGetAppThread())
        return;
    // Attachments in trees of their own are counted like all others; nobody but the root reaches them.
    for (tbThread* other = firstThread; other; other = other->nextThread)
        if (other != thread && other->upstreamThreads.getNum() == 0)
            goOn(other, object);
}

void tbThread::Tree::goOn(tbThread* parent, tbBase* object)
{
    for (tbThread* child : parent->downstreamThreads)
    {
        const bool goesOn = child->firstUpstreamThread == parent;
        const Record record = {goesOn ? Record::DELETE_REFERENCE : Record::DELETE_PASS, object};
        if (child->ended || !child->queue->put(&record))
            pass(child, object, goesOn);
    }
}

void tbThread::Tree::deleteNow(tbBase* object)
{
    tbThread* root = tbGetAppThread();
    const Record record = {Record::DELETE_NOW, object};
    if ((!root || !root->queue->put(&record)) && deletable.add(object) < 0)
        tbBase::markDeleted(object);
}
