#include <tamber/thread/tbTimer.h>

#include <tests/support/Threads.h>

#include <gtest/gtest.h>

TEST(Timer, AddsUpWhatPassesWhileItRuns)
{
    tbTimer timer;
    timer.start();
    tbtest::sleep(20);
    timer.start();
    timer.reset(); // keeps the last start
    timer.stop();
    const double first = timer.getSeconds();
    EXPECT_GE(first, 0.02);
    tbtest::sleep(20);
    EXPECT_EQ(timer.getSeconds(), first);
    timer.start();
    EXPECT_TRUE(timer.isRunning());
    tbtest::sleep(20);
    timer.stop();
    EXPECT_GE(timer.getMilliseconds(), first * 1000 + 20);
    timer.restart();
    EXPECT_TRUE(timer.isRunning());
    EXPECT_LT(timer.getSeconds(), 0.02);
    timer.stop();
    timer.reset();
    EXPECT_EQ(timer.getSeconds(), 0);
}
