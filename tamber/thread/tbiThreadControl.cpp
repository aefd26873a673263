#include <tamber/thread/tbiThreadControl.h>

#include <tamber/thread/tbiSpinMutex.h>
#include <tamber/thread/tbiThreadRecord.h>
#include <tamber/thread/tbiThreadTree.h>
#include <tamber/thread/tbiWait.h>

#include <exception>

namespace
{

// The threads that were made and are not joined yet, each with a reference.
constinit tbiSpinMutex listMutex;
constinit tbiThreadControl* first = nullptr;
constinit bool closed = false; // no thread is made any more
constinit std::atomic<unsigned> processAffMask{0};

} // namespace

void tbiThreadControl::unRef()
{
    if (references.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete this;
}

tbiThreadControl* tbiThreadControl::getCurrent()
{
    const tbiThreadRecord* record = tbiThreadRecord::find();
    return record ? record->getControl() : nullptr;
}

bool tbiThreadControl::isCurrent() const
{
    return id == std::this_thread::get_id() && !over.load(std::memory_order_acquire);
}

bool tbiThreadControl::create()
{
    joinOrphans();
    const auto held = tbiHold(mutex);
    over = !link();
    if (!over)
    {
        ref();
        try
        {
            thread = std::thread(&tbiThreadControl::main, this);
            id = thread.get_id();
        }
        catch (const std::exception&) // the system has no thread, or no memory
        {
            over = true;
            unlink();
            unRef();
        }
    }
    if (over)
        state = tbThread::STATE_DEAD;
    return !over;
}

void tbiThreadControl::adopt()
{
    adopted = true;
    started = true;
    handle = tbiOpenThread();
    id = std::this_thread::get_id();
    getProcessors(); // while no thread has been bound to some of them yet
    state = tbThread::STATE_RUNNING;
    tbiThreadRecord::current()->setControl(this);
}

void tbiThreadControl::main()
{
    tbiThreadRecord::current()->setControl(this);
    {
        const auto held = tbiHold(mutex);
        handle = tbiOpenThread();
        started = true;
        changed.notify_all();
    }
    if (passSafePoint())
        getObject()->runLoop(*this);
    tbThread::Tree::threadEnded(*this);
    {
        const auto held = tbiHold(mutex);
        state = tbThread::STATE_DEAD;
        over = true;
        tbiCloseThread(handle);
        changed.notify_all();
    }
    unRef();
}

bool tbiThreadControl::passSafePoint()
{
    if (getState() == tbThread::STATE_SUSPENDED)
    {
        auto held = tbiHold(mutex);
        if (held.owns_lock())
            changed.wait(held, [this] { return getState() != tbThread::STATE_SUSPENDED; });
    }
    return !isToEnd();
}

void tbiThreadControl::resume()
{
    const auto held = tbiHold(mutex);
    if (over || getState() != tbThread::STATE_SUSPENDED)
        return;
    state = tbThread::STATE_RUNNING;
    changed.notify_all();
}

void tbiThreadControl::suspend()
{
    const auto held = tbiHold(mutex);
    if (getState() == tbThread::STATE_RUNNING)
        state = tbThread::STATE_SUSPENDED;
}

void tbiThreadControl::die()
{
    const auto held = tbiHold(mutex);
    state = tbThread::STATE_DEAD;
}

void tbiThreadControl::kill()
{
    {
        const auto held = tbiHold(mutex);
        if (getState() == tbThread::STATE_DEAD)
            return;
        state = tbThread::STATE_DEAD;
        if (adopted)
        {
            over = true;
            tbiCloseThread(handle);
        }
        changed.notify_all();
    }
    if (adopted)
        tbThread::Tree::threadEnded(*this);
    else
        interruptWait();
}

void tbiThreadControl::end()
{
    kill();
    if (!adopted)
    {
        if (id != std::this_thread::get_id())
            join();
    }
    else if (getCurrent() == this)
    {
        tbiThreadRecord::current()->setControl(nullptr);
    }
}

void tbiThreadControl::join()
{
    std::thread joining;
    {
        auto held = tbiHold(mutex);
        if (!held.owns_lock())
        {
            new std::thread(std::move(thread)); // gone with the process, there is nothing to wait for
            return;
        }
        joining.swap(thread);
        if (!joining.joinable())
        {
            changed.wait(held, [this] { return over || givenUp; });
            return;
        }
    }
    joining.join();
    unlink();
}

void tbiThreadControl::nudge()
{
    nudged = true;
    interruptWait();
}

void tbiThreadControl::interruptWait()
{
    const auto held = tbiHold(mutex);
    if (!waitMutex || !held.owns_lock())
        return;
    {
        const std::lock_guard inWait(*waitMutex); // either the thread has not looked yet, or it sleeps
    }
    waitSignal->notify_all();
}

void tbiThreadControl::beginWait(std::mutex& newMutex, std::condition_variable& signal)
{
    const auto held = tbiHold(mutex);
    waitMutex = &newMutex;
    waitSignal = &signal;
}

void tbiThreadControl::endWait()
{
    {
        const auto held = tbiHold(mutex);
        waitMutex = nullptr;
        waitSignal = nullptr;
    }
    passSafePoint();
}

void tbiThreadControl::systemThreadEnded()
{
    if (adopted)
        kill();
}

bool tbiThreadControl::setPriority(tbiPriorityClass priorityClass, int step)
{
    auto held = tbiHold(mutex);
    if (held.owns_lock())
        changed.wait(held, [this] { return started || over; });
    return !over && handle.id && tbiSetThreadPriority(handle, priorityClass, step);
}

bool tbiThreadControl::setProcessors(unsigned mask)
{
    auto held = tbiHold(mutex);
    if (held.owns_lock())
        changed.wait(held, [this] { return started || over; });
    return !over && handle.id && tbiSetThreadProcessors(handle, mask);
}

unsigned tbiThreadControl::getProcessors()
{
    unsigned mask = processAffMask;
    if (mask == 0 && processAffMask.compare_exchange_strong(mask, tbiGetProcessors()))
        mask = processAffMask;
    return mask;
}

bool tbiThreadControl::link()
{
    const auto held = tbiHold(listMutex);
    if (closed)
        return false;
    ref();
    next = first;
    if (first)
        first->previous = this;
    first = this;
    return true;
}

void tbiThreadControl::unlink()
{
    {
        const auto held = tbiHold(listMutex);
        (previous ? previous->next : first) = next;
        if (next)
            next->previous = previous;
        next = previous = nullptr;
    }
    unRef();
}

// Threads whose objects went on the threads themselves end without anybody who joins them.
void tbiThreadControl::joinOrphans()
{
    for (;;)
    {
        tbiThreadControl* orphan = nullptr;
        {
            const auto held = tbiHold(listMutex);
            orphan = first;
            while (orphan && (orphan->getObject() || !orphan->over || orphan->givenUp))
                orphan = orphan->next;
            if (!orphan)
                return;
            orphan->ref();
        }
        orphan->join();
        orphan->unRef();
    }
}

void tbiThreadControl::endAll(std::chrono::milliseconds limit)
{
    tbTList<tbiThreadControl*> all;
    {
        const auto held = tbiHold(listMutex);
        closed = true;
        for (tbiThreadControl* control = first; control; control = control->next)
        {
            if (control->id == std::this_thread::get_id() || all.add(control) < 0)
                continue;
            control->ref();
        }
    }
    for (tbiThreadControl* control : all)
        control->kill();
    const auto deadline = std::chrono::steady_clock::now() + limit;
    for (tbiThreadControl* control : all)
    {
        bool ended = true;
        {
            auto held = tbiHold(control->mutex);
            if (held.owns_lock())
                ended =
                    control->changed.wait_until(held, deadline, [control] { return control->over.load(); });
            if (!ended)
            {
                control->givenUp = true;
                if (control->thread.joinable())
                    control->thread.detach();
                control->changed.notify_all();
            }
        }
        if (ended)
            control->join();
        control->unRef();
    }
}
