// Locks and semaphores switched off for the whole process.
#include <tamber/kernel/tbRef.h>
#include <tamber/thread/tbLock.h>
#include <tamber/thread/tbSemaphore.h>
#include <tamber/thread/tbiLockGuard.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

TEST(SwitchedOff, LocksAreNotTouched)
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

TEST(SwitchedOff, SwitchingOffReleasesOnceWhatTheThreadHolds)
{
    const tbRef<tbLock> once = new tbLock, twice = new tbLock, others = new tbLock;
    std::atomic<int> step{0};
    std::thread other(
        [&]
        {
            others->acquire();
            step = 1;
            while (step != 2)
                std::this_thread::yield();
        });
    while (step != 1)
        std::this_thread::yield();
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
    other.join();
}

TEST(SwitchedOff, GuardThatWaitsGoesOnWithoutTheLock)
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
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    lock->acquire(); // so that it stays held
    tbLock::enableAll(false);
    waiting.join();
    EXPECT_TRUE(passed);
    tbLock::enableAll(true);
    lock->release();
}

TEST(SwitchedOff, SemaphoresLetEverybodyThrough)
{
    const tbRef<tbSemaphore> semaphore = new tbSemaphore;
    tbSemaphore::enableAll(false);
    EXPECT_TRUE(semaphore->dec());
    semaphore->inc();
    tbSemaphore::enableAll(true);
    EXPECT_EQ(semaphore->getCount(), 0);
    EXPECT_TRUE(semaphore->dec(0));
    EXPECT_EQ(semaphore->getCount(), -1);
}
