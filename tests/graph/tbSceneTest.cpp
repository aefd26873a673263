#include <tamber/graph/tbScene.h>

#include <tamber/graph/tbTransform.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/thread/tbEvent.h>
#include <tamber/trav/tbTravContext.h>
#include <tests/support/TestScene.h>
#include <tests/support/Threads.h>

#include <gtest/gtest.h>

#include <string>

namespace
{

std::string calls;

class DirectNode : public tbGroup
{
public:
    explicit DirectNode(char letter) : name(letter) {}
    void updateDirect(tbScene* scene, bool before) override
    {
        calls += before ? name : char(std::toupper(name));
        if (toRemove)
            scene->removeDirectCall(tbScene::DIRECT_UPDATE_BEFORE, toRemove);
        toRemove = nullptr;
    }
    void applyDirect(tbCamera*, bool before) const override { calls += before ? '1' : '2'; }
    using tbGroup::applyDirect;

    tbGroup* toRemove = nullptr;

private:
    char name;
};

std::string updateOf(tbtest::TestScene& scene)
{
    calls.clear();
    scene.update();
    return calls;
}

class SceneCalls : public testing::Test
{
protected:
    const tbRef<DirectNode> a{new DirectNode('a')};
    const tbRef<DirectNode> b{new DirectNode('b')};
    tbtest::TestScene scene;
};

} // namespace

TEST_F(SceneCalls, ReachRegisteredNodesOnceInOrderAroundTheUpdate)
{
    for (DirectNode* node : {b.get(), a.get(), b.get()})
        scene->addDirectCall(tbScene::DIRECT_UPDATE_BEFORE, node);
    scene->addDirectCall(tbScene::DIRECT_UPDATE_AFTER, a.get());
    scene->addDirectCall(tbScene::DIRECT_CALL(9), a.get());
    EXPECT_EQ(updateOf(scene), "baA");
    scene->removeDirectCall(tbScene::DIRECT_UPDATE_BEFORE, b.get());
    scene->removeDirectCall(tbScene::DIRECT_UPDATE_BEFORE, b.get());
    EXPECT_EQ(updateOf(scene), "aA");
    scene->addDirectCall(tbScene::DIRECT_CAMERA_AFTER, b.get());
    calls.clear();
    scene->applyDirect(static_cast<tbCamera*>(nullptr), true);
    scene->applyDirect(static_cast<tbCamera*>(nullptr), false);
    EXPECT_EQ(calls, "2");
}

TEST_F(SceneCalls, PassOverANodeThatLeavesTheListMeanwhile)
{
    a->toRemove = b.get();
    scene->addDirectCall(tbScene::DIRECT_UPDATE_BEFORE, a.get());
    scene->addDirectCall(tbScene::DIRECT_UPDATE_BEFORE, b.get());
    EXPECT_EQ(updateOf(scene), "a");
}

TEST_F(SceneCalls, EndWithTheSceneAndForDetachedAndDestroyedNodes)
{
    {
        tbtest::TestScene former;
        former->addChild(a.get());
        former->addDirectCall(tbScene::DIRECT_UPDATE_BEFORE, a.get());
    }
    tbGroup* parent = scene.addGroup();
    const tbRef<tbGroup> between(scene.addGroup(parent));
    between->addChild(a.get());
    scene->addDirectCall(tbScene::DIRECT_UPDATE_BEFORE, a.get());
    tbRef<DirectNode> outside(new DirectNode('o'));
    scene->addDirectCall(tbScene::DIRECT_UPDATE_BEFORE, outside.get());
    EXPECT_EQ(updateOf(scene), "ao");
    between->detach();
    EXPECT_EQ(updateOf(scene), "o");
    outside.reset();
    EXPECT_EQ(updateOf(scene), "");
}

TEST_F(SceneCalls, AreGivenUpByManyInAnyOrder)
{
    constexpr int NUM = 50'000;
    std::vector<tbRef<tbGroup>> nodes;
    for (int i = 0; i < NUM; ++i)
        nodes.emplace_back(new DirectNode('n'));
    for (int round = 0; round < 3; ++round)
        for (const tbRef<tbGroup>& node : nodes)
            scene->addDirectCall(tbScene::DIRECT_UPDATE_BEFORE, node.get());
    EXPECT_EQ(updateOf(scene).size(), std::size_t(NUM));
    for (int i = 0; i < NUM; ++i)
        if (i % 1000 != 0)
            scene->removeDirectCall(tbScene::DIRECT_UPDATE_BEFORE, nodes[std::size_t(i)].get());
    EXPECT_EQ(updateOf(scene).size(), std::size_t(NUM / 1000));
}

TEST(Scene, UpdatesOnlyWhatChangedAndAlwaysTriggersItsEvents)
{
    tbtest::TestScene scene;
    tbTransform* transform = scene.addTransform(nullptr, 1, 2, 3);
    scene.addTransform(nullptr, 4, 5, 6);
    scene.addGeometry(transform, tbSphere(tbVec3(0, 0, 0), 2));
    const tbRef<tbStats> stats(new tbStats);
    scene->getTravContext()->setStats(stats.get());
    scene.update();
    EXPECT_EQ(stats->getCount(tbTransform::getClassType()), 2);
    EXPECT_EQ(scene->getTravFlags() & 0xFF, 0u);
    EXPECT_EQ(scene->getVolume()->getRadius(), 2);
    EXPECT_EQ((*scene->getVolume()->getCenter())[2], 3);
    const double first = scene->getPostUpdateEvent()->getTime();
    scene.update();
    EXPECT_EQ(stats->getCount(tbTransform::getClassType()), 2);
    EXPECT_EQ(stats->getNumFrames(), 2);
    EXPECT_GT(scene->getPostUpdateEvent()->getTime(), first);
    EXPECT_EQ(scene->getPreUpdateEvent()->getInitiator(), scene.get());
    transform->setXYZ(0, 0, 9);
    scene.update();
    EXPECT_EQ(stats->getCount(tbTransform::getClassType()), 3);
    EXPECT_EQ((*scene->getVolume()->getCenter())[2], 9);
    scene->removeChild(transform);
    scene->updateFences();
    EXPECT_TRUE(scene->getVolume()->isEmpty());
}

TEST(Scene, AnEditWaitsForTheLastQueryAndKeepsNewOnesOut)
{
    tbtest::TestScene scene;
    scene->acquireForQuery();
    scene->acquireForQuery();
    std::atomic<int> state{0};
    std::jthread editor(
        [&]
        {
            scene->acquireForMods();
            state = 1;
            tbtest::comesTrue([&] { return state == 2; });
            scene->releaseFromMods();
        });
    scene->releaseFromQuery();
    tbtest::sleep(30);
    EXPECT_EQ(state, 0);
    scene->releaseFromQuery();
    ASSERT_TRUE(tbtest::comesTrue([&] { return state == 1; }));
    EXPECT_FALSE(scene->availableForQuery());
    EXPECT_FALSE(scene->availableForMods());
    state = 2;
    scene->acquireForQuery();
    scene->releaseFromQuery();
    editor.join();
    EXPECT_TRUE(scene->availableForMods());
}

TEST(Scene, EditsAndQueriesExcludeEachOtherOverManyRounds)
{
    tbtest::TestScene scene;
    tbGroup* group = scene.addGroup();
    scene.update();
    int value = 0; // written by edits, read by queries
    std::atomic<int> queries{0}, wrong{0};
    const auto edit = [&]
    {
        scene->acquireForMods();
        wrong += queries != 0;
        ++value;
        scene->releaseFromMods();
    };
    const auto query = [&]
    {
        scene->acquireForQuery();
        ++queries;
        const int before = value;
        tbSphere bounds;
        group->getBoundingVolume(bounds); // writes nothing that stands already
        std::this_thread::yield();
        wrong += before != value;
        --queries;
        scene->releaseFromQuery();
    };
    const auto repeat = [](int times, auto work)
    {
        for (int i = 0; i < times; ++i)
            work();
    };
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 2; ++i)
        {
            threads.emplace_back(repeat, 300, edit);
            threads.emplace_back(repeat, 600, query);
        }
    }
    EXPECT_EQ(value, 600);
    EXPECT_EQ(wrong, 0);
}

TEST(Scene, AnEditorMayQueryAndUnmatchedReleasesDoNothing)
{
    tbtest::TestScene scene;
    scene->releaseFromMods();
    scene->releaseFromQuery();
    scene->acquireForMods();
    scene->acquireForQuery();
    scene->releaseFromMods();
    scene->releaseFromQuery();
    scene->acquireForMods();
    scene->releaseFromMods();
    EXPECT_TRUE(scene->availableForQuery());
}

TEST(Scene, ASceneUnderANodeRaisesNoFlagsThere)
{
    const tbRef<tbGroup> root(new tbGroup);
    root->addChild(new tbScene);
    EXPECT_EQ(root->getTravFlags(), 0u);
}
