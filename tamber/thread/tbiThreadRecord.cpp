#include <tamber/thread/tbiThreadRecord.h>

#include <tamber/platform/tbiThread.h>
#include <tamber/thread/tbLock.h>
#include <tamber/thread/tbiSpinMutex.h>
#include <tamber/thread/tbiThreadControl.h>
#include <tamber/thread/tbiWait.h>

#include <new>
#include <thread>

thread_local constinit tbiThreadRecord* tbiThreadRecord::own = nullptr;

namespace
{

// Guards the places of a thread against other threads, and the watch over ending threads. Held for moments only.
constinit tbiSpinMutex recordsMutex;
constinit bool watching = false;
constinit bool stopped = false;

} // namespace

tbiThreadRecord* tbiThreadRecord::make()
{
    // Without a record no lock can be taken, and no operation can say so: it waits for memory.
    while (!(own = new (std::nothrow) tbiThreadRecord))
        std::this_thread::yield();
    const auto held = tbiHold(recordsMutex);
    if (!watching && !stopped)
        watching = tbiInstallThreadEnd(&tbiThreadRecord::threadEnded);
    if (watching)
        tbiArmThreadEnd(own);
    return own;
}

tbiThreadRecord::~tbiThreadRecord()
{
    setControl(nullptr);
    if (places != firstPlaces)
        delete[] places;
}

void tbiThreadRecord::setControl(tbiThreadControl* newControl)
{
    if (newControl)
        newControl->ref();
    if (control)
        control->unRef();
    control = newControl;
}

void tbiThreadRecord::threadEnded(void* record)
{
    auto* ending = static_cast<tbiThreadRecord*>(record);
    if (!ending)
        return;
    own = ending; // for locks that are taken on the way out
    if (ending->control)
        ending->control->systemThreadEnded();
    ending->abandonLocks();
    own = nullptr;
    delete ending;
}

void tbiThreadRecord::abandonLocks()
{
    const auto held = tbiHold(recordsMutex);
    for (int i = top - 1; i >= 0; --i)
        if (const tbLock* lock = places[i].exchange(nullptr, std::memory_order_relaxed))
            lock->abandon();
    top = 0;
}

void tbiThreadRecord::forget(const tbLock* lock)
{
    const auto held = tbiHold(recordsMutex);
    if (const std::uintptr_t word = lock->getOwnerWord())
    {
        auto* holder = reinterpret_cast<tbiThreadRecord*>(word);
        const int place = lock->place.load(std::memory_order_relaxed);
        if (place >= 0)
            holder->places[place].store(nullptr, std::memory_order_relaxed);
    }
}

void tbiThreadRecord::releaseHeld()
{
    if (!own)
        return;
    for (int i = own->top - 1; i >= 0; --i)
        if (i < own->top)
            if (const tbLock* lock = own->places[i].load(std::memory_order_relaxed))
                lock->release();
}

// Closes the gaps that locks left which were not released in the reverse order, and doubles the places when there
// are few.
void tbiThreadRecord::makeRoom()
{
    const auto held = tbiHold(recordsMutex);
    int used = 0;
    for (int i = 0; i < top; ++i)
    {
        const tbLock* lock = places[i].exchange(nullptr, std::memory_order_relaxed);
        if (!lock)
            continue;
        lock->place.store(used, std::memory_order_relaxed);
        places[used++].store(lock, std::memory_order_relaxed);
    }
    top = used;
    if (used * 2 <= capacity)
        return;
    auto* more = new (std::nothrow) Place[static_cast<std::size_t>(capacity) * 2]();
    if (!more)
        return;
    for (int i = 0; i < used; ++i)
        more[i].store(places[i].load(std::memory_order_relaxed), std::memory_order_relaxed);
    if (places != firstPlaces)
        delete[] places;
    places = more;
    capacity *= 2;
}

void tbiThreadRecord::stopWatching()
{
    const auto held = tbiHold(recordsMutex);
    if (watching)
        tbiRemoveThreadEnd();
    watching = false;
    stopped = true;
}

void tbiThreadRecord::freeOwn()
{
    if (!own || own->top > 0 || own->control)
        return;
    delete own;
    own = nullptr;
}
