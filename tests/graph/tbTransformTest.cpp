#include <tamber/graph/tbTransform.h>

#include <tamber/math/tbQuat.h>
#include <tamber/math/tbVec3.h>
#include <tamber/trav/tbTravContext.h>
#include <tests/graph/GraphModel.h>
#include <tests/support/Near.h>
#include <tests/support/TestGeometry.h>
#include <tests/support/WalkCamera.h>

#include <gtest/gtest.h>

using tbtest::ContentNode;
using tbtest::TestGeometry;

namespace
{

tbSphere sphereAt(float x, float y, float z, float radius)
{
    return tbSphere(tbVec3(x, y, z), radius);
}

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

TEST(Transform, SettersPlaceTheNodeAndTellItsParents)
{
    const tbRef<tbGroup> root(new tbGroup);
    auto* node = new tbTransform;
    root->addChild(node);
    const tbRef<tbTravContext> context(new tbTravContext);
    root->update(context.get());
    root->updateFences(context.get());
    node->setXYZ(1, 2, 3);
    float x, y, z;
    node->getXYZ(x, y, z);
    EXPECT_TRUE(tbtest::near(tbVec3(x, y, z), tbVec3(1, 2, 3)));
    EXPECT_FALSE(node->isIdentity());
    EXPECT_EQ(node->getTravFlags(), unsigned(tbGroup::TF_MATRIX));
    EXPECT_EQ(root->getTravFlags(), unsigned(tbGroup::TF_MATRIX | tbGroup::TF_FENCE));
    node->setHPR(90, 0, 0);
    node->getXYZ(x, y, z);
    EXPECT_EQ(z, 3);
    tbVec3 hpr;
    node->getHPR(hpr);
    EXPECT_TRUE(tbtest::near(hpr, tbVec3(90, 0, 0), 1e-3f));
}

TEST(Transform, AQuaternionReplacesTheWholeMatrix)
{
    const tbRef<tbTransform> node(new tbTransform);
    node->setHPR(30, 20, 10);
    tbQuat quat;
    node->getQuat(quat);
    node->setXYZ(1, 2, 3);
    node->setQuat(quat);
    tbVec3 hpr, xyz;
    node->getHPR(hpr);
    node->getXYZ(xyz);
    EXPECT_TRUE(tbtest::near(hpr, tbVec3(30, 20, 10), 0.05f));
    EXPECT_TRUE(tbtest::near(xyz, tbVec3(0, 0, 0)));
}

TEST(Transform, ContentsThatFollowMatricesAreToldThroughEachOther)
{
    const tbRef<tbTransform> node(new tbTransform);
    auto* first = new ContentNode(0x1000);
    auto* second = new ContentNode(0x2000);
    auto* other = new ContentNode(0x0200);
    node->addChild(first);
    first->addChild(second);
    node->addChild(other);
    const tbRef<tbTravContext> context(new tbTravContext);
    node->update(context.get());
    node->setXYZ(1, 0, 0);
    EXPECT_TRUE(first->anyTravFlags(tbGroup::TF_MATRIX));
    EXPECT_TRUE(second->anyTravFlags(tbGroup::TF_MATRIX));
    EXPECT_FALSE(other->anyTravFlags(tbGroup::TF_MATRIX));
}

// No order of moves and passes leaves a stale sphere.
TEST(Transform, AMovedNodeMakesBoundsAboveStaleWhateverTheyCarry)
{
    const tbRef<tbTransform> root(new tbTransform);
    auto* node = new tbTransform;
    node->addChild(new TestGeometry(sphereAt(0, 0, 0, 1)));
    root->addChild(node);
    EXPECT_TRUE(isSphere(boundsOf(root.get()), tbVec3(0, 0, 0), 1));
    node->setXYZ(5, 0, 0);
    EXPECT_TRUE(isSphere(boundsOf(root.get()), tbVec3(5, 0, 0), 1));
    node->setXYZ(7, 0, 0);
    EXPECT_TRUE(isSphere(boundsOf(root.get()), tbVec3(7, 0, 0), 1));
    const tbRef<tbTravContext> context(new tbTravContext);
    root->update(context.get());
    node->setXYZ(9, 0, 0);
    EXPECT_TRUE(isSphere(boundsOf(root.get()), tbVec3(9, 0, 0), 1));
}

TEST(Transform, BoundsStandInTheNodesOwnCoordinatesAndReachTheParentPlaced)
{
    const tbRef<tbTransform> root(new tbTransform);
    auto* node = new tbTransform;
    root->addChild(node);
    root->setXYZ(0, 0, 10);
    node->setXYZ(5, 0, 0);
    node->addChild(new TestGeometry(sphereAt(0, 1, 0, 2)));
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
            changes = getTravContext()->getMatrixID() - start;
            getTravContext()->getMatrix().getXYZ(x, y, z);
            getTravContext()->getInvertMatrix().getXYZ(inverseX, y, z);
            return TRAV_CONTINUE;
        }
        void reset() override
        {
            tbTraverser::reset();
            start = getTravContext()->getMatrixID();
        }
        int start = 0;
        int changes = 0;
        float x = 0, y = 0, z = 0, inverseX = 0;
    };
    const tbRef<tbTransform> node(new tbTransform);
    const tbRef<Look> look(new Look);
    look->setTravContext(new tbTravContext);
    look->traverse(node.get());
    EXPECT_EQ(look->changes, 0);
    node->setXYZ(4, 0, 0);
    look->traverse(node.get());
    EXPECT_EQ(look->x, 4);
    EXPECT_EQ(look->inverseX, -4);
    EXPECT_TRUE(tbtest::near(look->getTravContext()->getMatrix(), tbTravContext::ident));
}

TEST(Transform, AStoppedWalkLeavesItsFramesPushed)
{
    const tbRef<tbTransform> root(new tbTransform);
    auto* node = new tbTransform;
    root->addChild(node);
    root->setXYZ(1, 0, 0);
    node->setXYZ(0, 2, 0);
    const tbRef<tbTraverser> traverser(new tbTraverser);
    traverser->setTravContext(new tbTravContext);
    traverser->setGroupBreakPoint(node);
    traverser->traverse(root.get());
    float x, y, z;
    traverser->getTravContext()->getMatrix().getXYZ(x, y, z);
    EXPECT_TRUE(tbtest::near(tbVec3(x, y, z), tbVec3(1, 2, 0)));
    EXPECT_EQ(traverser->getTravContext()->getGroup(), node);
}

TEST(Transform, CamerasPassOverSubtreesOutOfView)
{
    const tbRef<tbGroup> root(new tbGroup);
    TestGeometry* drawn[2];
    for (int i = 0; i < 2; ++i)
    {
        auto* node = new tbTransform;
        node->setXYZ(0, float(10 * i), 0);
        root->addChild(node);
        drawn[i] = new TestGeometry(sphereAt(0, 0, 0, 1));
        node->addChild(drawn[i]);
    }
    boundsOf(root.get());
    tbtest::WalkCamera camera;
    camera.frustum().makeOrtho(-5, 5, -5, 5, -5, 5);
    camera.walk(root.get(), true);
    EXPECT_EQ(drawn[0]->numDrawn, 1);
    EXPECT_EQ(drawn[1]->numDrawn, 0);
    camera.walk(root.get(), false);
    EXPECT_EQ(drawn[0]->numDrawn, 2);
    EXPECT_EQ(drawn[1]->numDrawn, 1);
    camera->getTravContext()->reset();
    camera->getTravContext()->pushCullResult(tbVolume::OUTSIDE);
    root->apply(camera.get());
    EXPECT_EQ(drawn[0]->numDrawn, 2);
}

TEST(Transform, CopiesTakeMatrixAndBounds)
{
    const tbRef<tbTransform> node(new tbTransform);
    node->setXYZ(1, 2, 3);
    node->addChild(new TestGeometry(sphereAt(0, 0, 0, 1)));
    boundsOf(node.get());
    const tbRef<tbTransform> copy(static_cast<tbTransform*>(node->createCopy()));
    EXPECT_TRUE(tbtest::near(*copy->getMatrix(), *node->getMatrix()));
    EXPECT_EQ(copy->getVolume()->getRadius(), 1);
    const tbRef<tbTransform> deep(static_cast<tbTransform*>(node->makeCopy()));
    EXPECT_TRUE(deep->anyTravFlags(tbGroup::TF_FENCE));
    EXPECT_TRUE(boundsOf(deep.get()).isEmpty());
}
