#include <tamber/thread/tbSemaphore.h>

#include <tamber/kernel/tbRef.h>
#include <tests/support/Threads.h>

#include <gtest/gtest.h>

TEST(Semaphore, CountIsWhatItWasBeforeTheLastInc)
{
    const tbRef<tbSemaphore> semaphore = new tbSemaphore;
    semaphore->inc();
    EXPECT_EQ(semaphore->getCount(), 0);
    semaphore->inc(3);
    EXPECT_EQ(semaphore->getCount(), 1);
    EXPECT_TRUE(semaphore->dec());
    EXPECT_EQ(semaphore->getCount(), 0);
}

TEST(Semaphore, DecIsTrueAfterATimeOutAndCountsIt)
{
    const tbRef<tbSemaphore> semaphore = new tbSemaphore(0, 1);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(semaphore->dec(20));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(20));
    EXPECT_EQ(semaphore->getCount(), -1);
    semaphore->setTimeout(0);
    EXPECT_TRUE(semaphore->dec());
}

TEST(Semaphore, IncBeyondTheMaximumAddsNothing)
{
    const tbRef<tbSemaphore> original = new tbSemaphore(1, 3), semaphore = new tbSemaphore;
    *semaphore = *original;
    semaphore->inc(3);
    EXPECT_EQ(semaphore->getCount(), 1);
    semaphore->inc(2);
    semaphore->inc();
    semaphore->inc(0);
    semaphore->inc(-1);
    EXPECT_EQ(semaphore->getCount(), 1);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(semaphore->dec());
    const auto start = std::chrono::steady_clock::now();
    semaphore->dec(10);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(10)) << "none is left";
}

TEST(Semaphore, ImpossibleCountsFail)
{
    const int counts[][2] = {{2, 1}, {-1, 1}, {0, 0}, {0, -5}};
    for (const auto& pair : counts)
    {
        const tbRef<tbSemaphore> semaphore = new tbSemaphore(pair[0], pair[1]);
        semaphore->inc();
        EXPECT_FALSE(semaphore->dec());
        EXPECT_FALSE(semaphore->dec(0));
    }
}

TEST(Semaphore, EveryIncLetsExactlyOneThreadOn)
{
    const tbRef<tbSemaphore> semaphore = new tbSemaphore;
    std::atomic<int> passed{0};
    auto threads = tbtest::startThreads(4,
                                        [&](int)
                                        {
                                            for (int i = 0; i < 500; ++i)
                                            {
                                                semaphore->dec();
                                                passed.fetch_add(1);
                                            }
                                        });
    for (int i = 0; i < 1000; ++i)
    {
        semaphore->inc();
        EXPECT_TRUE(i % 100 < 99 || tbtest::comesTrue([&] { return passed == i + 1; }));
    }
    for (int i = 0; i < 10; ++i)
        semaphore->inc(100);
    threads.clear();
    EXPECT_EQ(passed, 2000);
}

TEST(Semaphore, SwitchedOffLetsEverybodyThrough)
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
