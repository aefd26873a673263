#include <tamber/graph/tbTransform.h>

#include <tamber/math/tbQuat.h>
#include <tamber/math/tbVec3.h>
#include <tamber/trav/tbTravContext.h>
#include <tests/support/Near.h>
#include <tests/support/TestScene.h>
#include <tests/support/WalkCamera.h>

#include <gtest/gtest.h>

using tbtest::addNew;
using tbtest::TestGeometry;

namespace
{

tbSphere boundsOf(tbGroup* node)
{
    tbSphere sphere;
    node->getBoundingVolume(sphere);
    return sphere;
}

testing::AssertionResult isSphere(const tbSphere& sphere, const tbVec3& center, float radius)
{
    if (std::abs(sphere.getRadius() - radius) > 1e-4f)
        return testing::AssertionFailure() << "radius " << sphere.getRadius() << " instead of " << radius;
    return tbtest::near(*sphere.getCenter(), center);
}

} // namespace

TEST(Transform, ARotationKeepsThePlaceAndAQuaternionReplacesTheWholeMatrix)
{
    const tbRef<tbTransform> node(new tbTransform);
    tbVec3 hpr, xyz;
    node->setXYZ(1, 2, 3);
    node->setHPR(30, 20, 10);
    node->getXYZ(xyz);
    EXPECT_TRUE(tbtest::near(xyz, tbVec3(1, 2, 3)));
    tbQuat quat;
    node->getQuat(quat);
    node->setQuat(quat);
    node->getHPR(hpr);
    node->getXYZ(xyz);
    EXPECT_TRUE(tbtest::near(hpr, tbVec3(30, 20, 10), 0.05f));
    EXPECT_TRUE(tbtest::near(xyz, tbVec3(0, 0, 0)));
}

// No order of moves and passes leaves a stale sphere.
TEST(Transform, AMovedNodeMakesBoundsAboveStaleWhateverTheyCarry)
{
    const tbRef<tbTransform> root(new tbTransform);
    auto* node = addNew(root.get(), new tbTransform);
    node->addChild(new TestGeometry(tbSphere(tbVec3(0, 0, 0), 1)));
    const tbRef<tbTravContext> context(new tbTravContext);
    for (const float x : {0.0f, 5.0f, 7.0f, 9.0f})
    {
        if (x > 8)
            root->update(context.get());
        node->setXYZ(x, 0, 0);
        EXPECT_TRUE(isSphere(boundsOf(root.get()), tbVec3(x, 0, 0), 1));
    }
}

TEST(Transform, BoundsStandInTheNodesOwnCoordinatesAndReachTheParentPlaced)
{
    const tbRef<tbTransform> root(new tbTransform);
    auto* node = addNew(root.get(), new tbTransform);
    root->setXYZ(0, 0, 10);
    node->setXYZ(5, 0, 0);
    node->addChild(new TestGeometry(tbSphere(tbVec3(0, 1, 0), 2)));
    EXPECT_TRUE(isSphere(boundsOf(root.get()), tbVec3(5, 1, 10), 2));
    EXPECT_TRUE(isSphere(*node->getVolume(), tbVec3(0, 1, 0), 2));
    EXPECT_TRUE(isSphere(*root->getVolume(), tbVec3(5, 1, 0), 2));
    EXPECT_FALSE(root->anyTravFlags(tbGroup::TF_FENCE));
    root->removeChild(node);
    EXPECT_TRUE(boundsOf(root.get()).isEmpty());
}

TEST(Transform, WalksPushNothingForTheIdentity)
{
    class Look : public tbTraverser
    {
    public:
        TRAV_STATE apply(tbGroup*) override
        {
            versions.push_back(getTravContext()->getMatrixID());
            place = getTravContext()->getMatrix();
            inverse = getTravContext()->getInvertMatrix();
            return TRAV_CONTINUE;
        }
        std::vector<int> versions;
        tbMatrix place, inverse;
    };
    const tbRef<tbGroup> root(new tbGroup);
    auto* node = addNew(root.get(), new tbTransform);
    const tbRef<Look> look(new Look);
    look->setTravContext(new tbTravContext);
    look->traverse(root.get());
    EXPECT_EQ(look->versions.at(0), look->versions.at(1));
    node->setXYZ(4, 0, 0);
    look->traverse(root.get());
    EXPECT_EQ(look->place[3][0], 4);
    EXPECT_EQ(look->inverse[3][0], -4);
    EXPECT_TRUE(tbtest::near(look->getTravContext()->getMatrix(), tbTravContext::ident));
}

TEST(Transform, AStoppedWalkLeavesItsFramesPushed)
{
    const tbRef<tbTransform> root(new tbTransform);
    auto* node = addNew(root.get(), new tbTransform);
    root->setXYZ(1, 0, 0);
    node->setXYZ(0, 2, 0);
    const tbRef<tbTraverser> traverser(new tbTraverser);
    traverser->setTravContext(new tbTravContext);
    traverser->setGroupBreakPoint(node);
    traverser->traverse(root.get());
    EXPECT_EQ(traverser->getTravContext()->getMatrix()[3][0], 1);
    EXPECT_EQ(traverser->getTravContext()->getMatrix()[3][1], 2);
    EXPECT_EQ(traverser->getTravContext()->getGroup(), node);
}

TEST(Transform, CamerasPassOverSubtreesOutOfView)
{
    tbtest::TestScene scene;
    const tbSphere ball(tbVec3(0, 0, 0), 1);
    const TestGeometry* seen = scene.addGeometry(scene.addTransform(nullptr, 0, 0, 0), ball);
    const TestGeometry* hidden = scene.addGeometry(scene.addTransform(nullptr, 0, 10, 0), ball);
    scene.update();
    tbtest::WalkCamera camera;
    camera.frustum().makeOrtho(-5, 5, -5, 5, -5, 5);
    camera.walk(scene, true);
    EXPECT_EQ(seen->numDrawn, 1);
    EXPECT_EQ(hidden->numDrawn, 0);
    camera.walk(scene, false);
    EXPECT_EQ(seen->numDrawn, 2);
    EXPECT_EQ(hidden->numDrawn, 1);
    camera->getTravContext()->reset();
    camera->getTravContext()->pushCullResult(tbVolume::OUTSIDE);
    scene->apply(camera.get());
    EXPECT_EQ(seen->numDrawn, 2);
}

TEST(Transform, CopiesTakeMatrixAndBounds)
{
    const tbRef<tbTransform> node(new tbTransform);
    node->setXYZ(1, 2, 3);
    node->addChild(new TestGeometry(tbSphere(tbVec3(0, 0, 0), 1)));
    boundsOf(node.get());
    const tbRef<tbTransform> copy(static_cast<tbTransform*>(node->createCopy()));
    EXPECT_EQ(copy->getVolume()->getRadius(), 1);
    const tbRef<tbTransform> deep(static_cast<tbTransform*>(node->makeCopy()));
    EXPECT_TRUE(tbtest::near(*deep->getMatrix(), *node->getMatrix()));
    EXPECT_TRUE(deep->anyTravFlags(tbGroup::TF_FENCE));
    EXPECT_TRUE(boundsOf(deep.get()).isEmpty());
}
