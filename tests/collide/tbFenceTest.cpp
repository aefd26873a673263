#include <tamber/collide/tbBoxFence.h>

#include <tamber/collide/tbSphereFence.h>
#include <tests/support/Near.h>
#include <tests/support/TestScene.h>
#include <tests/support/WalkCamera.h>

#include <gtest/gtest.h>

namespace
{

template <class Fence>
Fence* addFence(tbGroup* parent, const tbSphere& content)
{
    auto* fence = new Fence;
    fence->addChild(new tbtest::TestGeometry(content));
    parent->addChild(fence);
    return fence;
}

int drawn(const tbGroup* fence)
{
    return static_cast<tbtest::TestGeometry*>(fence->getChild(0))->numDrawn;
}

} // namespace

TEST(Fence, VolumeIsEmptyUntilTheBoundsPassAndInTheFencesOwnCoordinates)
{
    tbtest::TestScene scene;
    tbTransform* place = scene.addTransform(nullptr, 100, 0, 0);
    auto* box = addFence<tbBoxFence>(scene, tbSphere(tbVec3(101, 2, 3), 1));
    auto* sphere = addFence<tbSphereFence>(place, tbSphere(tbVec3(1, 2, 3), 1));
    EXPECT_TRUE(box->getBox()->isEmpty());
    scene.update();
    EXPECT_TRUE(tbtest::near(*box->getBox()->getMin(), tbVec3(100, 1, 2)));
    EXPECT_TRUE(tbtest::near(*box->getBox()->getMax(), tbVec3(102, 3, 4)));
    EXPECT_TRUE(tbtest::near(*sphere->getSphere()->getCenter(), tbVec3(1, 2, 3)));
    EXPECT_TRUE(tbtest::near(*scene->getVolume()->getCenter(), tbVec3(101, 2, 3), 0.2f)); // of both
}

TEST(Fence, AutomaticOnesDropHandSetValuesAndFixedOnesKeepThem)
{
    tbtest::TestScene scene;
    auto* fence = addFence<tbBoxFence>(scene, tbSphere(tbVec3(0, 0, 0), 1));
    scene.update();
    fence->setMinCorner(tbVec3(-50, -50, -50));
    EXPECT_TRUE(scene->anyTravFlags(tbGroup::TF_FENCE));
    scene.update();
    EXPECT_TRUE(tbtest::near(*fence->getBox()->getMin(), tbVec3(-1, -1, -1)));
    fence->setMode(tbFence::FIXED);
    fence->setMinCorner(tbVec3(-50, -50, -50));
    scene.update();
    EXPECT_TRUE(tbtest::near(*fence->getBox()->getMin(), tbVec3(-50, -50, -50)));
    EXPECT_GT(scene->getVolume()->getRadius(), 40.0f); // it contributes what was set
    fence->setMode(tbFence::AUTO);
    EXPECT_TRUE(fence->anyTravFlags(tbGroup::TF_FENCE));
    scene.update();
    fence->setMode(tbFence::AUTO);
    EXPECT_FALSE(fence->anyTravFlags(tbGroup::TF_FENCE));
}

TEST(Fence, BelowAFixedOneBoundsAreStillRenewed)
{
    tbtest::TestScene scene;
    auto* fence = new tbSphereFence;
    fence->setMode(tbFence::FIXED);
    fence->setRadius(3);
    scene->addChild(fence);
    tbTransform* inner = scene.addTransform(fence, 0, 0, 0);
    scene.addGeometry(inner, tbSphere(tbVec3(4, 0, 0), 1));
    scene.update();
    EXPECT_TRUE(tbtest::near(*inner->getVolume()->getCenter(), tbVec3(4, 0, 0)));
    EXPECT_EQ(fence->getSphere()->getRadius(), 3.0f);
}

TEST(Fence, CameraCullsWhatLiesOutside)
{
    tbtest::TestScene scene;
    auto* ahead = addFence<tbBoxFence>(scene, tbSphere(tbVec3(0, 50, 0), 1));
    auto* behind = addFence<tbSphereFence>(scene, tbSphere(tbVec3(0, -50, 0), 1));
    scene.update();
    tbtest::WalkCamera camera;
    tbFrustum eye;
    eye.makeFOV(60, 60, 1, 100);
    camera.frustum().xform(eye, camera->getWorldToRenderingMatrix());
    camera.walk(scene, true);
    EXPECT_EQ(drawn(ahead), 1);
    EXPECT_EQ(drawn(behind), 0);
    camera.walk(scene, false);
    EXPECT_EQ(drawn(behind), 1);
}
