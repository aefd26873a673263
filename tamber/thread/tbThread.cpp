#include <tamber/thread/tbThread.h>

#include <tamber/action/tbAction.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/kernel/tbiMemoryWatch.h>
#include <tamber/thread/tbFlushThread.h>
#include <tamber/thread/tbQueue.h>
#include <tamber/thread/tbSemaphore.h>
#include <tamber/thread/tbiHeldList.h>
#include <tamber/thread/tbiThreadControl.h>
#include <tamber/thread/tbiThreadRecord.h>
#include <tamber/thread/tbiThreadTree.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>

TB_DEFINE_SERVICE_CLASS(tbThread, tbBase)

constinit std::atomic<int> tbThread::numDownstreamThreads{0};

namespace
{

constexpr int NUM_QUEUE_SLOTS = 250;
constexpr int MAX_PASSES_DUE = 512;
constexpr std::chrono::milliseconds STOP_LIMIT{3000};

struct PriorityBand
{
    int last;
    tbiPriorityClass priorityClass;
};
constexpr PriorityBand priorityBands[] = {{10, tbiPriorityClass::IDLE},
                                          {17, tbiPriorityClass::NORMAL},
                                          {24, tbiPriorityClass::HIGH},
                                          {31, tbiPriorityClass::REAL_TIME}};

template <class T>
T* held(T* object)
{
    if (object)
        object->ref();
    return object;
}

template <class T>
void drop(T*& part)
{
    if (part)
        part->unRef();
    part = nullptr;
}

// Everything that a list of actions still references is let go, from the last to the first.
void releaseAll(tbTList<tbAction*>& list)
{
    while (list.getNum() > 0)
        list.removeLast()->unRef();
}

void add(std::mutex& mutex, tbTList<tbAction*>& list, tbAction* action)
{
    if (!action)
        return;
    const std::lock_guard guard(mutex);
    if (list.add(action) >= 0)
        action->ref();
}

void remove(std::mutex& mutex, tbTList<tbAction*>& list, tbAction* action)
{
    {
        const std::lock_guard guard(mutex);
        if (!list.checkRemoveOrdered(action))
            return;
    }
    action->unRef();
}

} // namespace

tbThread::tbThread() : tbThread(false) {}

tbThread::tbThread(bool adopt) : flags(adopt ? ADOPTED : 0)
{
    initInstance();
    if (!makeParts())
        return;
    Tree().addThread(this);
    if (adopt)
        control->adopt();
    else
        ended = !control->create();
}

tbThread::~tbThread()
{
    deleteInstance();
    endThread();
    leaveTree();
    dropRecords();
    releaseAll(actions);
    releaseAll(initActions);
    releaseParts();
}

void tbThread::leaveTree()
{
    while (tbThread* child = Tree().detachAny(this))
        child->unRef();
    if (control)
        Tree().removeThread(this);
}

// All or, when memory is out, none: the control tells a thread that has its parts from one that is dead for ever.
bool tbThread::makeParts()
{
    const tbiMemoryWatch memory;
    flushRequest = held(new tbFlushThread);
    queue = held(new tbQueue(int(sizeof(Record)), NUM_QUEUE_SLOTS));
    control = new tbiThreadControl(this);
    wakeUp = held(new tbSemaphore(0, MAX_PASSES_DUE));
    context = held(new tbTravContext);
    tbTraitStack* stack = held(new tbTraitStack(tbTraitStack::TRAV_STACK));
    if (memory.ranOut())
    {
        drop(stack);
        releaseParts();
        return false;
    }
    queue->setMode(tbQueue::GROW);
    context->setTraitStack(stack);
    stack->unRef();
    return true;
}

void tbThread::releaseParts()
{
    drop(context);
    drop(wakeUp);
    drop(control);
    drop(queue);
    drop(flushRequest);
}

void tbThread::dropRecords()
{
    if (!queue)
        return;
    Record record;
    while (queue->get(&record))
    {
        if (record.kind == Record::FLUSH)
            static_cast<tbFlushThread*>(record.object)->finish(); // who waits for it goes on
        if (record.kind == Record::DELETE_NOW)
            tbBase::markDeleted(record.object);
        else if (!record.belongsToTree())
            record.object->unRef();
    }
}

void tbThread::endThread()
{
    if (control)
        control->end();
}

void tbThread::stopAll()
{
    tbiThreadControl::endAll(STOP_LIMIT);
    tbiThreadRecord::stopWatching();
}

tbThread* tbThread::getCurrentThread()
{
    const tbiThreadControl* control = tbiThreadControl::getCurrent();
    return control ? control->getObject() : nullptr;
}

bool tbThread::inCurrentThread()
{
    return control && control->isCurrent();
}

tbThread::STATE tbThread::getState() const
{
    return control ? control->getState() : STATE_DEAD;
}

bool tbThread::canRun() const
{
    return control && control->canRun();
}

bool tbThread::apply(tbBase* argument)
{
    tbiHeldList<tbAction> current;
    {
        const std::lock_guard guard(listsMutex);
        current.take(actions);
    }
    bool all = true;
    for (tbAction* action : current)
        all &= action->apply(argument, nullptr);
    return all;
}

void tbThread::run()
{
    if (!control)
        return;
    control->resume();
    wakeUp->inc();
}

void tbThread::run(tbBase* argument)
{
    runArgument = argument;
    run();
}

void tbThread::suspend()
{
    if (control)
        control->suspend();
}

void tbThread::kill()
{
    if (control)
        control->kill();
}

void tbThread::setThreadMode(MODE newMode)
{
    mode = newMode;
    if (control)
        control->nudge();
}

bool tbThread::setPriority(int priority)
{
    if (priority < 0 || !control)
        return false;
    int first = 0;
    for (const PriorityBand& band : priorityBands)
    {
        if (priority <= band.last)
            return control->setPriority(band.priorityClass, std::min(priority - first, tbiPrioritySteps - 1));
        first = band.last + 1;
    }
    return false;
}

bool tbThread::setProcessors(unsigned int mask)
{
    const unsigned allowed = mask & tbiThreadControl::getProcessors();
    return allowed != 0 && control && control->setProcessors(allowed);
}

void tbThread::addAction(tbAction* action)
{
    add(listsMutex, actions, action);
}

void tbThread::removeAction(tbAction* action)
{
    remove(listsMutex, actions, action);
}

void tbThread::addInitAction(tbAction* action)
{
    add(listsMutex, initActions, action);
}

void tbThread::removeInitAction(tbAction* action)
{
    remove(listsMutex, initActions, action);
}

int tbThread::getNumActions() const
{
    const std::lock_guard guard(listsMutex);
    return actions.getNum();
}

int tbThread::getNumInitActions() const
{
    const std::lock_guard guard(listsMutex);
    return initActions.getNum();
}

// The loop of a created thread. `own` outlives this object, which an action may release.
void tbThread::runLoop(tbiThreadControl& own)
{
    {
        tbiHeldList<tbAction> current;
        {
            const std::lock_guard guard(listsMutex);
            current.take(initActions);
        }
        for (tbAction* action : current)
            if (own.passSafePoint())
                action->apply(this, nullptr);
    }
    while (own.passSafePoint())
    {
        const bool full = waitForPass();
        if (!own.passSafePoint())
            return;
        processQueue(false);
        if (!full || own.isToEnd())
            continue;
        const bool goesOn = apply(runArgument);
        if (own.isToEnd())
            return;
        if (!goesOn)
        {
            tbMessage("Thread: %s died.  Error: %d\n", getName() ? getName() : "(null)", int(goesOn));
            own.die();
            return;
        }
    }
}

// False when the thread was woken for its queue only.
bool tbThread::waitForPass()
{
    if (mode == THREAD_YIELD || !tbSemaphore::isEnabled())
    {
        std::this_thread::yield();
        return true;
    }
    if (wakeUp->take(wakeUp->getTimeout(), true) == tbSemaphore::TAKEN)
        return true;
    control->clearNudge();
    return false;
}

void tbThread::flushBefore(tbThread* child)
{
    if (canRun())
        flushQueue();
    else if (child->canRun())
        child->flushQueue();
}

bool tbThread::addDownstreamThread(tbThread* child)
{
    if (!child || child == this)
        return false;
    flushBefore(child);
    return Tree().attach(this, child);
}

bool tbThread::removeDownstreamThread(tbThread* child)
{
    if (!child)
        return false;
    {
        const Tree tree;
        if (!downstreamThreads.contains(child))
            return false;
    }
    flushBefore(child);
    if (!Tree().detach(this, child))
        return false;
    child->unRef();
    return true;
}

bool tbThread::hasAncestor(tbThread* thread)
{
    return Tree().isAbove(thread, this);
}

bool tbThread::shareCommonAncestor(tbThread* thread)
{
    if (!thread)
        return false;
    const Tree tree;
    tbTList<tbThread*> mine;
    tbTList<tbThread*> others;
    Tree::findAncestry(this, mine);
    Tree::findAncestry(thread, others);
    for (tbThread* ancestor : mine)
        if (others.contains(ancestor))
            return true;
    return false;
}

int tbThread::getNumDownstreamThreads()
{
    const Tree tree;
    return downstreamThreads.getNum();
}

tbThread* tbThread::getDownstreamThread(int i)
{
    const Tree tree;
    return downstreamThreads.indexInRange(i) ? downstreamThreads[i] : nullptr;
}

int tbThread::getNumUpstreamThreads() const
{
    const Tree tree;
    return upstreamThreads.getNum();
}

tbThread* tbThread::getUpstreamThread(int i) const
{
    const Tree tree;
    return upstreamThreads.indexInRange(i) ? upstreamThreads[i] : nullptr;
}

tbThread* tbThread::getFirstUpstreamThread() const
{
    const Tree tree;
    return firstUpstreamThread;
}
