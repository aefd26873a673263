#include <tamber/graph/tbBillboard.h>

#include <tamber/collide/tbCollider.h>
#include <tests/support/Matrices.h>
#include <tests/support/Near.h>
#include <tests/support/TestScene.h>
#include <tests/support/WalkCamera.h>

#include <gtest/gtest.h>

using tbtest::addNew;

namespace
{

tbMatrix facing(const tbBillboard* node, const tbMatrix& model, const tbtest::WalkCamera& camera)
{
    tbMatrix full = tbtest::identity();
    node->computeFullMatrix(model, full, camera->getTravContext(), camera.get());
    return full;
}

tbVec3 row(const tbMatrix& m, int i)
{
    return tbVec3(m[i][0], m[i][1], m[i][2]);
}

// Keeps the matrix with which it was reached.
class Probe : public tbtest::TestGeometry
{
public:
    using tbGeometry::apply;
    using tbtest::TestGeometry::TestGeometry;
    void apply(tbCamera* camera) const override { seen = camera->getTravContext()->getMatrix(); }
    void apply(tbCollider* collider) const override { seen = collider->getTravContext()->getMatrix(); }

    mutable tbMatrix seen;
};

} // namespace

TEST(Billboard, PlaceAndScaleComeFromTheModel)
{
    const tbRef<tbBillboard> node(new tbBillboard);
    node->setXYZ(1, 0, 0);
    tbtest::WalkCamera camera;
    camera->setXYZ(30, 40, 0);
    tbMatrix model = tbtest::scaling(2, 2, 2);
    model.setXYZ(0, 40, 0);
    const tbMatrix full = facing(node.get(), model, camera);
    EXPECT_TRUE(tbtest::near(row(full, 3), tbVec3(2, 40, 0)));
    EXPECT_TRUE(tbtest::near(row(full, 1), tbVec3(2, 0, 0)));
    EXPECT_NEAR(row(full, 0).sqrLength(), 4.0f, 1e-3f);
}

TEST(Billboard, UpFollowsTheMode)
{
    const tbRef<tbBillboard> node(new tbBillboard);
    tbtest::WalkCamera camera;
    camera->setXYZ(0, -10, 10);
    camera->setHPR(0, -45, 0);
    tbMatrix model;
    model.makeRot(90, 1, 0, 0); // its +Y is the world's +Z
    const tbVec3 out = tbVec3(0, -0.70710678f, 0.70710678f);
    for (const tbBillboard::MODE mode : {tbBillboard::MODE_AXIS, tbBillboard::MODE_CAMERA_UP,
                                         tbBillboard::MODE_WORLD_UP, tbBillboard::MODE_FIXED_UP})
    {
        node->setMode(mode);
        node->setAxis(tbVec3(0, 1, 0));
        const tbMatrix full = facing(node.get(), model, camera);
        EXPECT_TRUE(tbtest::near(row(full, 1), out, 1e-3f)) << mode;
        EXPECT_NEAR(row(full, 2).dot(out), 0.0f, 1e-3f) << mode;
        EXPECT_GT(row(full, 2)[2], 0.5f) << mode;
    }
    camera->setProjectionType(tbCamera::PROJ_ORTHO);
    node->setXYZ(100, 0, 0);
    EXPECT_TRUE(tbtest::near(row(facing(node.get(), model, camera), 1), out, 1e-3f));
}

TEST(Billboard, CamerasSeeTheFacingAndOtherWalksTheLastOne)
{
    tbtest::TestScene scene;
    tbTransform* place = scene.addTransform(nullptr, 5, 0, 0);
    auto* node = addNew(place, new tbBillboard);
    const auto* probe = addNew(node, new Probe(tbSphere(tbVec3(0, 0, 0), 1)));
    scene.update();
    const tbRef<tbCollider> collider(new tbCollider);
    collider->setVolumeMode(tbCollider::VOLUME_NONE);
    collider->getTravContext()->reset();
    place->apply(collider.get());
    tbtest::WalkCamera camera;
    camera->setXYZ(5, -20, 0);
    camera.walk(scene);
    tbMatrix world(probe->seen);
    world.postMult(camera->getRenderingToWorldMatrix());
    EXPECT_TRUE(tbtest::near(row(world, 1), tbVec3(0, -1, 0)));
    EXPECT_TRUE(tbtest::near(row(world, 2), tbVec3(0, 0, 1)));
    EXPECT_TRUE(tbtest::near(row(world, 3), tbVec3(5, 0, 0)));
    collider->getTravContext()->reset();
    collider->getTravContext()->removeFlags(tbTravContext::COLLIDE_ALL);
    scene->tbGroup::apply(collider.get());
    EXPECT_TRUE(tbtest::near(probe->seen, world, 1e-3f));
}

TEST(Billboard, BoundsHoldEveryFacing)
{
    tbtest::TestScene scene;
    auto* node = addNew(scene.get(), new tbBillboard);
    scene.addGeometry(node, tbSphere(tbVec3(0, 3, 0), 1));
    node->setXYZ(10, 0, 0);
    scene.update();
    EXPECT_TRUE(tbtest::near(*scene->getVolume()->getCenter(), tbVec3(10, 0, 0)));
    EXPECT_NEAR(scene->getVolume()->getRadius(), 4.0f, 1e-3f);
    node->setXYZ(0, 0, 0);
    EXPECT_TRUE(scene->anyTravFlags(tbGroup::TF_MATRIX) && scene->anyTravFlags(tbGroup::TF_FENCE));
}

TEST(Billboard, CopiesTakeItsAxis)
{
    const tbRef<tbBillboard> node(new tbBillboard);
    node->setAxis(tbVec3(1, 0, 0));
    for (const tbRef<tbBase>& copy : {tbRef<tbBase>(node->makeClone()), tbRef<tbBase>(node->createCopy())})
        EXPECT_EQ(*static_cast<tbBillboard*>(copy.get())->getAxis(), tbVec3(1, 0, 0));
}
