// Attaching and detaching threads, and the deletion of objects that waits for all of them.
#include <tamber/thread/tbThread.h>

#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/thread/tbQueue.h>
#include <tests/support/FileNode.h>
#include <tests/support/Threads.h>

#include <gtest/gtest.h>

#include <random>
#include <vector>

using tbtest::comesTrue;
using tbtest::FileNode;
using tbtest::FuncAction;

namespace
{

int numAlive()
{
    return FileNode::getNum(false);
}

// Threads that never run by themselves: the tests handle their queues step by step.
class ThreadTree : public testing::Test
{
protected:
    void SetUp() override
    {
        app = tbGetAppThread();
        ASSERT_EQ(tbThread::getTotalDownstreamThreads(), 0);
    }
    void TearDown() override
    {
        detachAll();
        app->processQueue(true);
        EXPECT_EQ(tbThread::getTotalDownstreamThreads(), 0);
        EXPECT_EQ(tbBase::getNumPendingDeletions(), 0);
        EXPECT_EQ(numAlive(), 0);
    }
    void detachAll()
    {
        for (const auto& thread : made)
            while (tbThread* above = thread->getUpstreamThread(0))
                above->removeDownstreamThread(thread.get());
        made.clear();
    }
    tbRef<tbThread> make()
    {
        made.emplace_back(new tbThread);
        return made.back();
    }

    // Drops the last reference of a new object, which a deferred deletion keeps.
    static FileNode* drop()
    {
        auto* object = new FileNode;
        object->ref();
        object->unRef();
        return object;
    }

    tbThread* app = nullptr;
    std::vector<tbRef<tbThread>> made;
};

} // namespace

TEST_F(ThreadTree, AttachAndDetachKeepCountsAndLinks)
{
    const auto child = make(), grandchild = make();
    EXPECT_TRUE(app->addDownstreamThread(child.get()));
    EXPECT_TRUE(child->addDownstreamThread(grandchild.get()));
    EXPECT_TRUE(app->addDownstreamThread(grandchild.get()));
    // What would break the tree is refused.
    for (tbThread* thread : {child.get(), app})
        EXPECT_FALSE(grandchild->addDownstreamThread(thread));
    for (tbThread* thread : {child.get(), grandchild.get(), static_cast<tbThread*>(nullptr)})
        EXPECT_FALSE(child->addDownstreamThread(thread));
    EXPECT_FALSE(app->removeDownstreamThread(nullptr));
    EXPECT_EQ(tbThread::getTotalDownstreamThreads(), 3);
    EXPECT_EQ(child->getRefCount(), 3);
    EXPECT_EQ(grandchild->getRefCount(), 4);
    EXPECT_EQ(app->getDownstreamThread(1), grandchild.get());
    EXPECT_EQ(app->getDownstreamThread(2), nullptr);
    EXPECT_EQ(grandchild->getFirstUpstreamThread(), child.get());
    EXPECT_TRUE(grandchild->hasAncestor(app));
    EXPECT_FALSE(child->hasAncestor(grandchild.get()));
    EXPECT_FALSE(child->hasAncestor(child.get()));

    EXPECT_TRUE(child->removeDownstreamThread(grandchild.get()));
    EXPECT_FALSE(child->removeDownstreamThread(grandchild.get()));
    EXPECT_EQ(grandchild->getFirstUpstreamThread(), app);
    EXPECT_EQ(tbThread::getTotalDownstreamThreads(), 2);
    EXPECT_TRUE(child->shareCommonAncestor(grandchild.get()));
    EXPECT_TRUE(app->removeDownstreamThread(grandchild.get()));
    EXPECT_EQ(grandchild->getFirstUpstreamThread(), nullptr);
    EXPECT_FALSE(child->shareCommonAncestor(grandchild.get()));
    EXPECT_EQ(grandchild->getRefCount(), 2);
}

TEST_F(ThreadTree, WithoutThreadsDeletionIsImmediate)
{
    drop();
    EXPECT_EQ(numAlive(), 0);
    const auto child = make();
    app->addDownstreamThread(child.get());
    drop();
    EXPECT_EQ(numAlive(), 1);
    app->removeDownstreamThread(child.get());
    app->processQueue(false);
    EXPECT_EQ(numAlive(), 0);
    drop();
    EXPECT_EQ(numAlive(), 0);
}

TEST_F(ThreadTree, DeletionGoesOnceDownEachAttachmentAndBack)
{
    // app - left, right; both - shared; shared - leaf
    const auto left = make(), right = make(), shared = make(), leaf = make();
    app->addDownstreamThread(left.get());
    app->addDownstreamThread(right.get());
    left->addDownstreamThread(shared.get());
    right->addDownstreamThread(shared.get());
    shared->addDownstreamThread(leaf.get());
    FileNode* object = drop();
    const std::pair<tbThread*, int> passes[] = {{left.get(), -6}, {app, -5},          {right.get(), -4},
                                                {app, -4},        {shared.get(), -3}, {leaf.get(), -3},
                                                {left.get(), -2}, {shared.get(), -1}, {leaf.get(), 0}};
    for (const auto& [thread, count] : passes)
    {
        const tbRef<tbBase> found(object); // changes nothing any more
        thread->processQueue(false);
        EXPECT_EQ(object->getRefCount(), count);
    }
    EXPECT_EQ(tbBase::getNumPendingDeletions(), 1);
    EXPECT_EQ(numAlive(), 1);
    app->processQueue(false);
    EXPECT_EQ(tbBase::getNumPendingDeletions(), 0);
    EXPECT_EQ(numAlive(), 0);
}

TEST_F(ThreadTree, QueuedActionMeetsTheObjectAlive)
{
    const auto child = make();
    app->addDownstreamThread(child.get());
    auto* object = new FileNode;
    object->ref();
    int seen = -1;
    child->addActionToQueue(new FuncAction([&] { seen = object->getName() ? 0 : numAlive(); }));
    object->unRef();
    app->processQueue(true);
    app->processQueue(true);
    child->processQueue(true);
    EXPECT_EQ(seen, 1);
    app->processQueue(true);
    EXPECT_EQ(numAlive(), 0);
}

TEST_F(ThreadTree, ChangesOfTheTreeStartDeletionsAgain)
{
    const auto first = make(), second = make();
    app->addDownstreamThread(first.get());
    const FileNode* object = drop();
    app->processQueue(false);
    EXPECT_EQ(object->getRefCount(), -1);
    first->addDownstreamThread(second.get());
    EXPECT_EQ(object->getRefCount(), -3);
    app->processQueue(false);
    first->processQueue(false);
    EXPECT_EQ(object->getRefCount(), -1);
    app->removeDownstreamThread(first.get());
    EXPECT_EQ(object->getRefCount(), -2);
    app->processQueue(false); // second is reached from no root but its own
    EXPECT_EQ(object->getRefCount(), -1);
    first->removeDownstreamThread(second.get());
    app->processQueue(true);
    EXPECT_EQ(numAlive(), 0);
}

TEST_F(ThreadTree, DeadThreadsHoldNothingUp)
{
    const auto first = make(), below = make();
    app->addDownstreamThread(first.get());
    first->addDownstreamThread(below.get());
    const FileNode* object = drop();
    app->processQueue(false);
    EXPECT_EQ(object->getRefCount(), -2);
    first->kill();
    EXPECT_TRUE(comesTrue([&] { return object->getRefCount() == -1; }));
    EXPECT_TRUE(comesTrue([&] { return below->getQueue()->getCount() == 1; }));
    below->processQueue(false);
    app->processQueue(false);
    EXPECT_EQ(numAlive(), 0);
    drop();
    app->processQueue(false);
    below->processQueue(false);
    app->processQueue(false);
    EXPECT_EQ(numAlive(), 0);
}

TEST_F(ThreadTree, ParentThatGoesLetsItsChildrenGo)
{
    tbRef<tbThread> parent = new tbThread;
    const auto child = make();
    parent->addDownstreamThread(child.get());
    EXPECT_EQ(child->getRefCount(), 3);
    drop();
    EXPECT_EQ(numAlive(), 1);
    tbThread* raw = parent.get();
    parent.reset();
    EXPECT_EQ(raw->getRefCount(), -2);
    app->processQueue(true);
    child->processQueue(true);
    app->processQueue(true);
    EXPECT_EQ(child->getRefCount(), 2);
    EXPECT_EQ(child->getFirstUpstreamThread(), nullptr);
}

TEST_F(ThreadTree, FlushReachesTheWholeSubtree)
{
    const auto parent = make(), child = make();
    parent->addDownstreamThread(child.get());
    app->addDownstreamThread(parent.get());
    for (const auto& thread : made)
    {
        thread->setThreadMode(tbThread::THREAD_WAIT);
        thread->run();
    }
    const tbRef<FuncAction> action = new FuncAction;
    for (tbThread* above : {parent.get(), app})
    {
        child->addActionToQueue(action.get());
        above->flushQueue();
        EXPECT_EQ(action->getTimes(), above == app ? 2 : 1);
    }
}

TEST_F(ThreadTree, FlushOutlivesTheThreadThatIsLetGoMeanwhile)
{
    auto* child = new tbThread;
    app->addDownstreamThread(child);
    child->setThreadMode(tbThread::THREAD_WAIT);
    child->run();
    const tbRef<FuncAction> detach = new FuncAction([&] { app->removeDownstreamThread(child); });
    child->addActionToQueue(new FuncAction(
        [&]
        {
            app->addActionToQueue(detach.get());
            app->flushQueue();
        }));
    child->flushQueue();
    EXPECT_EQ(app->getNumDownstreamThreads(), 0);
}

TEST_F(ThreadTree, NothingIsLostUnderLoad)
{
    constexpr int NUM_THREADS = 3;
    constexpr int MOST_ALIVE = 500; // four threads may drop faster than one passes on
    const auto dropSome = []
    {
        if (numAlive() < MOST_ALIVE)
            drop();
        std::this_thread::yield();
    };
    std::atomic<bool> stop{false};
    for (int i = 0; i < NUM_THREADS; ++i)
    {
        make()->addAction(new FuncAction(dropSome));
        made.back()->run();
    }
    std::thread drops(
        [&]
        {
            while (!stop)
                dropSome();
        });
    std::mt19937 random(3);
    for (int round = 0; round < 150; ++round)
    {
        tbThread* const above[] = {app, made[random() % NUM_THREADS].get()};
        tbThread* const below = made[random() % NUM_THREADS].get();
        if (random() % 3 != 0)
            above[random() % 2]->addDownstreamThread(below);
        else
            above[random() % 2]->removeDownstreamThread(below);
        app->processQueue(false);
    }
    stop = true;
    drops.join();
    for (const auto& thread : made)
        thread->kill();
    detachAll();
    EXPECT_TRUE(comesTrue(
        [&]
        {
            app->processQueue(true);
            return numAlive() == 0;
        }));
}
