#include <tamber/collide/tbCollider.h>

#include <tamber/collide/tbColliderMask.h>
#include <tamber/collide/tbColliderTarget.h>
#include <tamber/collide/tbSphereFence.h>
#include <tamber/thread/tbEvent.h>
#include <tamber/trav/tbTravPath.h>
#include <tests/support/Matrices.h>
#include <tests/support/Messages.h>
#include <tests/support/Near.h>
#include <tests/support/RayCollider.h>
#include <tests/support/SavedCopy.h>
#include <tests/support/TestScene.h>
#include <tests/support/Threads.h>

#include <gtest/gtest.h>

using tbtest::NOT_A_NUMBER;

namespace
{

// A wall square to +Y: every ray that reaches its plane hits it.
class Wall : public tbtest::TestGeometry
{
public:
    Wall() : TestGeometry(tbSphere(tbVec3(0, 0, 0), 0.5f)) {}

    using tbGeometry::apply;
    void apply(tbCollider* collider) const override
    {
        if (collider->intersects(this) == tbVolume::OUTSIDE)
            return;
        ++tested;
        for (int i = 0; i < collider->getNumRays(); ++i)
        {
            const tbRay& ray = *collider->getWorkingRay(i);
            const float t = -(*ray.getOrigin())[1] / (*ray.getDirection())[1];
            if (t >= 0 && (ray.getLength() < 0 || t <= ray.getLength()))
                collider->generateRayHit(i, this, *ray.getOrigin() + *ray.getDirection() * t, t, 7, 21);
        }
    }

    mutable int tested = 0;
};

class Collider : public testing::Test
{
protected:
    Wall* addWall(tbGroup* parent, float y)
    {
        auto* wall = new Wall;
        scene.addTransform(parent, 0, y, 0)->addChild(wall);
        scene.update();
        return wall;
    }

    tbtest::TestScene scene;
};

tbRef<tbCollider> withRay(float length, tbCollider::RAY_HIT_MODE mode = tbCollider::RAY_HIT_NEAREST)
{
    return tbtest::makeCollider(tbRay(tbVec3(0, 0, 0), tbVec3(0, 1, 0), length), mode);
}

} // namespace

TEST_F(Collider, ModesKeepTheNearestTheFarthestOrTheLastHit)
{
    Wall* far = addWall(scene, 7);
    Wall* near = addWall(scene, 3);
    const tbRef<tbCollider> nearest = withRay(10);
    EXPECT_EQ(nearest->intersect(scene), 1);
    EXPECT_EQ(nearest->getRayHit(0)->node, near);
    EXPECT_NEAR(nearest->getRayHit(0)->distance, 3, 1e-5);
    EXPECT_TRUE(tbtest::near(nearest->getRayHit(0)->point, tbVec3(0, 3, 0)));
    EXPECT_EQ(nearest->getRayHit(0)->kind, 0x40000u);
    EXPECT_EQ(nearest->getRayHit(0)->primitive, 7);
    EXPECT_EQ(nearest->getRayHit(0)->index, 21);
    const tbRef<tbCollider> farthest = withRay(10, tbCollider::RAY_HIT_FARTHEST);
    EXPECT_EQ(farthest->intersect(scene), 1);
    EXPECT_EQ(farthest->getRayHit(0)->node, far);
    const tbRef<tbCollider> all = withRay(10, tbCollider::RAY_HIT_ALL);
    EXPECT_EQ(all->intersect(scene), 1);
    EXPECT_EQ(all->getRayHit(0)->node, near);
    const tbRef<tbCollider> none = withRay(10, tbCollider::RAY_HIT_NONE);
    EXPECT_EQ(none->intersect(scene), 0);
    EXPECT_EQ(withRay(2)->intersect(scene), 0);
    EXPECT_EQ(withRay(10)->intersect(nullptr), 0);
}

TEST_F(Collider, RaysAreShortenedByTheirHits)
{
    addWall(scene, 3);
    const Wall* behind = addWall(scene, 5);
    tbtest::allowMessages("SKIPPING FAILED RAY");
    const tbRef<tbCollider> collider = withRay(-1);
    EXPECT_EQ(collider->intersect(scene), 1);
    EXPECT_EQ(behind->tested, 0);
}

TEST_F(Collider, EventsFireOncePerWalkOrAtEveryHit)
{
    addWall(scene, 7);
    addWall(scene, 3);
    const tbRef<tbtest::FuncAction> action(new tbtest::FuncAction);
    const tbRef<tbCollider> collider = withRay(10);
    collider->addRay(tbRay(tbVec3(0.1f, 0, 0), tbVec3(0, 1, 0), 10));
    collider->getRayHitEvent()->addAction(action.get());
    EXPECT_EQ(collider->intersect(scene), 2);
    EXPECT_EQ(action->getTimes(), 1);
    collider->setRayHitMode(tbCollider::RAY_HIT_ALL);
    collider->intersect(scene);
    EXPECT_EQ(action->getTimes(), 1 + 4);
    tbRef<tbCollider> dropped = withRay(10);
    const int living = tbCollider::getNum(false);
    dropped->getRayHitEvent()->addAction(new tbtest::FuncAction(
        [&]
        {
            dropped.reset();
            EXPECT_EQ(tbCollider::getNum(false), living); // until its walk has ended
        }));
    EXPECT_EQ(dropped.get()->intersect(scene), 1);
    EXPECT_EQ(tbCollider::getNum(false), living - 1);
}

TEST_F(Collider, PlacementCarriesTheRays)
{
    tbTransform* big = scene.addTransform(nullptr, 0, 0, 0);
    big->setMatrix(tbtest::scaling(2, 2, 2));
    addWall(big, 2);
    const tbRef<tbCollider> collider = withRay(10);
    collider->setXYZ(0, -3, 0);
    EXPECT_EQ(collider->intersect(scene), 1);
    EXPECT_NEAR(collider->getRayHit(0)->distance, 7, 1e-4);
    EXPECT_TRUE(tbtest::near(collider->getRayHit(0)->point, tbVec3(0, 4, 0)));
    collider->setHPR(180, 0, 0);
    EXPECT_EQ(collider->intersect(scene), 0);
    tbQuat half;
    half.setHPR(tbVec3(180, 0, 0));
    collider->setXYZ(0, 10, 0);
    collider->setQuat(half);
    EXPECT_EQ(collider->intersect(scene), 1);
}

TEST_F(Collider, SavesWhatItIsAskedForOneWay)
{
    addWall(scene, 3)->setName("wall");
    const tbRef<tbCollider> collider = withRay(10);
    collider->setSaveMask(1);
    collider->setSaveMask(2);
    collider->setSaveMask(0xF4);
    EXPECT_EQ(collider->getSaveMask(), 7u);
    collider->intersect(scene);
    const tbHit hit = *collider->getRayHit(0);
    ASSERT_NE(hit.path, nullptr);
    EXPECT_EQ(hit.path->get(0), scene.get());
    EXPECT_EQ(hit.matrix[3][1], 3.0f);
    EXPECT_EQ(hit.invertMatrix[3][1], 0.0f);
    collider->intersect(scene);
    EXPECT_NE(hit.path, collider->getRayHit(0)->path);
}

TEST_F(Collider, VolumesTouchAndCount)
{
    addWall(scene, 3);
    const tbRef<tbCollider> collider(new tbCollider);
    tbSphere reach(tbVec3(0, 0, 0), 2.6f);
    collider->setVolume(&reach);
    EXPECT_EQ(collider->intersect(scene), 0); // volume hits are not recorded
    collider->setVolumeHitMode(tbCollider::VOLUME_HIT_FIRST);
    EXPECT_EQ(collider->intersect(scene), 1);
    EXPECT_NE(collider->getVolumeHit()->kind, 0u);
    collider->setXYZ(0, -1, 0);
    EXPECT_EQ(collider->intersect(scene), 0);
    EXPECT_GT(collider->getNumVolume(), 0);
    EXPECT_EQ(collider->getNumGeometries(), 0);
    collider->setVolumeMode(tbCollider::VOLUME_NONE);
    EXPECT_EQ(collider->getVolume(), nullptr);
    EXPECT_EQ(collider->intersect(scene), 0);
}

TEST_F(Collider, BuildsItsVolumeAroundRaysThatEnd)
{
    addWall(scene, 3);
    const tbRef<tbCollider> collider(new tbCollider);
    collider->setVolumeHitMode(tbCollider::VOLUME_HIT_FIRST);
    collider->intersect(scene);
    ASSERT_NE(collider->getLocalVolume(), nullptr);
    EXPECT_TRUE(collider->getLocalVolume()->isEmpty());
    collider->setVolumeMode(tbCollider::VOLUME_BOX);
    collider->addRay(tbRay(tbVec3(0, 0, 0), tbVec3(0, 1, 0), 10));
    EXPECT_EQ(collider->intersect(scene), 1);
    EXPECT_EQ(collider->getLocalVolume()->getType(), tbVolume::BOX);
    collider->addRay(tbRay(tbVec3(0, 0, 0), tbVec3(0, 1, 0), -1));
    collider->intersect(scene);
    EXPECT_EQ(collider->getLocalVolume(), nullptr);
}

TEST_F(Collider, MasksAndTargetsFilterSubtrees)
{
    auto* mask = new tbColliderMask;
    mask->setMask(0x4);
    addWall(scene.addStyle(nullptr, mask), 3);
    const tbRef<tbCollider> collider = withRay(10);
    EXPECT_EQ(collider->intersect(scene), 1);
    EXPECT_EQ(collider->getRayHit(0)->mask, 0x4u);
    collider->setColliderMask(0x8);
    EXPECT_EQ(collider->intersect(scene), 0);
}

TEST_F(Collider, FencesKeepRaysFromWhatLiesBelow)
{
    auto* fence = new tbSphereFence;
    scene->addChild(fence);
    const Wall* aside = addWall(fence, 3);
    static_cast<tbTransform*>(fence->getChild(0))->setXYZ(20, 3, 0);
    addWall(scene, 4);
    const tbRef<tbCollider> collider = withRay(10);
    EXPECT_EQ(collider->intersect(scene), 1);
    EXPECT_EQ(aside->tested, 0);
    auto* target = new tbColliderTarget;
    target->setTargets(0x40000);
    const tbRef<tbGroup> held(fence);
    fence->detach();
    scene.addStyle(nullptr, target)->addChild(fence);
    scene.update();
    collider->intersect(scene);
    EXPECT_EQ(aside->tested, 1); // no fence and no transform was asked
}

TEST_F(Collider, NestedWalksOnOneContextDoNothing)
{
    addWall(scene, 3);
    const tbRef<tbCollider> collider = withRay(10, tbCollider::RAY_HIT_ALL);
    int nested = -1;
    const auto walkAgain = [&](tbBase*, tbEvent*)
    {
        nested = collider->intersect(scene);
        return true;
    };
    collider->getRayHitEvent()->addAction(new tbtest::FuncAction(walkAgain));
    EXPECT_EQ(collider->intersect(scene), 1);
    EXPECT_EQ(nested, 0);
}

TEST_F(Collider, RaysThatAreNoNumbersHitNothing)
{
    addWall(scene, 3);
    for (const float length : {0.0f, NOT_A_NUMBER})
        EXPECT_EQ(withRay(length)->intersect(scene), 0) << length;
    const tbRef<tbCollider> collider(new tbCollider);
    collider->addRay(tbRay(tbVec3(NOT_A_NUMBER, 0, 0), tbVec3(0, 1, 0), 5));
    EXPECT_EQ(collider->intersect(scene), 0);
    for (int i = 0; i < 40; ++i)
        collider->addRay(tbRay());
    EXPECT_EQ(collider->getNumRays(), 32);
    collider->generateRayHit(99, scene, tbVec3(0, 0, 0), 1, 0, 0);
}

TEST_F(Collider, CopiesKeepTraitsAndFilesNoVolumeOfAUser)
{
    const tbRef<tbCollider> collider = withRay(4.5f);
    collider->addTrait(new tbColliderMask);
    tbSphere volume;
    collider->setVolume(&volume);
    const tbRef<tbCollider> copy(new tbCollider(*collider));
    EXPECT_EQ(copy->getNumTraits(), 1);
    const tbRef<tbCollider> read = tbtest::savedCopy(collider.get());
    ASSERT_TRUE(read);
    EXPECT_EQ(read->getVolumeMode(), tbCollider::VOLUME_USER);
    EXPECT_EQ(read->getLocalVolume(), nullptr);
    EXPECT_EQ(read->intersect(scene), 0);
}
