#include <tamber/thread/tbThread.h>

#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/thread/tbEvent.h>
#include <tamber/thread/tbFlushThread.h>
#include <tamber/thread/tbLock.h>
#include <tamber/thread/tbSemaphore.h>
#include <tamber/trav/tbTravContext.h>
#include <tests/support/Messages.h>
#include <tests/support/Threads.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

using tbtest::comesTrue;
using tbtest::FuncAction;

namespace
{

// A thread and an action that counts. Where other actions use what a test has, the test ends the thread.
class Thread : public testing::Test
{
protected:
    void start()
    {
        thread->addAction(action.get());
        thread->run();
        ASSERT_TRUE(comesTrue([&] { return action->getTimes() > 0; }));
    }
    void expectStandstill() const
    {
        tbtest::sleep(20);
        const int times = action->getTimes();
        tbtest::sleep(20);
        EXPECT_EQ(action->getTimes(), times);
    }

    const tbRef<FuncAction> action = new FuncAction;
    tbRef<tbThread> thread = new tbThread;
};

} // namespace

TEST_F(Thread, RunsInitActionsOnceThenItsActionsOverAndOverOnAThreadOfItsOwn)
{
    const tbRef<tbBase> argument = new tbEvent;
    const tbRef<FuncAction> first = new FuncAction;
    std::atomic<bool> right{true};
    thread->addInitAction(first.get());
    thread->addInitAction(new FuncAction([](tbBase* initiator, tbEvent*)
                                         { return initiator == tbThread::getCurrentThread(); }));
    thread->addAction(new FuncAction(
        [&, self = thread.get()](tbBase* initiator, tbEvent* event)
        {
            right = right && first->getTimes() == 1 && initiator == argument.get() && !event &&
                    tbThread::getCurrentThread() == self && self->inCurrentThread();
            return true;
        }));
    thread->addAction(action.get());
    EXPECT_EQ(thread->getState(), tbThread::STATE_SUSPENDED);
    EXPECT_FALSE(thread->inCurrentThread());
    thread->run(argument.get());
    EXPECT_TRUE(comesTrue([&] { return action->getTimes() > 3; }));
    EXPECT_EQ(thread->getState(), tbThread::STATE_RUNNING);
    thread.reset();
    EXPECT_TRUE(right);
}

TEST_F(Thread, InWaitModeEveryRunIsOnePass)
{
    thread->setThreadMode(tbThread::THREAD_WAIT);
    thread->addAction(action.get());
    for (int i = 0; i < 5; ++i)
        thread->run();
    EXPECT_TRUE(comesTrue([&] { return action->getTimes() == 5; }));
    thread->flushQueue();
    tbtest::sleep(20);
    EXPECT_EQ(action->getTimes(), 5);
    thread->setThreadMode(tbThread::THREAD_YIELD);
    EXPECT_TRUE(comesTrue([&] { return action->getTimes() > 10; }));
}

TEST_F(Thread, SuspendHoldsItUntilTheNextRunAndKillForEver)
{
    start();
    thread->suspend();
    EXPECT_EQ(thread->getState(), tbThread::STATE_SUSPENDED);
    expectStandstill();
    const int times = action->getTimes();
    thread->run();
    EXPECT_TRUE(comesTrue([&] { return action->getTimes() > times; }));
    thread->kill();
    thread->kill();
    EXPECT_EQ(thread->getState(), tbThread::STATE_DEAD);
    thread->run();
    thread->suspend();
    expectStandstill();
    EXPECT_EQ(thread->getState(), tbThread::STATE_DEAD);
    EXPECT_FALSE(thread->setPriority(13));
}

TEST_F(Thread, DestructionEndsWaitsInsideTheKernel)
{
    const tbRef<tbEvent> event = new tbEvent;
    const tbRef<tbSemaphore> semaphore = new tbSemaphore;
    std::atomic<int> entered{0}, woken{0};
    const auto started = [&](std::function<bool()> wait)
    {
        tbRef<tbThread> waits = new tbThread;
        waits->addAction(new FuncAction(
            [&, wait]
            {
                entered.fetch_add(1);
                woken.fetch_add(wait());
            }));
        waits->run();
        return waits;
    };
    tbRef<tbThread> threads[] = {started([&] { return event->waitForTrigger(); }),
                                 started([&] { return semaphore->dec(); }), new tbThread, new tbThread};
    threads[2]->setThreadMode(tbThread::THREAD_WAIT);
    threads[2]->run();
    ASSERT_TRUE(comesTrue([&] { return entered == 2; }));
    tbtest::sleep(5);
    for (tbRef<tbThread>& each : threads)
        each.reset();
    EXPECT_EQ(woken, 0);
}

TEST_F(Thread, ActionThatFailsEndsItWithOneMessage)
{
    thread->setName("ThreadTest");
    thread->addAction(new FuncAction([](tbBase*, tbEvent*) { return false; }));
    thread->addAction(action.get());
    tbtest::expectMessage("Thread: ThreadTest died.  Error: 0");
    thread->run();
    EXPECT_TRUE(comesTrue([&] { return thread->getState() == tbThread::STATE_DEAD; }));
    EXPECT_EQ(action->getTimes(), 1);
    EXPECT_FALSE(thread->apply(nullptr));
    EXPECT_EQ(action->getTimes(), 2);
}

TEST_F(Thread, ApplyWithoutActionsIsTrue)
{
    EXPECT_TRUE(thread->apply(nullptr));
    thread->addAction(action.get());
    thread->addAction(nullptr);
    EXPECT_EQ(action->getRefCount(), 2);
    thread->removeAction(action.get());
    thread->removeAction(action.get());
    EXPECT_EQ(action->getRefCount(), 1);
    EXPECT_EQ(thread->getNumActions(), 0);
}

TEST_F(Thread, ActionsMayRemoveThemselves)
{
    FuncAction* once = nullptr;
    once = new FuncAction([&] { thread->removeAction(once); });
    thread->addAction(once);
    start();
    EXPECT_TRUE(comesTrue([&] { return action->getTimes() > 2; }));
    EXPECT_EQ(thread->getNumActions(), 1);
    thread.reset();
}

TEST_F(Thread, QueuedActionsRunOnceInOrder)
{
    std::vector<int> order, expected(300);
    std::iota(expected.begin(), expected.end(), 0);
    for (const int i : expected)
        thread->addActionToQueue(new FuncAction(
            [&order, i, self = thread.get()](tbBase* initiator, tbEvent*)
            {
                order.push_back(i);
                return initiator == self;
            }));
    thread->run();
    thread->flushQueue();
    EXPECT_EQ(order, expected);
}

TEST_F(Thread, FlushWaitsForWhatWasQueuedBefore)
{
    for (int round = 0; round < 100; ++round)
    {
        thread->setThreadMode(round < 50 ? tbThread::THREAD_YIELD : tbThread::THREAD_WAIT);
        thread->run();
        thread->addActionToQueue(action.get());
        thread->flushQueue();
        ASSERT_EQ(action->getTimes(), round + 1);
    }
}

TEST_F(Thread, FlushEndsWhereTheThreadCannotRun)
{
    thread->flushQueue();
    std::atomic<bool> entered{false}, go{false};
    thread->addActionToQueue(new FuncAction(
        [&]
        {
            entered = true;
            comesTrue([&] { return go.load(); });
        }));
    thread->run();
    ASSERT_TRUE(comesTrue([&] { return entered.load(); }));
    std::thread flushes([&] { thread->flushQueue(); });
    tbtest::sleep(5);
    thread->suspend();
    flushes.join();
    go = true;
    thread->flushQueue();
    thread->kill();
    thread->flushQueue();
    thread.reset();
}

TEST_F(Thread, ThreadsThatFlushEachOtherDoNotBlock)
{
    std::atomic<bool> stop{false};
    const tbRef<tbThread> threads[] = {new tbThread, new tbThread};
    tbRef<FuncAction> actions[2];
    for (int i = 0; i < 2; ++i)
    {
        actions[i] = new FuncAction(
            [&stop, other = threads[1 - i].get()]
            {
                if (!stop)
                    other->flushQueue();
            });
        threads[i]->addAction(actions[i].get());
    }
    for (const auto& each : threads)
        each->run();
    const auto bothCome = [&](int times)
    { return comesTrue([&] { return std::min(actions[0]->getTimes(), actions[1]->getTimes()) > times; }); };
    EXPECT_TRUE(bothCome(20));
    stop = true;
    EXPECT_TRUE(bothCome(std::max(actions[0]->getTimes(), actions[1]->getTimes()) + 1));
}

TEST_F(Thread, PostedFlushRequestCanBeWaitedForAlsoWhenItIsDropped)
{
    const tbRef<tbFlushThread> request = new tbFlushThread;
    thread->addActionToQueue(action.get());
    thread->addActionToQueue(request.get());
    thread->run();
    request->waitForSyncToFinish();
    EXPECT_EQ(action->getTimes(), 1);
    thread = new tbThread;
    thread->addActionToQueue(request.get());
    thread.reset();
    request->waitForSyncToFinish();
    thread = new tbThread;
    thread->kill();
    thread->addActionToQueue(request.get());
    request->waitForSyncToFinish();
    EXPECT_EQ(request->getRefCount(), 1);
}

TEST_F(Thread, MayBeDeletedByItsOwnAction)
{
    std::atomic<bool> started{false}, deleted{false};
    thread->addActionToQueue(new FuncAction(
        [&]
        {
            comesTrue([&] { return started.load(); });
            thread.reset();
            deleted = true;
        }));
    thread->addAction(action.get());
    thread->run();
    started = true;
    EXPECT_TRUE(comesTrue([&] { return deleted.load() && action->getRefCount() == 1; }));
}

TEST_F(Thread, EndsWithTheLocksThatItHeld)
{
    const tbRef<tbLock> lock = new tbLock;
    thread->addInitAction(new FuncAction([&] { lock->acquire(); }));
    thread->run();
    thread->flushQueue();
    EXPECT_FALSE(lock->available());
    thread.reset();
    EXPECT_TRUE(lock->available());
    lock->release();
}

TEST_F(Thread, AdoptedItStandsForTheCallingThreadAsThatOfTheApplicationDoes)
{
    ASSERT_NE(tbGetAppThread(), nullptr);
    EXPECT_EQ(tbThread::getCurrentThread(), tbGetAppThread());
    EXPECT_TRUE(tbInAppThread());
    tbtest::doElsewhere(
        [&]
        {
            EXPECT_EQ(tbThread::getCurrentThread(), nullptr);
            EXPECT_FALSE(tbInAppThread());
            thread = new tbThread(true);
            EXPECT_EQ(tbThread::getCurrentThread(), thread.get());
            EXPECT_TRUE(thread->inCurrentThread());
            EXPECT_TRUE(thread->isAdopted());
            EXPECT_EQ(thread->getState(), tbThread::STATE_RUNNING);
            EXPECT_NE(thread->getTravContext(), nullptr);
            thread->addActionToQueue(action.get());
            thread->flushQueue();
            EXPECT_EQ(action->getTimes(), 1);
            thread.reset();
            EXPECT_EQ(tbThread::getCurrentThread(), nullptr);
            thread = new tbThread(true);
        });
    EXPECT_EQ(thread->getState(), tbThread::STATE_DEAD);
    thread->flushQueue();
    EXPECT_FALSE(thread->setProcessors(1));
}

TEST_F(Thread, PriorityAndProcessorsAreWhatTheSystemAccepts)
{
    for (const int outside : {-1, 32, 1000})
        EXPECT_FALSE(thread->setPriority(outside));
    for (const int priority : {13, 11, 11})
        EXPECT_TRUE(thread->setPriority(priority));
    EXPECT_TRUE(thread->setProcessors(~0u));
    EXPECT_FALSE(thread->setProcessors(0));
}

TEST_F(Thread, KillAndSuspendAtAnyMoment)
{
    for (int round = 0; round < 60; ++round)
    {
        thread = new tbThread;
        thread->setThreadMode(round % 2 ? tbThread::THREAD_WAIT : tbThread::THREAD_YIELD);
        thread->addAction(action.get());
        for (int i = 0; i < round % 7; ++i)
        {
            thread->run();
            if (i % 3 == 1)
                thread->suspend();
            if (i % 3 == 2)
                thread->flushQueue();
        }
        if (round % 3 == 0)
            thread->kill();
    }
}
