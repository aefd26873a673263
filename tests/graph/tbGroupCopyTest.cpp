#include <tamber/action/tbActionNode.h>
#include <tamber/graph/tbTransform.h>
#include <tests/graph/GraphModel.h>

#include <gtest/gtest.h>

namespace
{

// Refers to a node of its graph.
class CopyTestAction : public tbActionNode
{
public:
    explicit CopyTestAction(const tbGroup* wanted = nullptr) : target(wanted) {}
    bool apply(tbBase*, tbEvent*) override { return true; }

    const tbGroup* target;

protected:
    tbGroup* copyGroup() const override
    {
        auto* node = new CopyTestAction(target);
        addGroupMapping(this, node);
        return node;
    }
    tbGroup* cloneGroup() const override { return copyGroup(); }
    void resolveGroup(const tbGroup* prev, tbGroup* copy) override
    {
        if (target == prev)
            target = copy;
    }
};

// Left out of copies.
class CopyTestUncopied : public tbGroup
{
protected:
    tbGroup* copyGroup() const override { return nullptr; }
    tbGroup* cloneGroup() const override { return nullptr; }
};

template <class Node>
Node* addNew(tbGroup* parent, Node* node)
{
    parent->addChild(node);
    return node;
}

} // namespace

TEST(GroupCopy, ADeepCopyHasItsOwnNodesAndClassesAndNoReferences)
{
    const tbRef<tbGroup> root(new tbGroup);
    root->setName("root");
    auto* transform = addNew(root.get(), new tbTransform);
    transform->setXYZ(1, 2, 3);
    addNew(transform, new tbGroup);
    addNew(root.get(), new CopyTestUncopied);
    const tbRef<tbGroup> copy(root->makeCopy());
    EXPECT_EQ(copy->getRefCount(), 1);
    EXPECT_STREQ(copy->getName(), "root");
    ASSERT_EQ(copy->getNumChildren(), 1);
    ASSERT_TRUE(copy->getChild(0)->isOfExactType(tbTransform::getClassType()));
    float x, y, z;
    static_cast<tbTransform*>(copy->getChild(0))->getXYZ(x, y, z);
    EXPECT_EQ(z, 3);
    EXPECT_NE(copy->getChild(0), transform);
    EXPECT_EQ(copy->getChild(0)->getNumChildren(), 1);
    EXPECT_TRUE(copy->anyTravFlags(tbGroup::TF_UPDATE));
    const tbRef<tbGroup> uncopied(new CopyTestUncopied);
    EXPECT_EQ(uncopied->makeCopy(), nullptr);
}

TEST(GroupCopy, ActionNodesFollowTheCopies)
{
    const tbRef<tbGroup> root(new tbGroup);
    const tbRef<tbGroup> outside(new tbGroup);
    auto* target = addNew(root.get(), new tbGroup);
    auto* inner = addNew(target, new CopyTestAction(target));
    addNew(root.get(), new CopyTestAction(outside.get()));
    const tbRef<tbGroup> clone(root->makeClone());
    ASSERT_EQ(clone->getNumChildren(), 2);
    const auto* copied = static_cast<CopyTestAction*>(clone->getChild(0)->getChild(0));
    EXPECT_EQ(copied->target, clone->getChild(0));
    EXPECT_EQ(inner->target, target);
    EXPECT_EQ(static_cast<CopyTestAction*>(clone->getChild(1))->target, outside.get());
}

TEST(GroupCopy, AssignmentKeepsChildrenAndOwnContents)
{
    const tbRef<tbGroup> from(new tbGroup);
    addNew(from.get(), new tbtest::ContentNode(0x400));
    from->setNodeFlags(tbGroup::NODE_COPY);
    const tbRef<tbGroup> to(new tbGroup);
    addNew(to.get(), new tbtest::ContentNode(0x200));
    *to = *from;
    EXPECT_EQ(to->getNumChildren(), 1);
    EXPECT_EQ(to->getNodeFlags(), tbGroup::NODE_COPY);
    EXPECT_TRUE(to->anyTravFlags(0x200));
    EXPECT_FALSE(to->anyTravFlags(0x400));
}

TEST(SharedInstances, EveryParentButTheFirstGetsItsOwnClone)
{
    const tbRef<tbGroup> root(new tbGroup);
    auto* shared = new tbGroup;
    addNew(shared, new tbTransform);
    tbGroup* parents[3];
    for (tbGroup*& parent : parents)
    {
        parent = addNew(root.get(), new tbGroup);
        addNew(parent, new tbGroup);
        parent->addChild(shared);
    }
    root->updateSharedInstances();
    EXPECT_EQ(parents[0]->getChild(1), shared);
    EXPECT_EQ(shared->getNumParents(), 1);
    EXPECT_EQ(shared->getRefCount(), 1);
    EXPECT_NE(parents[1]->getChild(1), shared);
    EXPECT_NE(parents[1]->getChild(1), parents[2]->getChild(1));
    for (int i = 1; i < 3; ++i)
    {
        tbGroup* clone = parents[i]->getChild(1);
        EXPECT_EQ(clone->getNumParents(), 1);
        EXPECT_EQ(clone->getRefCount(), 1);
        EXPECT_EQ(clone->getNumChildren(), 1);
    }
    EXPECT_FALSE(root->anyTravFlags(tbGroup::TF_SHARED));
}

TEST(SharedInstances, NodesMarkedSharedAndNodesWithoutACopyStayShared)
{
    const tbRef<tbGroup> root(new tbGroup);
    auto* marked = new tbGroup;
    marked->setNodeFlags(tbGroup::NODE_SHARE);
    auto* uncopied = new CopyTestUncopied;
    for (int i = 0; i < 3; ++i)
    {
        auto* parent = addNew(root.get(), new tbGroup);
        parent->addChild(marked);
        parent->addChild(uncopied);
    }
    root->updateSharedInstances();
    EXPECT_EQ(marked->getNumParents(), 3);
    EXPECT_EQ(uncopied->getNumParents(), 3);
    EXPECT_FALSE(root->anyTravFlags(tbGroup::TF_SHARED));
    EXPECT_FALSE(marked->anyTravFlags(tbGroup::TF_SHARED));
}

TEST(SharedInstances, NestedSharingIsSplitAllTheWayDown)
{
    const tbRef<tbGroup> root(new tbGroup);
    auto* inner = new tbGroup;
    auto* outer = new tbGroup;
    addNew(outer, new tbGroup)->addChild(inner);
    addNew(outer, new tbGroup)->addChild(inner);
    addNew(root.get(), new tbGroup)->addChild(outer);
    addNew(root.get(), new tbGroup)->addChild(outer);
    root->updateSharedInstances();
    EXPECT_EQ(tbtest::numReachable(root.get()), 1 + 2 * (1 + 1 + 2 * 2));
    EXPECT_EQ(tbtest::numWithSeveralParents(root.get()), 0);
}
