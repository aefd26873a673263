#include <tamber/thread/tbEvent.h>

#include <tamber/action/tbAction.h>
#include <tamber/action/tbActionNode.h>
#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/kernel/tbTime.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/thread/tbiHeldList.h>
#include <tamber/thread/tbiLockGuard.h>
#include <tamber/thread/tbiWait.h>

TB_DEFINE_CLASS(tbEvent, tbBase)

namespace
{

template <class T>
void referenceAll(const tbTList<T*>& list)
{
    for (T* object : list)
        object->ref();
}

template <class T>
void releaseAll(tbTList<T*>& list)
{
    while (list.getNum() > 0)
        list.removeLast()->unRef();
}

template <class T>
void addTo(tbTList<T*>& list, T* object)
{
    if (list.add(object) >= 0)
        object->ref();
}

} // namespace

tbEvent::tbEvent() : lock(new tbLock)
{
    if (lock)
        lock->ref();
    initInstance();
}

tbEvent::tbEvent(const tbEvent& other) : tbBase(other), lock(new tbLock)
{
    if (lock)
        lock->ref();
    initInstance();
    takeOver(other);
}

tbEvent& tbEvent::operator=(const tbEvent& other)
{
    if (this == &other)
        return *this;
    tbBase::operator=(other);
    tbTList<tbAction*> oldActions;
    tbTList<tbActionNode*> oldNodes;
    {
        tbiLockGuard guard(lock);
        oldActions = actions;
        oldNodes = actionNodes;
        actions.reset();
        actionNodes.reset();
    }
    takeOver(other);
    releaseAll(oldActions);
    releaseAll(oldNodes);
    return *this;
}

tbEvent::~tbEvent()
{
    deleteInstance();
    releaseAll(actions);
    releaseAll(actionNodes);
    if (lock)
        lock->unRef();
    const auto free = tbiHold(mutex); // whoever pulsed it last is done with it
}

tbBase* tbEvent::createCopy() const
{
    return tbiCopyOf(*this);
}

// One lock at a time: two events may be assigned to each other on two threads.
void tbEvent::takeOver(const tbEvent& other)
{
    tbTList<tbAction*> newActions;
    tbTList<tbActionNode*> newNodes;
    double newTime = 0;
    tbBase* newInitiator = nullptr;
    {
        tbiLockGuard guard(other.lock);
        newActions = other.actions;
        newNodes = other.actionNodes;
        referenceAll(newActions);
        referenceAll(newNodes);
        newTime = other.time;
        newInitiator = other.initiator;
    }
    tbiLockGuard guard(lock);
    actions = newActions;
    actionNodes = newNodes;
    time = newTime;
    initiator = newInitiator;
    enabled = other.isEnabled();
}

tbEvent* tbEvent::findOrCreate(const char* name)
{
    if (!name || !*name)
        return nullptr;
    tbiLockGuard guard(tbiLocks::type); // two threads that ask for one name get one event
    if (tbEvent* event = find(name, nullptr, true))
        return event;
    const tbiMemoryWatch memory;
    auto* event = new tbEvent;
    if (event)
        event->setName(name);
    return tbiWhole(event, memory);
}

void tbEvent::pulse()
{
    const auto held = tbiHold(mutex);
    ++pulses;
    pulsed.notify_all();
}

void tbEvent::trigger(tbEvent* event, tbBase* initiator)
{
    if (event)
        event->trigger(initiator);
}

void tbEvent::trigger(tbBase* newInitiator)
{
    const tbRef<tbEvent> kept(getRefCount() > 0 ? this : nullptr); // an action may release this event
    tbiHeldList<tbAction> currentActions;
    tbiHeldList<tbActionNode> currentNodes;
    tbiLockGuard guard(lock);
    pulse();
    if (!isEnabled())
        return;
    time = tbGetTime();
    initiator = newInitiator;
    currentActions.take(actions);
    currentNodes.take(actionNodes);
    for (tbAction* action : currentActions)
        action->apply(newInitiator, this);
    for (tbActionNode* node : currentNodes)
        node->apply(newInitiator, this);
}

bool tbEvent::apply(tbBase* newInitiator, tbEvent*)
{
    trigger(newInitiator);
    return true;
}

bool tbEvent::waitForTrigger() const
{
    return waitForTrigger(-1);
}

bool tbEvent::waitForTrigger(int milliseconds) const
{
    tbiWait wait(mutex, pulsed);
    const std::uint64_t before = pulses;
    return wait.until(milliseconds, [&] { return pulses != before; });
}

void tbEvent::enable(bool enable)
{
    tbiLockGuard guard(lock);
    enabled = enable;
}

void tbEvent::addAction(tbAction* action)
{
    if (!action)
        return;
    tbiLockGuard guard(lock);
    addTo(actions, action);
}

void tbEvent::addAction(tbActionNode* node)
{
    if (!node)
        return;
    tbiLockGuard guard(lock);
    addTo(actionNodes, node);
}

int tbEvent::getNumActions() const
{
    tbiLockGuard guard(lock);
    return actions.getNum();
}

tbAction* tbEvent::getAction(int i) const
{
    tbiLockGuard guard(lock);
    return actions.indexInRange(i) ? actions[i] : nullptr;
}

int tbEvent::getNumActionNodes() const
{
    tbiLockGuard guard(lock);
    return actionNodes.getNum();
}

tbActionNode* tbEvent::getActionNode(int i) const
{
    tbiLockGuard guard(lock);
    return actionNodes.indexInRange(i) ? actionNodes[i] : nullptr;
}

double tbEvent::getTime() const
{
    tbiLockGuard guard(lock);
    return time;
}

tbBase* tbEvent::getInitiator() const
{
    tbiLockGuard guard(lock);
    return initiator;
}

tbEntry* tbEvent::read(tbFile* file, tbEntry* entry)
{
    entry = tbBase::read(file, entry);
    if (entry)
        enable(entry->readInt() != 0);
    return entry;
}

tbEntry* tbEvent::write(tbFile* file, tbEntry* entry) const
{
    entry = tbBase::write(file, entry);
    if (entry)
        entry->writeInt(isEnabled() ? 1 : 0);
    return entry;
}
