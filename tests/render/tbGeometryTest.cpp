#include <tamber/render/tbGeometry.h>

#include <tamber/kernel/tbRef.h>

#include <gtest/gtest.h>

#include <tests/support/TestGeometry.h>

namespace
{

class OpenGeometry : public tbtest::TestGeometry
{
public:
    void giveUp(unsigned bits) { cleanUp(bits); }
    void setFlags(unsigned bits) { setTravFlags(bits); }
};

} // namespace

TEST(Geometry, KeepsItsOwnContentBitWhenItIsCleaned)
{
    tbRef<OpenGeometry> geometry = new OpenGeometry;
    EXPECT_EQ(geometry->getTravFlags(), unsigned(tbGroup::TF_HAS_GEOMETRY));
    geometry->setFlags(tbGroup::TF_HAS_GEOMETRY | tbGroup::TF_HAS_EMITTER);
    geometry->giveUp(tbGroup::TF_HAS_GEOMETRY | tbGroup::TF_HAS_EMITTER);
    EXPECT_EQ(geometry->getTravFlags(), unsigned(tbGroup::TF_HAS_GEOMETRY));
}

TEST(Geometry, ParentsKnowThatGeometryCameAndWent)
{
    tbRef<tbGroup> root = new tbGroup;
    tbRef<tbGroup> parent = new tbGroup;
    tbRef<OpenGeometry> geometry = new OpenGeometry;
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

TEST(Geometry, BaseIsLeftOutOfDeepCopies)
{
    tbRef<tbGroup> root = new tbGroup;
    root->addChild(new OpenGeometry);
    tbRef<tbGroup> copy = root->makeCopy();
    EXPECT_EQ(copy->getNumChildren(), 0);
}
