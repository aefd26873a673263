#include <tamber/render/tbGeometry.h>

#include <tamber/kernel/tbRef.h>

#include <gtest/gtest.h>

#include <tests/support/TestGeometry.h>

namespace
{

class HookedGeometry : public tbtest::TestGeometry
{
public:
    void draw(tbCamera* camera) const override { tbGeometry::draw(camera); }
    void giveUp(unsigned bits) { cleanUp(bits); }
    void setFlags(unsigned bits) { setTravFlags(bits); }
};

const tbGeometry* drawn = nullptr;

void recordDrawing(const tbGeometry* geometry, tbCamera*)
{
    drawn = geometry;
}

} // namespace

TEST(Geometry, KeepsItsOwnContentBitWhenItIsCleaned)
{
    tbRef<HookedGeometry> geometry = new HookedGeometry;
    EXPECT_EQ(geometry->getTravFlags(), unsigned(tbGroup::TF_HAS_GEOMETRY));
    geometry->setFlags(tbGroup::TF_HAS_GEOMETRY | tbGroup::TF_HAS_EMITTER);
    geometry->giveUp(tbGroup::TF_HAS_GEOMETRY | tbGroup::TF_HAS_EMITTER);
    EXPECT_EQ(geometry->getTravFlags(), unsigned(tbGroup::TF_HAS_GEOMETRY));
}

TEST(Geometry, ParentsKnowThatGeometryCameAndWent)
{
    tbRef<tbGroup> root = new tbGroup;
    tbRef<tbGroup> parent = new tbGroup;
    tbRef<HookedGeometry> geometry = new HookedGeometry;
    root->addChild(parent.get());
    parent->addChild(geometry.get());
    const unsigned attached = tbGroup::TF_HAS_GEOMETRY | tbGroup::TF_GEOMETRY | tbGroup::TF_FENCE;
    EXPECT_EQ(root->anyTravFlags(attached), attached);

    geometry->setFlags(tbGroup::TF_HAS_GEOMETRY);
    parent->removeChild(geometry.get());
    EXPECT_EQ(root->anyTravFlags(tbGroup::TF_HAS_GEOMETRY), 0u);
    EXPECT_NE(geometry->anyTravFlags(tbGroup::TF_FENCE), 0u);
    EXPECT_NE(geometry->anyTravFlags(tbGroup::TF_HAS_GEOMETRY), 0u);
}

TEST(Geometry, DrawHandsItselfToTheHook)
{
    const tbGeometryDrawFunc before = tbiGeometryDrawFunc;
    tbiGeometryDrawFunc = &recordDrawing;
    tbRef<HookedGeometry> geometry = new HookedGeometry;
    geometry->draw(nullptr);
    tbiGeometryDrawFunc = before;
    EXPECT_EQ(drawn, geometry.get());
    tbGeometry::drawNothing(geometry.get(), nullptr);
}

TEST(Geometry, BaseIsLeftOutOfDeepCopies)
{
    tbRef<tbGroup> root = new tbGroup;
    root->addChild(new HookedGeometry);
    tbRef<tbGroup> copy = root->makeCopy();
    EXPECT_EQ(copy->getNumChildren(), 0);
    EXPECT_EQ(tbGeometry::createInstance(), nullptr);
    EXPECT_EQ(root->getChild(0)->createCopy(), nullptr);
}
