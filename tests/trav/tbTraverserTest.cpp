#include <tamber/trav/tbTraverser.h>

#include <tamber/graph/tbGroup.h>
#include <tamber/graph/tbSwitch.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbTravPath.h>

#include <string>

#include <gtest/gtest.h>

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
        if (pruned == group->getName())
            return TRAV_PRUNE;
        return tbTraverser::apply(group);
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
        tbGroup* const nodes[] = {new tbGroup, new tbGroup,  new tbGroup,
                                  new tbGroup, new tbSwitch, new tbGroup};
        const int parents[] = {-1, 0, 1, 1, 0, 4};
        for (int i = 0; i < 6; ++i)
        {
            nodes[i]->setName(std::string(1, char('a' + i)).c_str());
            if (i > 0)
                nodes[parents[i]]->addChild(nodes[i]);
        }
        static_cast<tbSwitch*>(nodes[4])->allOn();
        root = nodes[0];
    }
    std::string walk()
    {
        traverser->traverse(root.get());
        return traverser->visited;
    }
    int depth() const { return traverser->getTravContext()->getTravStack().getNum(); }

    tbRef<tbGroup> root;
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

TEST_F(Traverser, HoldsItsBreakPointAndContext)
{
    tbRef<tbGroup> group(new tbGroup);
    tbRef<tbTravContext> context(new tbTravContext);
    tbRef<tbTraverser> plain(new tbTraverser);
    plain->setGroupBreakPoint(group.get());
    plain->setGroupBreakPoint(group.get());
    plain->setTravContext(context.get());
    tbRef<tbBase> copy(plain->createCopy());
    EXPECT_EQ(group->getRefCount(), 3);
    EXPECT_EQ(context->getRefCount(), 3);
    copy.reset();
    plain.reset();
    EXPECT_EQ(group->getRefCount(), 1);
    EXPECT_EQ(context->getRefCount(), 1);
}
} // namespace
