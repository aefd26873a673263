#include <tamber/graph/tbTransform.h>
#include <tests/graph/GraphModel.h>
#include <tests/support/TestScene.h>

#include <gtest/gtest.h>

using tbtest::addNew;

TEST(GroupCopy, ADeepCopyHasItsOwnNodesAndNoReferences)
{
    const tbRef<tbGroup> root(new tbGroup);
    auto* child = addNew(root.get(), new tbTransform);
    addNew(child, new tbGroup);
    addNew(root.get(), new tbtest::TestGeometry);
    const tbRef<tbGroup> copy(root->makeCopy());
    EXPECT_EQ(copy->getRefCount(), 1);
    ASSERT_EQ(copy->getNumChildren(), 1) << "geometry stays behind";
    EXPECT_NE(copy->getChild(0), child);
    EXPECT_EQ(copy->getChild(0)->getNumChildren(), 1);
    EXPECT_TRUE(copy->anyTravFlags(tbGroup::TF_UPDATE));
    const tbRef<tbGroup> geometry(new tbtest::TestGeometry);
    EXPECT_EQ(geometry->makeCopy(), nullptr);
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
    for (int i = 0; i < 3; ++i)
    {
        tbGroup* parent = addNew(root.get(), new tbGroup);
        parent->addChild(new tbGroup);
        parent->addChild(shared);
    }
    root->updateSharedInstances();
    EXPECT_EQ(root->getChild(0)->getChild(1), shared);
    for (const tbGroup* parent : root->getChildren())
    {
        const tbGroup* own = parent->getChild(1);
        EXPECT_EQ(own->getNumParents(), 1);
        EXPECT_EQ(own->getRefCount(), 1);
        EXPECT_EQ(own->getNumChildren(), 1);
    }
    EXPECT_FALSE(root->anyTravFlags(tbGroup::TF_SHARED));
}

TEST(SharedInstances, NodesMarkedSharedAndNodesWithoutACopyStayShared)
{
    const tbRef<tbGroup> root(new tbGroup);
    auto* marked = new tbGroup;
    marked->setNodeFlags(tbGroup::NODE_SHARE);
    auto* uncopied = new tbtest::TestGeometry;
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
    const int before = tbGroup::getNum(true);
    const tbRef<tbGroup> root(new tbGroup);
    auto* inner = new tbGroup;
    auto* outer = new tbGroup;
    addNew(outer, new tbGroup)->addChild(inner);
    addNew(outer, new tbGroup)->addChild(inner);
    addNew(root.get(), new tbGroup)->addChild(outer);
    addNew(root.get(), new tbGroup)->addChild(outer);
    root->updateSharedInstances();
    EXPECT_EQ(tbGroup::getNum(true) - before, 1 + 2 * (1 + 1 + 2 * 2));
    EXPECT_EQ(tbtest::numWithSeveralParents(root.get()), 0);
}
