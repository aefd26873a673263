#include <tamber/thread/tbLock.h>

#include <tamber/kernel/tbiLocks.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/thread/tbiThreadRecord.h>
#include <tamber/thread/tbiWait.h>

#include <algorithm>
#include <cassert>

TB_DEFINE_SERVICE_CLASS(tbLock, tbBase)

constinit std::atomic<bool> tbLock::locksEnabled{true};

namespace
{

// Bit of the owner word: somebody waits, so that freeing the lock has to wake one.
constexpr std::uintptr_t CONTENDED = 1;
// Looks at a busy lock before a thread goes to sleep.
constexpr int NUM_LOOKS = 64;
// Sleeping threads look up this often whether locks were switched off.
constexpr std::chrono::milliseconds LOOK_UP{250};

// The named locks are taken in one order: a thread that holds one takes only later ones.
[[maybe_unused]] bool isInOrder(const tbLock* lock)
{
    const std::atomic<tbLock*>* const order[] = {&tbiLocks::group, &tbiLocks::type, &tbiLocks::plugIn,
                                                 &tbiLocks::base, &tbiLocks::memory};
    if (lock->isHeld())
        return true;
    bool later = false;
    bool inOrder = true;
    for (const std::atomic<tbLock*>* slot : order)
    {
        const tbLock* named = slot->load();
        if (named && later && named->isHeld())
            inOrder = false;
        later = later || named == lock;
    }
    return inOrder;
}

} // namespace

tbLock::tbLock()
{
    initInstance();
}

tbLock::tbLock(const tbLock& other) : tbBase(other), timeOut(other.getTimeOut())
{
    initInstance();
}

tbLock& tbLock::operator=(const tbLock& other)
{
    tbBase::operator=(other);
    setTimeOut(other.getTimeOut());
    return *this;
}

tbLock::~tbLock()
{
    deleteInstance();
    {
        const auto free = tbiHold(mutex); // whoever frees it just now is done with it
    }
    if (isHeld())
        tbiThreadRecord::current()->remove(place.load(std::memory_order_relaxed));
    else if (getOwnerWord())
        tbiThreadRecord::forget(this);
}

tbBase* tbLock::createCopy() const
{
    return tbiCopyOf(*this);
}

void tbLock::enableAll(bool enable)
{
    // A release by anybody but the holder does nothing, so what the calling thread holds is all there is to release.
    if (!enable && isEnabled())
        tbiThreadRecord::releaseHeld();
    locksEnabled.store(enable, std::memory_order_relaxed);
}

std::uintptr_t tbLock::getOwnerWord() const
{
    return owner.load(std::memory_order_relaxed) & ~CONTENDED;
}

bool tbLock::isHeld() const
{
    const tbiThreadRecord* thread = tbiThreadRecord::find();
    return thread && getOwnerWord() == thread->getWord();
}

void tbLock::setTimeOut(int milliseconds)
{
    timeOut.store(milliseconds, std::memory_order_relaxed);
}

void tbLock::acquire() const
{
    acquire(getTimeOut());
}

void tbLock::acquire(int milliseconds) const
{
    if (isEnabled())
        acquireFor(milliseconds);
}

bool tbLock::available() const
{
    return !isEnabled() || acquireFor(0);
}

void tbLock::release() const
{
    if (isEnabled())
        give();
}

bool tbLock::take() const
{
    assert(isInOrder(this) && "a named lock was taken against the order");
    while (isEnabled())
        if (acquireFor(-1))
            return true;
    return false;
}

bool tbLock::acquireFor(int milliseconds) const
{
    tbiThreadRecord* thread = tbiThreadRecord::current();
    if (getOwnerWord() == thread->getWord())
    {
        ++depth;
        return true;
    }
    std::uintptr_t seen = 0;
    if (!owner.compare_exchange_strong(seen, thread->getWord(), std::memory_order_acquire,
                                       std::memory_order_relaxed) &&
        (milliseconds == 0 || !waitFor(thread, milliseconds)))
        return false;
    depth = 1;
    place.store(thread->add(this), std::memory_order_relaxed);
    return true;
}

void tbLock::give() const
{
    if (!isHeld() || --depth > 0)
        return;
    tbiThreadRecord* thread = tbiThreadRecord::current();
    thread->remove(place.load(std::memory_order_relaxed));
    std::uintptr_t seen = thread->getWord();
    if (!owner.compare_exchange_strong(seen, 0, std::memory_order_release, std::memory_order_relaxed))
        freeAndWake();
}

void tbLock::freeAndWake() const
{
    const auto held = tbiHold(mutex);
    owner.store(0, std::memory_order_release);
    if (waiting > 0)
        freed.notify_one();
}

void tbLock::abandon() const
{
    freeAndWake();
}

// Marks the lock as contended, so that whoever frees it comes to the mutex and wakes one sleeper. A sleeper that takes
// the lock leaves the mark for the others; one that gives up passes the wake on.
bool tbLock::waitFor(tbiThreadRecord* thread, int milliseconds) const
{
    const std::uintptr_t self = thread->getWord();
    for (int look = 0; look < NUM_LOOKS; ++look)
    {
        std::uintptr_t seen = 0;
        if (owner.load(std::memory_order_relaxed) == 0 &&
            owner.compare_exchange_weak(seen, self, std::memory_order_acquire, std::memory_order_relaxed))
            return true;
    }
    auto held = tbiHold(mutex);
    if (!held.owns_lock())
    {
        owner.store(self, std::memory_order_relaxed); // the thread that held it is gone with the process
        return true;
    }
    const auto now = std::chrono::steady_clock::now();
    const auto deadline = milliseconds < 0 ? std::chrono::steady_clock::time_point::max()
                                           : now + std::chrono::milliseconds(milliseconds);
    ++waiting;
    bool taken = false;
    for (bool late = false; !taken;)
    {
        std::uintptr_t seen = owner.load(std::memory_order_relaxed);
        if (seen == 0)
            taken = owner.compare_exchange_strong(seen, waiting > 1 ? self | CONTENDED : self,
                                                  std::memory_order_acquire, std::memory_order_relaxed);
        else if (late || !isEnabled())
            break;
        else if ((seen & CONTENDED) ||
                 owner.compare_exchange_strong(seen, seen | CONTENDED, std::memory_order_relaxed))
        {
            const auto next = std::min(deadline, std::chrono::steady_clock::now() + LOOK_UP);
            freed.wait_until(held, next);
            late = std::chrono::steady_clock::now() >= deadline;
        }
    }
    --waiting;
    if (!taken && waiting > 0)
        freed.notify_one();
    return taken;
}
