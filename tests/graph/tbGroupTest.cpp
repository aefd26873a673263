#include <tamber/graph/tbGroup.h>

#include <tamber/graph/tbTransform.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/trav/tbTravContext.h>
#include <tests/graph/GraphModel.h>
#include <tests/support/TestGeometry.h>
#include <tests/support/WalkCamera.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>

using tbtest::ContentNode;

namespace
{

tbGroup* named(const char* name, tbGroup* parent)
{
    auto* node = new tbGroup;
    node->setName(name);
    if (parent)
        parent->addChild(node);
    return node;
}

std::string namesOf(std::span<tbGroup* const> nodes)
{
    std::string names;
    for (const tbGroup* node : nodes)
        names += node->getName();
    return names;
}

class StopAt : public tbTraverser
{
public:
    explicit StopAt(const tbGroup* wanted, TRAV_STATE found) : node(wanted), answer(found)
    {
        setTravContext(new tbTravContext);
    }
    TRAV_STATE apply(tbGroup* group) override
    {
        visited += group->getName();
        return group == node ? answer : TRAV_CONTINUE;
    }

    std::string visited;

private:
    const tbGroup* node;
    TRAV_STATE answer;
};

} // namespace

TEST(Group, StructuralOperationsRefuseWhatTheyMust)
{
    const tbRef<tbGroup> root(named("r", nullptr));
    tbGroup* a = named("a", root.get());
    tbGroup* b = named("b", a);
    EXPECT_FALSE(root->addChild(nullptr));
    EXPECT_FALSE(root->addChild(root.get()));
    EXPECT_FALSE(root->addChild(a));
    EXPECT_FALSE(root->insertChild(2, b));
    EXPECT_FALSE(root->insertChild(-1, b));
    EXPECT_FALSE(root->removeChild(b));
    EXPECT_FALSE(a->replace(b));
    EXPECT_FALSE(b->replace(a));
    EXPECT_FALSE(a->replaceGraph(a));
    EXPECT_FALSE(a->insertAbove(nullptr));
    EXPECT_FALSE(a->insertBelow(a));
    EXPECT_EQ(namesOf(root->getChildren()), "a");
    EXPECT_EQ(a->getRefCount(), 1);
    EXPECT_EQ(a->getNumParents(), 1);
    EXPECT_EQ(root->getChildIndex(b), -1);
    EXPECT_FALSE(root->hasChild(nullptr));
}

TEST(Group, RemoveWithOneChildKeepsItsPlaceAndWithSeveralAppendsThem)
{
    const tbRef<tbGroup> root(named("r", nullptr));
    named("a", root.get());
    tbGroup* one = named("o", root.get());
    tbGroup* many = named("m", root.get());
    named("z", root.get());
    named("k", one);
    named("x", many);
    named("y", many);
    one->remove();
    EXPECT_EQ(namesOf(root->getChildren()), "akmz");
    many->remove();
    EXPECT_EQ(namesOf(root->getChildren()), "akzxy");
}

TEST(Group, NodesThatWouldStandTwiceOrInThemselvesLoseThePlace)
{
    const tbRef<tbGroup> root(named("r", nullptr));
    tbGroup* a = named("a", root.get());
    tbGroup* b = named("b", root.get());
    a->addChild(b);
    a->remove();
    EXPECT_EQ(namesOf(root->getChildren()), "b");
    EXPECT_EQ(b->getRefCount(), 1);
    tbGroup* c = named("c", b);
    EXPECT_TRUE(c->replaceGraph(b));
    EXPECT_EQ(b->getNumChildren(), 0);
    EXPECT_EQ(b->getNumParents(), 1);
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

TEST(Group, SharedNodesRaiseTheFlagInAllAncestors)
{
    const tbRef<tbGroup> root(named("r", nullptr));
    tbGroup* a = named("a", root.get());
    tbGroup* b = named("b", root.get());
    tbGroup* k = named("k", a);
    EXPECT_FALSE(root->anyTravFlags(tbGroup::TF_SHARED));
    b->addChild(k);
    for (const tbGroup* node : {root.get(), a, b, k})
        EXPECT_TRUE(node->anyTravFlags(tbGroup::TF_SHARED));
}

TEST(Group, ContentsLeaveAnAncestorOnlyWithTheirLastHolder)
{
    const tbRef<tbGroup> root(named("r", nullptr));
    tbGroup* a = named("a", root.get());
    auto* first = new ContentNode(0x800);
    auto* second = new ContentNode(0x800);
    a->addChild(first);
    a->addChild(second);
    a->removeChild(first);
    EXPECT_TRUE(root->anyTravFlags(0x800));
    a->removeChild(second);
    EXPECT_FALSE(root->anyTravFlags(0x800));
    EXPECT_FALSE(a->anyTravFlags(0x800));
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
    const tbRef<tbGroup> root(named("r", nullptr));
    tbGroup* first = named("a", named("x", root.get()));
    tbGroup* second = named("A", first);
    EXPECT_EQ(root->findGroup("a"), first);
    EXPECT_EQ(root->findGroup("a", root.get()), second);
    EXPECT_EQ(root->findGroup("a", second), second);
    EXPECT_EQ(root->findGroup("nobody"), nullptr);
}

TEST(Group, DescendantsAreFoundThroughEveryPath)
{
    const tbRef<tbGroup> root(named("r", nullptr));
    tbGroup* a = named("a", root.get());
    tbGroup* b = named("b", root.get());
    auto* k = new tbTransform;
    b->addChild(k);
    a->addChild(k);
    EXPECT_TRUE(root->hasDescendant(k));
    EXPECT_TRUE(b->hasDescendant(k));
    EXPECT_FALSE(root->hasDescendant(root.get()));
    EXPECT_FALSE(k->hasDescendant(a));
    EXPECT_TRUE(root->hasDescendantOfType(tbTransform::getClassType()));
    EXPECT_TRUE(k->hasDescendantOfType(tbGroup::getClassType()));
    EXPECT_FALSE(a->hasDescendantOfType(tbTraverser::getClassType()));
}

TEST(Group, AStoppedWalkLeavesItsPathAndAPrunedOnePassesOverTheChildren)
{
    const tbRef<tbGroup> root(named("r", nullptr));
    tbGroup* a = named("a", root.get());
    tbGroup* b = named("b", a);
    named("c", b);
    named("d", root.get());
    const tbRef<StopAt> stop(new StopAt(b, tbTraverser::TRAV_STOP));
    stop->traverse(root.get());
    EXPECT_EQ(stop->visited, "rab");
    EXPECT_EQ(stop->getTravContext()->getGroup(), b);
    EXPECT_EQ(stop->getTravContext()->popGroup(), b);
    EXPECT_EQ(stop->getTravContext()->popGroup(), a);
    const tbRef<StopAt> prune(new StopAt(a, tbTraverser::TRAV_PRUNE));
    prune->traverse(root.get());
    EXPECT_EQ(prune->visited, "rad");
    EXPECT_EQ(prune->getTravContext()->getGroup(), nullptr);
}

TEST(Group, CamerasEnterOnlyChildrenThatSayTheyHoldGeometry)
{
    const tbRef<tbGroup> root(new tbGroup);
    tbtest::TestGeometry* drawn[2];
    for (tbtest::TestGeometry*& geometry : drawn)
    {
        geometry = new tbtest::TestGeometry;
        named("g", root.get())->addChild(geometry);
    }
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

TEST(Group, UpdateDescendsOnlyWhereSomethingChanged)
{
    const tbRef<tbGroup> root(named("r", nullptr));
    tbGroup* a = named("a", root.get());
    tbGroup* b = named("b", root.get());
    const tbRef<tbTravContext> context(new tbTravContext);
    root->update(context.get());
    EXPECT_EQ(root->getTravFlags(), 0u);
    named("c", b);
    EXPECT_EQ(root->getTravFlags(), unsigned(tbGroup::TF_UPDATE | tbGroup::TF_ADDED));
    EXPECT_EQ(a->getTravFlags(), 0u);
    root->update(context.get());
    EXPECT_EQ(b->getTravFlags(), 0u);
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
    };
    {
        std::jthread first(read, left.get());
        std::jthread second(read, right.get());
        std::jthread third(read, left.get());
    }
    EXPECT_EQ(wrong, 0);
}
