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

using tbtest::comesTrue;
using tbtest::FuncAction;

TEST(Thread, RunsItsActionsOverAndOverOnAThreadOfItsOwn)
{
    const tbRef<tbBase> argument = new tbEvent;
    std::atomic<bool> there{true};
    const tbRef<tbThread> thread = new tbThread;
    const tbRef<FuncAction> action = new FuncAction(
        [&](tbBase* initiator, tbEvent* event)
        {
            there = there && initiator == argument.get() && !event &&
                    tbThread::getCurrentThread() == thread.get() && thread->inCurrentThread();
            return true;
        });
    thread->addAction(action.get());
    EXPECT_EQ(thread->getState(), tbThread::STATE_SUSPENDED);
    EXPECT_FALSE(thread->inCurrentThread());
    thread->run(argument.get());
    EXPECT_TRUE(comesTrue([&] { return action->getTimes() > 3; }));
    EXPECT_EQ(thread->getState(), tbThread::STATE_RUNNING);
    EXPECT_TRUE(there);
}

TEST(Thread, InitActionsRunOnceBeforeAllOthers)
{
    std::atomic<bool> first{true};
    const tbRef<FuncAction> init =
        new FuncAction([](tbBase* initiator, tbEvent*) { return initiator == tbThread::getCurrentThread(); });
    const tbRef<FuncAction> action = new FuncAction(
        [&](tbBase*, tbEvent*)
        {
            first = first && init->getTimes() == 1;
            return true;
        });
    const tbRef<tbThread> thread = new tbThread;
    thread->addInitAction(init.get());
    thread->addAction(action.get());
    thread->run();
    EXPECT_TRUE(comesTrue([&] { return action->getTimes() > 1; }));
    EXPECT_TRUE(first);
}

TEST(Thread, InWaitModeEveryRunIsOnePass)
{
    const tbRef<tbThread> thread = new tbThread;
    const tbRef<FuncAction> action = new FuncAction;
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

TEST(Thread, SuspendHoldsItUntilTheNextRun)
{
    const tbRef<tbThread> thread = new tbThread;
    const tbRef<FuncAction> action = new FuncAction;
    thread->addAction(action.get());
    thread->run();
    ASSERT_TRUE(comesTrue([&] { return action->getTimes() > 0; }));
    thread->suspend();
    EXPECT_EQ(thread->getState(), tbThread::STATE_SUSPENDED);
    tbtest::sleep(20);
    const int times = action->getTimes();
    tbtest::sleep(20);
    EXPECT_EQ(action->getTimes(), times);
    thread->run();
    EXPECT_TRUE(comesTrue([&] { return action->getTimes() > times; }));
}

TEST(Thread, KilledItNeverRunsAgain)
{
    const tbRef<tbThread> thread = new tbThread;
    const tbRef<FuncAction> action = new FuncAction;
    thread->addAction(action.get());
    thread->run();
    ASSERT_TRUE(comesTrue([&] { return action->getTimes() > 0; }));
    thread->kill();
    thread->kill();
    EXPECT_EQ(thread->getState(), tbThread::STATE_DEAD);
    tbtest::sleep(20);
    const int times = action->getTimes();
    thread->run();
    thread->suspend();
    tbtest::sleep(20);
    EXPECT_EQ(action->getTimes(), times);
    EXPECT_EQ(thread->getState(), tbThread::STATE_DEAD);
    EXPECT_FALSE(thread->setPriority(13));
}

TEST(Thread, DestructionEndsWaitsInsideTheKernel)
{
    const tbRef<tbEvent> event = new tbEvent;
    const tbRef<tbSemaphore> semaphore = new tbSemaphore;
    std::atomic<int> entered{0}, woken{0};
    tbRef<tbThread> waitsForEvent = new tbThread;
    tbRef<tbThread> waitsForSemaphore = new tbThread;
    tbRef<tbThread> waitsForPass = new tbThread;
    tbRef<tbThread> neverRun = new tbThread;
    waitsForEvent->addAction(new FuncAction(
        [&](tbBase*, tbEvent*)
        {
            entered.fetch_add(1);
            woken.fetch_add(event->waitForTrigger());
            return true;
        }));
    waitsForSemaphore->addAction(new FuncAction(
        [&](tbBase*, tbEvent*)
        {
            entered.fetch_add(1);
            woken.fetch_add(semaphore->dec());
            return true;
        }));
    waitsForPass->setThreadMode(tbThread::THREAD_WAIT);
    for (const auto& thread : {waitsForEvent, waitsForSemaphore, waitsForPass})
        thread->run();
    ASSERT_TRUE(comesTrue([&] { return entered == 2; }));
    tbtest::sleep(5);
    for (auto* thread : {&waitsForEvent, &waitsForSemaphore, &waitsForPass, &neverRun})
        thread->reset();
    EXPECT_EQ(woken, 0);
}

TEST(Thread, ActionThatFailsEndsItWithOneMessage)
{
    const tbRef<tbThread> thread = new tbThread;
    thread->setName("ThreadTest");
    const tbRef<FuncAction> works = new FuncAction;
    thread->addAction(new FuncAction([](tbBase*, tbEvent*) { return false; }));
    thread->addAction(works.get());
    tbtest::expectMessage("Thread: ThreadTest died.  Error: 0");
    thread->run();
    EXPECT_TRUE(comesTrue([&] { return thread->getState() == tbThread::STATE_DEAD; }));
    EXPECT_EQ(works->getTimes(), 1);
    EXPECT_FALSE(thread->apply(nullptr));
    EXPECT_EQ(works->getTimes(), 2);
}

TEST(Thread, ApplyWithoutActionsIsTrue)
{
    const tbRef<tbThread> thread = new tbThread;
    EXPECT_TRUE(thread->apply(nullptr));
    const tbRef<FuncAction> action = new FuncAction;
    thread->addAction(action.get());
    thread->addAction(nullptr);
    EXPECT_EQ(action->getRefCount(), 2);
    thread->removeAction(action.get());
    thread->removeAction(action.get());
    EXPECT_EQ(action->getRefCount(), 1);
    EXPECT_EQ(thread->getNumActions(), 0);
}

TEST(Thread, ActionsMayRemoveThemselves)
{
    FuncAction* once = nullptr;
    const tbRef<tbThread> thread = new tbThread;
    const tbRef<FuncAction> counts = new FuncAction;
    once = new FuncAction(
        [&](tbBase*, tbEvent*)
        {
            thread->removeAction(once);
            return true;
        });
    thread->addAction(once);
    thread->addAction(counts.get());
    thread->run();
    EXPECT_TRUE(comesTrue([&] { return counts->getTimes() > 2; }));
    EXPECT_EQ(thread->getNumActions(), 1);
}

TEST(Thread, QueuedActionsRunOnceInOrder)
{
    const tbRef<tbThread> thread = new tbThread;
    std::string log;
    std::atomic<int> done{0};
    for (int i = 0; i < 300; ++i)
    {
        FuncAction* action = new FuncAction(
            [&, i](tbBase* initiator, tbEvent*)
            {
                log += char('a' + i % 26);
                done.fetch_add(1);
                return initiator == thread.get();
            });
        thread->addActionToQueue(action);
    }
    std::string expected;
    for (int i = 0; i < 300; ++i)
        expected += char('a' + i % 26);
    thread->run();
    EXPECT_TRUE(comesTrue([&] { return done == 300; }));
    EXPECT_EQ(log, expected);
}

TEST(Thread, FlushWaitsForWhatWasQueuedBefore)
{
    for (const auto mode : {tbThread::THREAD_YIELD, tbThread::THREAD_WAIT})
    {
        const tbRef<tbThread> thread = new tbThread;
        thread->setThreadMode(mode);
        thread->run();
        for (int round = 0; round < 50; ++round)
        {
            const tbRef<FuncAction> action = new FuncAction;
            thread->addActionToQueue(action.get());
            thread->flushQueue();
            ASSERT_EQ(action->getTimes(), 1);
        }
    }
}

TEST(Thread, FlushOfAThreadThatCannotRunReturnsAtOnce)
{
    const tbRef<tbThread> thread = new tbThread;
    thread->flushQueue();
    thread->run();
    thread->suspend();
    thread->flushQueue();
    thread->kill();
    thread->flushQueue();
}

TEST(Thread, FlushEndsWhenTheThreadIsSuspendedMeanwhile)
{
    std::atomic<bool> entered{false}, go{false};
    const tbRef<tbThread> thread = new tbThread;
    thread->addActionToQueue(new FuncAction(
        [&](tbBase*, tbEvent*)
        {
            entered = true;
            return comesTrue([&] { return go.load(); });
        }));
    thread->run();
    ASSERT_TRUE(comesTrue([&] { return entered.load(); }));
    std::thread flushes([&] { thread->flushQueue(); });
    tbtest::sleep(5);
    thread->suspend();
    flushes.join();
    go = true;
}

TEST(Thread, ThreadsThatFlushEachOtherDoNotBlock)
{
    std::atomic<bool> stop{false};
    const tbRef<tbThread> threads[] = {new tbThread, new tbThread};
    tbRef<FuncAction> actions[2];
    for (int i = 0; i < 2; ++i)
    {
        actions[i] = new FuncAction(
            [&stop, other = threads[1 - i].get()](tbBase*, tbEvent*)
            {
                if (!stop)
                    other->flushQueue();
                return true;
            });
        threads[i]->addAction(actions[i].get());
    }
    for (const auto& thread : threads)
        thread->run();
    EXPECT_TRUE(comesTrue([&] { return actions[0]->getTimes() > 20 && actions[1]->getTimes() > 20; }));
    stop = true;
    const int times[] = {actions[0]->getTimes(), actions[1]->getTimes()};
    EXPECT_TRUE(comesTrue(
        [&] { return actions[0]->getTimes() > times[0] + 1 && actions[1]->getTimes() > times[1] + 1; }));
}

TEST(Thread, PostedFlushRequestCanBeWaitedFor)
{
    const tbRef<tbThread> thread = new tbThread;
    const tbRef<FuncAction> action = new FuncAction;
    const tbRef<tbFlushThread> request = new tbFlushThread;
    thread->addActionToQueue(action.get());
    thread->addActionToQueue(request.get());
    thread->run();
    request->waitForSyncToFinish();
    EXPECT_EQ(action->getTimes(), 1);
}

TEST(Thread, DroppedFlushRequestHoldsNobodyUp)
{
    tbRef<tbThread> thread = new tbThread;
    const tbRef<tbFlushThread> request = new tbFlushThread;
    thread->addActionToQueue(request.get());
    thread.reset();
    request->waitForSyncToFinish();
    thread = new tbThread;
    thread->kill();
    thread->addActionToQueue(request.get());
    request->waitForSyncToFinish();
    EXPECT_EQ(request->getRefCount(), 1);
}

TEST(Thread, MayBeDeletedByItsOwnAction)
{
    std::atomic<bool> started{false}, deleted{false};
    tbThread* thread = new tbThread;
    thread->ref();
    thread->addActionToQueue(new FuncAction(
        [&](tbBase* initiator, tbEvent*)
        {
            comesTrue([&] { return started.load(); });
            initiator->unRef();
            deleted = true;
            return true;
        }));
    const tbRef<FuncAction> action = new FuncAction;
    thread->addAction(action.get());
    thread->run();
    started = true;
    EXPECT_TRUE(comesTrue([&] { return deleted.load() && action->getRefCount() == 1; }));
}

TEST(Thread, EndsWithTheLocksThatItHeld)
{
    const tbRef<tbLock> lock = new tbLock;
    {
        const tbRef<tbThread> thread = new tbThread;
        thread->addInitAction(new FuncAction(
            [&](tbBase*, tbEvent*)
            {
                lock->acquire();
                return true;
            }));
        thread->run();
        thread->flushQueue();
        EXPECT_FALSE(lock->available());
    }
    EXPECT_TRUE(lock->available());
    lock->release();
}

TEST(Thread, AdoptedItStandsForTheCallingThread)
{
    std::thread(
        []
        {
            EXPECT_EQ(tbThread::getCurrentThread(), nullptr);
            tbRef<tbThread> thread = new tbThread(true);
            EXPECT_EQ(tbThread::getCurrentThread(), thread.get());
            EXPECT_TRUE(thread->inCurrentThread());
            EXPECT_TRUE(thread->isAdopted());
            EXPECT_EQ(thread->getState(), tbThread::STATE_RUNNING);
            EXPECT_NE(thread->getTravContext(), nullptr);
            const tbRef<FuncAction> action = new FuncAction;
            thread->addActionToQueue(action.get());
            thread->flushQueue();
            EXPECT_EQ(action->getTimes(), 1);
            thread.reset();
            EXPECT_EQ(tbThread::getCurrentThread(), nullptr);
        })
        .join();
}

TEST(Thread, AdoptedItIsDeadWhenItsThreadHasEnded)
{
    tbRef<tbThread> thread;
    std::thread([&] { thread = new tbThread(true); }).join();
    EXPECT_EQ(thread->getState(), tbThread::STATE_DEAD);
    thread->flushQueue();
    EXPECT_FALSE(thread->setProcessors(1));
}

TEST(Thread, ApplicationThreadIsTheOneThatLoadedTheLibrary)
{
    ASSERT_NE(tbGetAppThread(), nullptr);
    EXPECT_EQ(tbThread::getCurrentThread(), tbGetAppThread());
    EXPECT_TRUE(tbGetAppThread()->inCurrentThread());
    EXPECT_TRUE(tbInAppThread());
}

TEST(Thread, PriorityAndProcessorsAreWhatTheSystemAccepts)
{
    const tbRef<tbThread> thread = new tbThread;
    for (const int outside : {-1, 32, 1000})
        EXPECT_FALSE(thread->setPriority(outside));
    EXPECT_TRUE(thread->setPriority(13));
    EXPECT_TRUE(thread->setPriority(11));
    EXPECT_TRUE(thread->setPriority(11));
    EXPECT_TRUE(thread->setProcessors(~0u));
    EXPECT_FALSE(thread->setProcessors(0));
}

TEST(Thread, KillAndSuspendAtAnyMoment)
{
    for (int round = 0; round < 60; ++round)
    {
        const tbRef<tbThread> thread = new tbThread;
        const tbRef<FuncAction> action = new FuncAction;
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
