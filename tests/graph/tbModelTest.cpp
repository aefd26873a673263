#include <tamber/graph/tbModel.h>

#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>
#include <tests/support/TestScene.h>

#include <gtest/gtest.h>

namespace
{

class MaskReader : public tbTraverser
{
public:
    MaskReader()
    {
        setTravContext(new tbTravContext);
        getTravContext()->setTraitStack(new tbTraitStack);
    }
    TRAV_STATE apply(tbGroup* group) override
    {
        ++numVisited;
        if (group->getNumChildren() == 0)
            mask = getTravContext()->getColliderMask();
        if (group == gone)
            group->detach();
        return group == gone ? TRAV_PRUNE : TRAV_CONTINUE;
    }

    const tbGroup* gone = nullptr;
    int numVisited = 0;
    unsigned mask = 0;
};

} // namespace

TEST(Model, ADisabledModelIsNeitherUpdatedBoundedNorVisited)
{
    const tbRef<tbGroup> root(new tbTransform);
    auto* model = tbtest::addNew(root.get(), new tbModel);
    model->addChild(new tbtest::TestGeometry(tbSphere(tbVec3(0, 0, 0), 1)));
    model->enable(false);
    const tbRef<tbTravContext> context(new tbTravContext);
    root->update(context.get());
    EXPECT_TRUE(model->anyTravFlags(tbGroup::TF_UPDATE));
    EXPECT_FALSE(root->anyTravFlags(tbGroup::TF_UPDATE));
    tbSphere bounds;
    root->getBoundingVolume(bounds);
    EXPECT_TRUE(bounds.isEmpty());
    const tbRef<MaskReader> reader(new MaskReader);
    reader->traverse(root.get());
    EXPECT_EQ(reader->numVisited, 1);
    model->enable(true);
    EXPECT_TRUE(root->anyTravFlags(tbGroup::TF_UPDATE));
    root->getBoundingVolume(bounds);
    EXPECT_EQ(bounds.getRadius(), 1);
    root->update(context.get());
    model->enable(false);
    root->addChild(new tbGroup);
    root->getBoundingVolume(bounds);
    EXPECT_TRUE(bounds.isEmpty());
    model->enable(true);
    root->getBoundingVolume(bounds);
    EXPECT_EQ(bounds.getRadius(), 1);
}

TEST(Model, HandsItsColliderMaskDown)
{
    const tbRef<tbGroup> root(new tbGroup);
    auto* outer = tbtest::addNew(root.get(), new tbModel);
    auto* inner = tbtest::addNew(outer, new tbModel);
    outer->setColliderMask(0x30);
    EXPECT_EQ(inner->getColliderMask(), 0u);
    inner->setColliderMask(0x7);
    inner->addChild(new tbGroup);
    const tbRef<MaskReader> reader(new MaskReader);
    reader->traverse(root.get());
    EXPECT_EQ(reader->mask, 0x7u);
    EXPECT_EQ(reader->numVisited, 4);
    reader->gone = inner; // takes the model out that it visits, which dies
    reader->traverse(root.get());
    EXPECT_EQ(reader->numVisited, 7);
    reader->setTravContext(new tbTravContext);
    reader->traverse(root.get());
    EXPECT_EQ(reader->mask, 0xFFFFFFFFu);
}

TEST(Model, CopiesKeepTheirOwnMask)
{
    const tbRef<tbModel> model(new tbModel);
    model->setColliderMask(0x5);
    model->enable(false);
    const tbRef<tbModel> copy(static_cast<tbModel*>(model->makeClone()));
    model->setColliderMask(0x6);
    EXPECT_EQ(copy->getColliderMask(), 0x5u);
    EXPECT_FALSE(copy->isEnabled());
}
