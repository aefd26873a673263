#include <tamber/graph/tbGroup.h>

#include <tamber/graph/tbTransform.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/trav/tbTravContext.h>
#include <tests/graph/GraphModel.h>
#include <tests/support/TestScene.h>
#include <tests/support/WalkCamera.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>

using tbtest::addNew;
using tbtest::ContentNode;
using tbtest::named;

TEST(Group, OperationsRefuseNullAndPlacesBeforeTheFirst)
{
    const tbRef<tbGroup> root(new tbGroup);
    tbGroup* a = addNew(root.get(), new tbGroup);
    for (const bool done :
         {root->addChild(nullptr), root->insertChild(-1, addNew(a, new tbGroup)), root->removeChild(nullptr),
          a->insertAbove(nullptr), a->insertBelow(nullptr), a->replace(nullptr), a->replaceGraph(nullptr)})
        EXPECT_FALSE(done);
    EXPECT_EQ(root->getNumChildren(), 1);
    EXPECT_FALSE(root->hasChild(nullptr));
}

TEST(Group, OperationsLeaveNodesThatNobodyHoldsToTheCaller)
{
    const int before = tbGroup::getNum(false);
    auto* loose = new tbGroup;
    loose->detach();
    loose->insertBelow(new tbGroup);
    loose->removeChildren();
    loose->insertAbove(loose);
    EXPECT_EQ(loose->getRefCount(), 0);
    EXPECT_EQ(tbGroup::getNum(false), before + 1);
    loose->remove();
    EXPECT_EQ(tbGroup::getNum(false), before);
}

TEST(Group, AllTravFlagsAsksWhetherTheNodesFlagsLieInsideTheMask)
{
    const tbRef<tbGroup> node(new tbGroup);
    EXPECT_TRUE(node->allTravFlags(0));
    const tbRef<tbGroup> content(new ContentNode(0x400));
    EXPECT_FALSE(content->allTravFlags(0));
    EXPECT_TRUE(content->allTravFlags(0x600));
}

TEST(Group, FindGroupStepsOnOnceWhateverThePreviousIs)
{
    const tbRef<tbGroup> root(named("r", new tbGroup));
    tbGroup* first = addNew(addNew(root.get(), named("x", new tbGroup)), named("a", new tbGroup));
    tbGroup* second = addNew(first, named("A", new tbGroup));
    EXPECT_EQ(root->findGroup("a"), first);
    EXPECT_EQ(root->findGroup("a", root.get()), second);
    EXPECT_EQ(root->findGroup("a", second), second);
    EXPECT_EQ(root->findGroup("nobody"), nullptr);
}

TEST(Group, CamerasEnterOnlyChildrenThatSayTheyHoldGeometry)
{
    const tbRef<tbGroup> root(new tbGroup);
    tbtest::TestGeometry* drawn[2];
    for (tbtest::TestGeometry*& geometry : drawn)
        geometry = addNew(addNew(root.get(), new tbGroup), new tbtest::TestGeometry);
    root->addChild(new ContentNode(0x7C00));
    const tbRef<tbStats> stats(new tbStats);
    tbtest::WalkCamera camera;
    camera->getTravContext()->setStats(stats.get());
    camera.walk(root.get());
    EXPECT_EQ(drawn[0]->numDrawn + drawn[1]->numDrawn, 2);
    EXPECT_EQ(stats->getCount(tbGroup::getClassType()), 3);
    root->getChild(0)->removeChild(drawn[0]);
    camera.walk(root.get());
    EXPECT_EQ(stats->getCount(tbGroup::getClassType()), 5);
}

TEST(Group, CopiesDropContentsAndDisposableCopiesKeepAllFlags)
{
    const tbRef<tbGroup> root(new tbGroup);
    root->addChild(new ContentNode(0x200));
    root->setNodeFlags(tbGroup::NODE_SHARE);
    const tbRef<tbGroup> copy(static_cast<tbGroup*>(root->createCopy()));
    EXPECT_EQ(copy->getTravFlags(), root->getTravFlags() & 0x81FF);
    EXPECT_EQ(copy->getNodeFlags(), tbGroup::NODE_SHARE);
    EXPECT_EQ(copy->getNumChildren(), 0);
    const int before = tbGroup::getNum(true);
    tbArena arena(1024);
    const auto* disposable = static_cast<const tbGroup*>(root->createDisposableCopy(&arena));
    EXPECT_EQ(disposable->getTravFlags(), root->getTravFlags());
    EXPECT_EQ(tbGroup::getNum(true), before);
}

TEST(GroupType, NumbersNodeTypesAndMakesNodesByNumber)
{
    const int slot = tbTransform::getClassType()->getGroupSlot();
    ASSERT_LT(slot, tbGroupType::getNumGroupTypes());
    EXPECT_EQ(tbGroupType::getGroupType(slot), tbTransform::getClassType());
    tbBase* node = tbGroupType::createInstance(slot);
    ASSERT_NE(node, nullptr);
    EXPECT_TRUE(node->isOfExactType(tbTransform::getClassType()));
    node->unRef();
    EXPECT_EQ(tbGroupType::createInstance(-1), nullptr);
    EXPECT_EQ(tbGroupType::createInstance(tbGroupType::getNumGroupTypes()), nullptr);

    const auto make = []
    { return new tbGroupType(tbGroup::getClassType(), "short-lived", nullptr, nullptr, nullptr); };
    tbGroupType* types[] = {make(), make()};
    types[0]->deleteType();
    types[0] = make();
    for (tbGroupType* type : types)
        EXPECT_EQ(tbGroupType::getGroupType(type->getIndex()), type);
    for (tbGroupType* type : types)
        type->deleteType();
}

// The first reader after removals closes the holes that they left; readers may meet there.
TEST(Group, ReadersOnSeveralThreadsMayMeetInListsWithHoles)
{
    constexpr int NUM = 2000;
    const tbRef<tbGroup> left(new tbGroup);
    const tbRef<tbGroup> right(new tbGroup);
    std::vector<tbRef<tbGroup>> nodes;
    for (int i = 0; i < NUM; ++i)
    {
        nodes.emplace_back(new tbGroup);
        left->addChild(nodes.back().get());
        right->addChild(nodes.back().get());
    }
    for (int i = 100; i < NUM - 100; i += 3)
    {
        left->removeChild(nodes[std::size_t(i)].get());
        right->removeChild(nodes[std::size_t(i + 1)].get());
    }
    std::atomic<int> wrong{0};
    const auto read = [&](const tbGroup* group)
    {
        for (int i = 0; i < group->getNumChildren(); ++i)
            if (group->getChildIndex(group->getChild(i)) != i)
                ++wrong;
        tbSphere bounds;
        nodes[0]->getBoundingVolume(bounds); // as colliders ask geometry
    };
    {
        std::jthread first(read, left.get());
        std::jthread second(read, right.get());
        std::jthread third(read, left.get());
    }
    EXPECT_EQ(wrong, 0);
}
