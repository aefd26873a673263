#include <tamber/kernel/tbiLocks.h>

#include <tamber/thread/tbLock.h>

constinit std::atomic<tbLock*> tbiLocks::memory{nullptr};
constinit std::atomic<tbLock*> tbiLocks::base{nullptr};
constinit std::atomic<tbLock*> tbiLocks::type{nullptr};
constinit std::atomic<tbLock*> tbiLocks::plugIn{nullptr};
constinit std::atomic<tbLock*> tbiLocks::group{nullptr};

void tbiLocks::create()
{
    struct Named
    {
        std::atomic<tbLock*>& slot;
        const char* name;
    };
    const Named locks[] = {{memory, "tbMemory Lock"},
                           {base, "tbBase Lock"},
                           {type, "tbType Lock"},
                           {plugIn, "tbPlugIn Lock"},
                           {group, "tbGroup Lock"}};
    tbLock* made[5] = {};
    for (int i = 0; i < 5; ++i)
    {
        made[i] = new tbLock;
        made[i]->ref();
        made[i]->setName(locks[i].name);
    }
    for (int i = 0; i < 5; ++i)
        locks[i].slot = made[i];
}

void tbiLocks::release()
{
    for (std::atomic<tbLock*>* slot : {&group, &plugIn, &type, &base, &memory})
        if (tbLock* lock = slot->exchange(nullptr))
            lock->unRef();
}
