#include <tamber/thread/tbLock.h>

#include <tamber/kernel/tbRef.h>
#include <tamber/thread/tbiLockGuard.h>
#include <tests/support/Threads.h>

#include <gtest/gtest.h>

#include <vector>

namespace
{

bool isFree(const tbLock& lock)
{
    bool got = false;
    tbtest::doElsewhere([&] { got = lock.available(); }); // lets it go with its end
    return got;
}

} // namespace

TEST(Lock, IsReleasedAsOftenAsItWasAcquiredAndByItsHolderOnly)
{
    const tbRef<tbLock> lock = new tbLock;
    lock->release();
    lock->acquire();
    EXPECT_TRUE(lock->available());
    EXPECT_FALSE(isFree(*lock));
    lock->release();
    EXPECT_TRUE(lock->isHeld());
    EXPECT_FALSE(isFree(*lock));
    tbtest::doElsewhere([&] { lock->release(); });
    EXPECT_TRUE(lock->isHeld());
    lock->release();
    EXPECT_FALSE(lock->isHeld());
    EXPECT_TRUE(isFree(*lock));
}

TEST(Lock, AcquireEndsWithItsTimeOut)
{
    const tbRef<tbLock> lock = new tbLock;
    EXPECT_EQ(lock->getTimeOut(), -1);
    lock->setTimeOut(30);
    lock->acquire();
    tbtest::doElsewhere(
        [&]
        {
            const auto start = std::chrono::steady_clock::now();
            lock->acquire();
            EXPECT_FALSE(lock->isHeld());
            lock->acquire(20);
            EXPECT_FALSE(lock->isHeld());
            EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(50));
            lock->release();
        });
    EXPECT_TRUE(lock->isHeld());
    lock->release();
}

TEST(Lock, IsTakenOverFromAThreadThatEnded)
{
    std::vector<tbRef<tbLock>> locks;
    for (int i = 0; i < 100; ++i) // more than a thread's record holds at first
        locks.emplace_back(new tbLock);
    tbtest::doElsewhere(
        [&]
        {
            for (const auto& lock : locks)
                lock->acquire();
            locks[7]->acquire();
            locks[8]->release();
        });
    for (const auto& lock : locks)
    {
        ASSERT_TRUE(lock->available());
        lock->release();
        ASSERT_TRUE(isFree(*lock));
    }
}

TEST(Lock, AThreadThatEndsHandsItToOneThatWaits)
{
    const tbRef<tbLock> lock = new tbLock;
    std::atomic<bool> held{false}, waits{false};
    std::jthread owner(
        [&]
        {
            lock->acquire();
            held = true;
            tbtest::comesTrue([&] { return waits.load(); });
            tbtest::sleep(10);
        });
    ASSERT_TRUE(tbtest::comesTrue([&] { return held.load(); }));
    waits = true;
    lock->acquire();
    EXPECT_TRUE(lock->isHeld());
    lock->release();
}

TEST(Lock, MayBeDestroyedWhileAThreadThatHeldItLives)
{
    std::atomic<int> step{0};
    auto* lock = new tbLock;
    lock->ref();
    std::thread holder(
        [&]
        {
            lock->acquire();
            step = 1;
            tbtest::comesTrue([&] { return step == 2; });
            const tbRef<tbLock> another = new tbLock;
            another->acquire();
        });
    ASSERT_TRUE(tbtest::comesTrue([&] { return step == 1; }));
    lock->unRef();
    step = 2;
    holder.join();
}

TEST(Lock, HandOverHandLocksStayWithinTheRecord)
{
    const tbRef<tbLock> locks[] = {new tbLock, new tbLock, new tbLock};
    locks[0]->acquire();
    for (std::size_t i = 0; i < 1000; ++i)
    {
        locks[(i + 1) % 3]->acquire();
        locks[i % 3]->release();
    }
    EXPECT_TRUE(locks[1000 % 3]->isHeld());
    locks[1000 % 3]->release();
    for (const auto& lock : locks)
        EXPECT_TRUE(isFree(*lock));
}

TEST(Lock, ExcludesUnderLoadAlsoWithTimeOutsAndReentry)
{
    const tbRef<tbLock> lock = new tbLock;
    int plain = 0; // the thread sanitizer watches it
    std::atomic<int> expected{0};
    tbtest::startThreads(4,
                         [&](int t)
                         {
                             for (int i = 0; i < 3000; ++i)
                             {
                                 lock->acquire(t == 0 ? 1 : -1);
                                 if (!lock->isHeld())
                                     continue;
                                 if (i % 8 == 0)
                                     lock->acquire();
                                 ++plain;
                                 expected.fetch_add(1);
                                 if (i % 64 == 0)
                                     std::this_thread::yield();
                                 if (i % 8 == 0)
                                     lock->release();
                                 lock->release();
                             }
                         });
    EXPECT_EQ(plain, expected);
    EXPECT_GE(plain, 9000);
}

TEST(LockGuard, HoldsForTheScopeAndWaitsBeyondTheTimeOut)
{
    const tbRef<tbLock> lock = new tbLock;
    lock->setTimeOut(1);
    std::atomic<bool> got{false};
    std::thread waiting;
    {
        const tbiLockGuard none(nullptr);
        const tbiLockGuard guard(lock.get());
        const tbiLockGuard again(lock.get());
        waiting = std::thread(
            [&]
            {
                const tbiLockGuard late(lock.get());
                got = lock->isHeld();
            });
        tbtest::sleep(30);
        EXPECT_FALSE(got);
    }
    waiting.join();
    EXPECT_TRUE(got);
    EXPECT_TRUE(isFree(*lock));
}

TEST(LockSwitchedOff, IsNotTouched)
{
    const tbRef<tbLock> lock = new tbLock;
    tbLock::enableAll(false);
    EXPECT_FALSE(tbLock::isEnabled());
    lock->acquire();
    EXPECT_TRUE(lock->available());
    EXPECT_FALSE(lock->isHeld());
    lock->release();
    {
        const tbiLockGuard guard(lock.get());
        tbLock::enableAll(true);
        lock->acquire();
    }
    EXPECT_TRUE(lock->isHeld());
    lock->release();
}

TEST(LockSwitchedOff, IsReleasedOnceByTheThreadThatHoldsIt)
{
    const tbRef<tbLock> once = new tbLock, twice = new tbLock, others = new tbLock;
    std::atomic<int> step{0};
    std::jthread other(
        [&]
        {
            others->acquire();
            step = 1;
            tbtest::comesTrue([&] { return step == 2; });
        });
    ASSERT_TRUE(tbtest::comesTrue([&] { return step == 1; }));
    once->acquire();
    twice->acquire();
    twice->acquire();
    tbLock::enableAll(false);
    tbLock::enableAll(false);
    EXPECT_FALSE(once->isHeld());
    EXPECT_TRUE(twice->isHeld());
    tbLock::enableAll(true);
    EXPECT_FALSE(others->available());
    twice->release();
    EXPECT_FALSE(twice->isHeld());
    step = 2;
}

TEST(LockSwitchedOff, LetsAGuardThatWaitsGoOn)
{
    const tbRef<tbLock> lock = new tbLock;
    lock->acquire();
    std::atomic<bool> passed{false};
    std::thread waiting(
        [&]
        {
            const tbiLockGuard guard(lock.get());
            passed = !lock->isHeld();
        });
    tbtest::sleep(20);
    lock->acquire(); // so that it stays held
    tbLock::enableAll(false);
    waiting.join();
    EXPECT_TRUE(passed);
    tbLock::enableAll(true);
    lock->release();
}
