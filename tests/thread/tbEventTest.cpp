#include <tamber/thread/tbEvent.h>

#include <tamber/action/tbActionNode.h>
#include <tamber/kernel/tbRef.h>
#include <tests/support/Threads.h>

#include <gtest/gtest.h>

#include <string>

using tbtest::FuncAction;

namespace
{

class NodeAction : public tbActionNode
{
public:
    explicit NodeAction(std::string& order) : log(order) {}
    using tbGroup::apply;
    bool apply(tbBase*, tbEvent*) override
    {
        log += 'n';
        return true;
    }

private:
    std::string& log;
};

} // namespace

TEST(Event, RunsActionsThenNodesInOrderWithInitiatorAndEvent)
{
    const tbRef<tbEvent> event = new tbEvent;
    const tbRef<tbEvent> initiator = new tbEvent;
    std::string log;
    event->addAction(new NodeAction(log));
    for (const char letter : {'a', 'b'})
        event->addAction(new FuncAction(
            [&, letter](tbBase* by, tbEvent* of)
            {
                EXPECT_EQ(by, initiator.get());
                EXPECT_EQ(of, event.get());
                log += letter;
                return false;
            }));
    event->addAction(static_cast<tbAction*>(nullptr));
    EXPECT_EQ(event->getTime(), 0);
    event->trigger(initiator.get());
    EXPECT_EQ(log, "abn");
    EXPECT_GT(event->getTime(), 0);
    EXPECT_EQ(event->getInitiator(), initiator.get());
    EXPECT_EQ(initiator->getRefCount(), 1);
    EXPECT_EQ(event->getNumActions(), 2);
    EXPECT_EQ(event->getNumActionNodes(), 1);
    EXPECT_EQ(event->getAction(2), nullptr);
}

TEST(Event, DisabledItWakesButRunsNothing)
{
    const tbRef<tbEvent> event = new tbEvent;
    const tbRef<FuncAction> action = new FuncAction;
    event->addAction(action.get());
    event->enable(false);
    std::atomic<bool> woken{false};
    std::jthread waiting([&] { woken = event->waitForTrigger(10000); });
    EXPECT_TRUE(tbtest::comesTrue(
        [&]
        {
            event->trigger(nullptr);
            return woken.load();
        }));
    EXPECT_EQ(action->getTimes(), 0);
    EXPECT_EQ(event->getTime(), 0);
}

TEST(Event, TriggerIsNotRememberedForWhoWaitsLater)
{
    const tbRef<tbEvent> event = new tbEvent;
    event->trigger(nullptr);
    for (const int milliseconds : {10, 0})
        EXPECT_FALSE(event->waitForTrigger(milliseconds)) << milliseconds;
}

TEST(Event, OneTriggerWakesEveryThreadThatWaits)
{
    const tbRef<tbEvent> event = new tbEvent;
    constexpr int NUM_THREADS = 5;
    std::atomic<int> woken{0}, entered{0};
    const auto threads = tbtest::startThreads(NUM_THREADS,
                                              [&](int)
                                              {
                                                  entered.fetch_add(1);
                                                  woken.fetch_add(event->waitForTrigger(10000));
                                              });
    ASSERT_TRUE(tbtest::comesTrue([&] { return entered == NUM_THREADS; }));
    tbtest::sleep(50);
    event->trigger(nullptr);
    EXPECT_TRUE(tbtest::comesTrue([&] { return woken == NUM_THREADS; }));
}

TEST(Event, ThreadsThatWaitOverAndOverMissNothingThatComesWhileTheyWait)
{
    const tbRef<tbEvent> ping = new tbEvent;
    std::atomic<int> answers{0};
    std::jthread other(
        [&]
        {
            while (answers < 200 && ping->waitForTrigger(10000))
                answers.fetch_add(1);
        });
    EXPECT_TRUE(tbtest::comesTrue(
        [&]
        {
            for (int i = 0; i < 1000; ++i) // at any moment of the other thread
                ping->trigger(nullptr);
            return answers == 200;
        }));
}

TEST(Event, ActionsMayChangeTheirEventAndTriggerIt)
{
    const tbRef<tbEvent> event = new tbEvent;
    int depth = 0;
    const tbRef<FuncAction> late = new FuncAction;
    event->addAction(new FuncAction(
        [&](tbBase*, tbEvent* of)
        {
            if (depth++ == 0)
            {
                of->addAction(late.get());
                of->trigger(nullptr);
            }
            return true;
        }));
    event->trigger(nullptr);
    EXPECT_EQ(depth, 2);
    EXPECT_EQ(late->getTimes(), 1);
}

TEST(Event, IsAnActionOfOthers)
{
    const tbRef<tbEvent> event = new tbEvent;
    const tbRef<FuncAction> action = new FuncAction;
    event->addAction(action.get());
    EXPECT_TRUE(event->apply(event.get(), nullptr));
    tbEvent::trigger(event.get(), nullptr);
    tbEvent::trigger(nullptr, nullptr);
    EXPECT_EQ(action->getTimes(), 2);
}

TEST(Event, LivesUntilItsTriggerIsOverThoughAnActionReleasesIt)
{
    const int before = tbEvent::getNum(false);
    tbRef<tbEvent> event = new tbEvent;
    event->addAction(new FuncAction([&] { event.reset(); }));
    event->addAction(new FuncAction([&] { EXPECT_EQ(tbEvent::getNum(false), before + 1); }));
    event->trigger(nullptr);
    EXPECT_EQ(tbEvent::getNum(false), before);
}

TEST(Event, IsFoundByNameOrMade)
{
    const tbRef<tbEvent> event = tbEvent::findOrCreate("EventTest.doorOpens");
    EXPECT_EQ(tbEvent::findOrCreate("EventTest.doorOpens"), event.get());
    EXPECT_EQ(tbEvent::findOrCreate(""), nullptr);
    EXPECT_EQ(tbEvent::findOrCreate(nullptr), nullptr);
}

TEST(Event, CopyHoldsTheSameActionsAndLetsThemGo)
{
    const tbRef<FuncAction> action = new FuncAction;
    tbRef<tbEvent> event = new tbEvent;
    event->addAction(action.get());
    event->enable(false);
    {
        const tbRef<tbEvent> copy = static_cast<tbEvent*>(event->createCopy());
        EXPECT_FALSE(copy->isEnabled());
        EXPECT_EQ(action->getRefCount(), 3);
        const tbRef<tbEvent> other = new tbEvent;
        *other = *event;
        *other = *other;
        EXPECT_EQ(action->getRefCount(), 4);
    }
    EXPECT_EQ(action->getRefCount(), 2);
    event.reset();
    EXPECT_EQ(action->getRefCount(), 1);
}
