#include <tamber/trav/tbTraverser.h>

#include <tamber/graph/tbGroup.h>
#include <tamber/graph/tbSwitch.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbTravPath.h>
#include <tests/support/TestScene.h>

#include <string>

#include <gtest/gtest.h>

using tbtest::addNew;
using tbtest::named;

namespace
{
// Writes down the names of the nodes that it enters.
class NameTraverser : public tbTraverser
{
public:
    NameTraverser() { setTravContext(new tbTravContext); }

    TRAV_STATE preApply(tbGroup* group) override
    {
        return vetoed == group->getName() ? vetoWith : TRAV_CONTINUE;
    }
    TRAV_STATE apply(tbGroup* group) override
    {
        visited += group->getName();
        return pruned == group->getName() ? TRAV_PRUNE : tbTraverser::apply(group);
    }
    void reset() override
    {
        visited.clear();
        tbTraverser::reset();
    }

    std::string visited;
    std::string vetoed;
    TRAV_STATE vetoWith = TRAV_PRUNE;
    std::string pruned;
};

// a(b(c d) e(f)), where e is a switch that shows its children.
class Traverser : public testing::Test
{
protected:
    Traverser()
    {
        tbGroup* b = addNew(root.get(), named("b", new tbGroup));
        b->addChild(named("c", new tbGroup));
        b->addChild(named("d", new tbGroup));
        addNew(root.get(), named("e", new tbSwitch))->addChild(named("f", new tbGroup));
    }
    std::string walk()
    {
        traverser->traverse(root.get());
        return traverser->visited;
    }
    int depth() const { return traverser->getTravContext()->getTravStack().getNum(); }

    tbRef<tbGroup> root{named("a", new tbGroup)};
    tbRef<NameTraverser> traverser{new NameTraverser};
};

TEST_F(Traverser, VisitsParentsBeforeChildrenAndLeavesNoPath)
{
    EXPECT_EQ(walk(), "abcdef");
    EXPECT_EQ(depth(), 0);
    traverser->traverse(nullptr); // is not even a reset
    EXPECT_EQ(traverser->visited, "abcdef");
    traverser->setTravContext(nullptr);
    traverser->visited.clear();
    EXPECT_EQ(walk(), "");
}

TEST_F(Traverser, PrunedNodesAreVisitedButNotTheirChildren)
{
    traverser->pruned = "b";
    EXPECT_EQ(walk(), "abef");
    EXPECT_EQ(depth(), 0);
}

TEST_F(Traverser, VetoedNodesAreNeitherVisitedNorCountedAndAVetoCanStopTheWalk)
{
    tbRef<tbStats> stats(new tbStats);
    traverser->getTravContext()->setStats(stats.get());
    traverser->vetoed = "b";
    EXPECT_EQ(walk(), "aef");
    EXPECT_EQ(depth(), 0);
    EXPECT_EQ(stats->getCount(tbGroup::getClassType()), 2);
    traverser->vetoed = "d";
    traverser->vetoWith = tbTraverser::TRAV_STOP;
    EXPECT_EQ(walk(), "abc");
    EXPECT_EQ(depth(), 2);
}

TEST_F(Traverser, AStoppedWalkLeavesThePathToTheNode)
{
    traverser->setGroupBreakPoint(root.get());
    EXPECT_EQ(walk(), "a");
    EXPECT_EQ(depth(), 1);
    tbGroup* d = root->findGroup("d");
    traverser->setGroupBreakPoint(d);
    EXPECT_EQ(walk(), "abcd");
    const tbTravPath path(traverser->getTravContext()->getTravStack());
    ASSERT_EQ(path.getNum(), 3);
    EXPECT_EQ(path.get(0), root.get());
    EXPECT_EQ(path.get(2), d);
    traverser->setGroupBreakPoint(nullptr);
    EXPECT_EQ(walk(), "abcdef");
    EXPECT_EQ(depth(), 0);
}

TEST_F(Traverser, TypeBreakPointsTellDerivedTypesApart)
{
    traverser->setExactTypeBreakPoint(tbSwitch::getClassType());
    EXPECT_EQ(walk(), "abcde");
    traverser->setExactTypeBreakPoint(tbBase::getClassType());
    EXPECT_EQ(walk(), "abcdef");
    traverser->setExactTypeBreakPoint(nullptr);
    traverser->setIsOfTypeBreakPoint(tbSwitch::getClassType());
    EXPECT_EQ(walk(), "abcde");
    traverser->setIsOfTypeBreakPoint(tbGroup::getClassType());
    EXPECT_EQ(walk(), "a");
}

TEST_F(Traverser, CopiesHoldItsBreakPointAndContext)
{
    const tbRef<tbTravContext> context(new tbTravContext);
    {
        const tbRef<tbTraverser> plain(new tbTraverser);
        plain->setGroupBreakPoint(root.get());
        plain->setTravContext(context.get());
        const tbRef<tbBase> copy(plain->createCopy());
        EXPECT_EQ(root->getRefCount() + context->getRefCount(), 3 + 3);
    }
    EXPECT_EQ(root->getRefCount() + context->getRefCount(), 1 + 1);
}
} // namespace
