#include <tamber/volume/tbPlane.h>

#include <tamber/volume/tbRay.h>
#include <tamber/volume/tbSphere.h>
#include <tests/support/Matrices.h>
#include <tests/support/RandomValues.h>
#include <tests/support/RootScope.h>

#include <gtest/gtest.h>

TEST(Plane, NormalisesItsNormalAndKeepsItsOffset)
{
    const tbPlane plane(tbVec3(0, 0, 2), 1);
    EXPECT_EQ(*plane.getNormal(), tbVec3(0, 0, 1));
    EXPECT_EQ(plane[2], 1.0f);
    EXPECT_EQ(plane[3], 1.0f);
    EXPECT_EQ(plane.contains(tbVec3(0, 0, 1)), tbVolume::INSIDE);
    EXPECT_EQ(plane.contains(tbVec3(0, 0, 1.001f)), tbVolume::OUTSIDE);
    EXPECT_EQ(plane.pointDistance(tbVec3(0, 0, 1)), -2.0f); // the offset is added
}

TEST(Plane, StandsOnThreePoints)
{
    const tbtest::RootScope exact;
    tbtest::Random random(22);
    for (int i = 0; i < 200; ++i)
    {
        const tbVec3 three[] = {random.point(5), random.point(5), random.point(5)};
        tbPlane plane;
        plane.make(three);
        for (const tbVec3& p : three)
            EXPECT_NEAR(plane.getNormal()->dot(p), plane.getOffset(), 1e-4f);
        EXPECT_EQ(plane.getPosOctant(), plane.getNormal()->getOctant());
        EXPECT_EQ(plane.getNegOctant(), 7 - plane.getPosOctant());
    }
    EXPECT_EQ(tbPlane(tbVec3(0, 0, 5), tbVec3(1, 0, 5), tbVec3(0, 1, 5)), tbPlane(tbVec3(0, 0, 1), 5));
}

TEST(Plane, CannotBeEmptyAndDoesNotGrow)
{
    tbPlane plane(tbVec3(1, 0, 0), 3);
    plane.makeEmpty();
    plane.extendAround(tbVec3(100, 0, 0));
    plane.extendAround(tbSphere(tbVec3(100, 0, 0), 5));
    plane.extendAround(tbBox(tbVec3(0, 0, 0), tbVec3(100, 0, 0)));
    plane.extendAround(tbRay(tbVec3(0, 0, 0), tbVec3(100, 0, 0)));
    EXPECT_FALSE(plane.isEmpty());
    EXPECT_EQ(plane, tbPlane(tbVec3(1, 0, 0), 3));
}

TEST(Plane, SpheresAndHalfSpacesBelowIntersect)
{
    const tbPlane plane;
    EXPECT_EQ(plane.contains(tbSphere(tbVec3(0, 0, -1), 1)), tbVolume::INSIDE);
    EXPECT_EQ(plane.contains(tbSphere(tbVec3(0, 0, 1), 1)), tbVolume::PARTIAL);
    EXPECT_TRUE(plane.intersects(tbSphere(tbVec3(0, 0, -5), 1)));
    // Points are spheres that no plane sees.
    EXPECT_EQ(plane.contains(tbSphere(tbVec3(0, 0, -1), 0)), tbVolume::OUTSIDE);
    EXPECT_FALSE(plane.intersects(tbSphere(tbVec3(0, 0, -1), 0)));
    EXPECT_EQ(plane.contains(tbPlane(tbVec3(0, 0, 1), -1)), tbVolume::INSIDE);
    EXPECT_EQ(plane.contains(tbPlane(tbVec3(0, 0, 1), 1)), tbVolume::PARTIAL);
    EXPECT_EQ(plane.contains(tbPlane(tbVec3(0, 1, 1), -100)), tbVolume::PARTIAL);
    EXPECT_TRUE(plane.intersects(tbPlane(tbVec3(0, 0, -1), 1)));
    EXPECT_FALSE(plane.intersects(tbPlane(tbVec3(0, 0, -1), -1)));
}

TEST(Plane, AsksTheRightCornersOfABox)
{
    const tbtest::RootScope exact;
    tbtest::Random random(23);
    for (int i = 0; i < 500; ++i)
    {
        const tbPlane plane(random.direction(), random.number(-3, 3));
        const tbBox box = random.box(4);
        int inside = 0;
        for (int octant = 0; octant < 8; ++octant)
        {
            tbVec3 corner;
            box.getCorner(tbVec3::OCTANT(octant), corner);
            inside += plane.contains(corner) == tbVolume::INSIDE ? 1 : 0;
        }
        EXPECT_EQ(plane.contains(box), inside == 8  ? tbVolume::INSIDE
                                       : inside > 0 ? tbVolume::PARTIAL
                                                    : tbVolume::OUTSIDE);
        EXPECT_EQ(plane.intersects(box), inside > 0);
    }
}

TEST(Plane, IsCarriedByTheMatrixItself)
{
    const tbtest::RootScope exact;
    tbtest::Random random(24);
    for (int i = 0; i < 200; ++i)
    {
        const tbPlane source(random.direction(), random.number(-3, 3));
        const tbMatrix m = random.place(5);
        const tbVec3 point = random.point(5);
        tbPlane plane;
        plane.xform(source, m);
        EXPECT_NEAR(plane.getNormal()->dot(point * m) - plane.getOffset(),
                    source.getNormal()->dot(point) - source.getOffset(), 1e-4f);
        EXPECT_EQ(plane.getPosOctant(), plane.getNormal()->getOctant());
    }
    tbPlane plane(tbVec3(1, 1, 0), 0);
    plane.xform(tbtest::scaling(2, 1, 1));
    EXPECT_NEAR(plane[0] / plane[1], 2.0f, 1e-5f); // the inverse transpose would give a half
}

TEST(Plane, FindsWhereRaysMeetIt)
{
    const tbPlane plane(tbVec3(0, 1, 0), 3);
    tbVec3 point(7, 7, 7);
    EXPECT_TRUE(plane.findIsectPoint(tbRay(tbVec3(1, 0, 0), tbVec3(0, 1, 0), 5), point));
    EXPECT_EQ(point, tbVec3(1, 3, 0));
    const tbRay misses[] = {{tbVec3(0, 0, 0), tbVec3(0, 1, 0), 2},
                            {tbVec3(0, 0, 0), tbVec3(0, -1, 0), -1},
                            {tbVec3(0, 3, 0), tbVec3(1, 0, 0), -1},
                            {tbVec3(0, 0, 0), tbVec3(0, 1, 0), 0}};
    for (const tbRay& ray : misses)
    {
        EXPECT_FALSE(plane.findIsectPoint(ray, point));
        EXPECT_FALSE(plane.intersects(ray));
        EXPECT_EQ(point, tbVec3(1, 3, 0));
    }
}
