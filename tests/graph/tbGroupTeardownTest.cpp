// Graphs that are deep, wide or shared come down in any order, on an ordinary stack and in linear time.
#include <tamber/graph/tbAutoSwitch.h>
#include <tamber/graph/tbTransform.h>
#include <tamber/trav/tbTravContext.h>
#include <tests/graph/GraphModel.h>
#include <tests/support/Cost.h>
#include <tests/support/TestScene.h>

#include <gtest/gtest.h>

#include <random>

using tbtest::addNew;
using tbtest::ContentNode;
using tbtest::HookNode;

namespace
{

constexpr int DEEP = 100'000;

// The deepest node of a chain below `root`, with contents.
tbGroup* makeChain(tbGroup* root, int depth)
{
    tbGroup* last = root;
    for (int i = 0; i < depth; ++i)
        last = addNew(last, i % 2 == 0 ? new tbGroup : new tbTransform);
    return addNew(last, new ContentNode(0x600));
}

// Counts how often any of its kind is told that it left its parent.
class TeardownCounter : public tbGroup
{
public:
    inline static int numNotified = 0;

protected:
    void removedFrom(tbGroup* parent) override
    {
        ++numNotified;
        tbGroup::removedFrom(parent);
    }
};

// Builds and tears down `width` groups of ten nodes each, in the given order. Seconds per node.
double secondsPerNode(int width, unsigned seed)
{
    std::vector<tbGroup*> groups;
    const tbRef<tbGroup> root(new tbGroup);
    const tbtest::Cost cost;
    for (int i = 0; i < width; ++i)
    {
        groups.push_back(addNew(root.get(), new tbGroup));
        for (int k = 0; k < 8; ++k)
            groups.back()->addChild(new tbGroup);
        groups.back()->addChild(new ContentNode(0x200));
    }
    if (seed == 1)
        std::reverse(groups.begin(), groups.end());
    else if (seed > 1)
        std::shuffle(groups.begin(), groups.end(), std::mt19937(seed));
    for (tbGroup* group : groups)
        root->removeChild(group);
    const double seconds = cost.seconds();
    EXPECT_EQ(root->getNumChildren(), 0);
    EXPECT_FALSE(root->anyTravFlags(0x200));
    return seconds / (10.0 * width);
}

} // namespace

TEST(GroupTeardown, ADeepChainIsTakenApartFromTheBottom)
{
    const tbRef<tbGroup> root(new tbGroup);
    tbGroup* content = makeChain(root.get(), DEEP);
    EXPECT_TRUE(root->anyTravFlags(0x600));
    tbGroup* last = content->getParent(0);
    content->detach();
    EXPECT_FALSE(root->anyTravFlags(0x600));
    EXPECT_TRUE(root->anyTravFlags(tbGroup::TF_REMOVED));
    while (last != root.get())
    {
        tbGroup* parent = last->getParent(0);
        last->detach();
        last = parent;
    }
    EXPECT_EQ(root->getNumChildren(), 0);
}

TEST(GroupTeardown, ADeepChainDiesWithItsRootOrLevelByLevelFromTheTop)
{
    const int before = tbGroup::getNum(true);
    tbRef<tbGroup> top(new tbGroup);
    makeChain(top.get(), DEEP);
    EXPECT_EQ(tbGroup::getNum(true), before + DEEP + 2);
    top = new tbGroup;
    EXPECT_EQ(tbGroup::getNum(true), before + 1);
    makeChain(top.get(), DEEP / 50);
    while (top->getNumChildren() > 0)
    {
        const tbRef<tbGroup> next(top->getChild(0));
        top->removeChild(next.get());
        top = next;
    }
    top.reset();
    EXPECT_EQ(tbGroup::getNum(true), before);
}

TEST(GroupTeardown, EveryNodeOfADyingTreeIsToldOnce)
{
    const int before = tbGroup::getNum(true);
    tbRef<tbGroup> root(new tbGroup);
    tbGroup* parent = root.get();
    for (int i = 0; i < 50; ++i)
    {
        parent->addChild(new TeardownCounter);
        parent = addNew(parent, new TeardownCounter);
    }
    root.reset();
    EXPECT_EQ(TeardownCounter::numNotified, 100);
    EXPECT_EQ(tbGroup::getNum(true), before);
}

TEST(GroupTeardown, WhatOutlivesADyingParentIsToldWithEverythingBelow)
{
    const tbRef<tbTransform> survivor(new tbTransform);
    const tbRef<tbGroup> below(new tbGroup);
    survivor->addChild(below.get());
    {
        const tbRef<tbGroup> root(new tbGroup);
        addNew(root.get(), new tbGroup)->addChild(survivor.get());
        const tbRef<tbTravContext> context(new tbTravContext);
        root->update(context.get());
        EXPECT_FALSE(below->anyTravFlags(tbGroup::TF_UPDATE));
    }
    EXPECT_EQ(survivor->getNumParents(), 0);
    EXPECT_TRUE(survivor->anyTravFlags(tbGroup::TF_UPDATE));
    EXPECT_TRUE(survivor->anyTravFlags(tbGroup::TF_MATRIX));
    EXPECT_TRUE(below->anyTravFlags(tbGroup::TF_UPDATE));
}

// What only the graph holds goes while nodes below it are told of an edit.
TEST(GroupTeardown, HooksMayTakeAwayTheNodesThatAreJustEdited)
{
    const tbRef<tbGroup> root(new tbGroup);
    const tbRef<tbGroup> child(new tbGroup);
    auto* hooked = addNew(addNew(child.get(), new tbGroup), new HookNode);
    child->addChild(new tbGroup);
    tbGroup* parent = addNew(root.get(), new tbAutoSwitch);
    parent->addChild(child.get());
    hooked->hook = [&] { root->removeChildren(); };
    EXPECT_TRUE(parent->removeChild(child.get()));
    EXPECT_TRUE(addNew(root.get(), new tbAutoSwitch)->addChild(child.get()));
    EXPECT_EQ(child->getNumParents(), 0);
    hooked->hook = [&] { child->removeChildren(); };
    EXPECT_TRUE(root->addChild(child.get()));
    EXPECT_EQ(child->getNumChildren(), 0);
}

// A diamond of thirty levels has 2^30 paths; each edge is told once.
TEST(GroupTeardown, ADeepLatticeIsAttachedAndDetachedInNoTime)
{
    const tbRef<tbGroup> root(new tbGroup);
    const tbRef<tbGroup> top(new tbGroup);
    tbGroup* last = top.get();
    for (int i = 0; i < 30; ++i)
    {
        auto* next = i == 29 ? new ContentNode(0x200) : new tbGroup;
        for (auto* side : {new tbGroup, new tbGroup})
        {
            side->addChild(next);
            last->addChild(side);
        }
        last = next;
    }
    EXPECT_TRUE(root->addChild(top.get()));
    EXPECT_TRUE(root->anyTravFlags(0x200));
    EXPECT_TRUE(root->hasDescendant(last));
    EXPECT_FALSE(root->hasDescendantOfType(tbTransform::getClassType()));
    last->setName("bottom");
    EXPECT_EQ(root->findGroup("nobody", root.get()), nullptr);
    EXPECT_EQ(root->findGroup("bottom", last), last); // by the second path
    EXPECT_TRUE(root->removeChild(top.get()));
    EXPECT_FALSE(root->anyTravFlags(0x200));
}

TEST(GroupTeardown, TimePerNodeDoesNotGrowWithTheNumberOfSiblings)
{
    for (const unsigned order : {0u, 1u, 2u})
    {
        secondsPerNode(1'000, order);
        const double small = secondsPerNode(1'000, order);
        const double large = secondsPerNode(30'000, order);
        EXPECT_LE(large, 12 * small) << "order " << order;
    }
}

TEST(GroupTeardown, ANodeUnderManyParentsLeavesThemInAnyOrder)
{
    constexpr int NUM = 100'000;
    const tbRef<tbGroup> shared(new ContentNode(0x200));
    std::vector<tbRef<tbGroup>> parents;
    for (int i = 0; i < NUM; ++i)
    {
        parents.emplace_back(new tbGroup);
        parents.back()->addChild(shared.get());
    }
    std::shuffle(parents.begin(), parents.end(), std::mt19937(3));
    const tbtest::Cost cost;
    parents.clear();
    EXPECT_LT(cost.seconds(), 10.0);
    EXPECT_EQ(shared->getNumParents(), 0);
}
