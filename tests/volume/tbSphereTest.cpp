#include <tamber/volume/tbSphere.h>

#include <tamber/volume/tbBox.h>
#include <tamber/volume/tbRay.h>
#include <tests/support/Matrices.h>
#include <tests/support/Near.h>

#include <gtest/gtest.h>

#include <limits>

using tbtest::near;

namespace
{

const tbVec3 CENTRE(0, 0, 0);

tbSphere unit()
{
    return tbSphere(CENTRE, 1);
}

} // namespace

TEST(Sphere, IsEmptyByItsRadiusAlone)
{
    tbSphere sphere;
    EXPECT_TRUE(sphere.isEmpty());
    sphere.setRadius(0);
    EXPECT_FALSE(sphere.isEmpty());
    EXPECT_EQ(sphere.contains(CENTRE), tbVolume::INSIDE);
    sphere.setCenter(tbVec3(1, 2, 3));
    sphere.makeEmpty();
    EXPECT_EQ(sphere, tbSphere(tbVec3(1, 2, 3), -1));
}

TEST(Sphere, ContainsItsSurfaceButNotItself)
{
    EXPECT_EQ(unit().contains(tbVec3(0, 1, 0)), tbVolume::INSIDE);
    EXPECT_EQ(unit().contains(tbVec3(0, 1.001f, 0)), tbVolume::OUTSIDE);
    EXPECT_EQ(unit().contains(unit()), tbVolume::PARTIAL);
    EXPECT_EQ(tbSphere(CENTRE, 2).contains(unit()), tbVolume::INSIDE);
    EXPECT_EQ(unit().contains(tbSphere(tbVec3(0, 2, 0), 1)), tbVolume::PARTIAL); // they touch
    EXPECT_EQ(unit().contains(tbSphere(tbVec3(0, 2.01f, 0), 1)), tbVolume::OUTSIDE);
}

TEST(Sphere, LooksAtTwoCornersOfABox)
{
    const tbSphere sphere(CENTRE, 2);
    EXPECT_EQ(sphere.contains(tbBox(tbVec3(-1, -1, -1), tbVec3(1, 1, 1))), tbVolume::INSIDE);
    EXPECT_EQ(sphere.contains(tbBox(tbVec3(-1, -1, -1), tbVec3(5, 1, 1))), tbVolume::PARTIAL);
    const tbBox box(tbVec3(0, 0, -0.1f), tbVec3(2, 2, 0.1f));
    const tbSphere aside(tbVec3(0.2f, 1.8f, 0), 2);
    EXPECT_EQ(aside.contains(tbVec3(2, 0, 0)), tbVolume::OUTSIDE); // the box reaches out there
    EXPECT_EQ(aside.contains(box), tbVolume::INSIDE);
    EXPECT_EQ(sphere.contains(tbBox(tbVec3(-5, -5, -5), tbVec3(5, 5, 5))), tbVolume::PARTIAL);
    EXPECT_EQ(sphere.contains(tbBox(tbVec3(3, 3, 3), tbVec3(5, 5, 5))), tbVolume::OUTSIDE);
}

TEST(Sphere, GrowsAroundPoints)
{
    tbSphere sphere;
    sphere.extendAround(tbVec3(1, 2, 3));
    EXPECT_EQ(sphere, tbSphere(tbVec3(1, 2, 3), 0));
    sphere.extendAround(tbVec3(1, 2, 3)); // its own point
    EXPECT_EQ(sphere, tbSphere(tbVec3(1, 2, 3), 0));
    sphere.extendAround(tbVec3(3, 2, 3));
    EXPECT_EQ(sphere, tbSphere(tbVec3(2, 2, 3), 1));
    sphere.extendAround(tbVec3(2.5f, 2, 3));
    EXPECT_EQ(sphere, tbSphere(tbVec3(2, 2, 3), 1));

    const tbVec3 points[] = {{0, 0, 0}, {4, 0, 0}, {2, 3, 0}};
    tbSphere mean;
    mean.extendAround(points, 0);
    EXPECT_TRUE(mean.isEmpty());
    mean.extendAround(points, 3);
    EXPECT_TRUE(near(*mean.getCenter(), tbVec3(2, 1, 0)));
    EXPECT_NEAR(mean.getRadius(), std::sqrt(5.0f), 1e-6f);
}

TEST(Sphere, GrowsAroundSpheres)
{
    tbSphere sphere(unit());
    sphere.extendAround(tbSphere());
    EXPECT_EQ(sphere, unit());
    sphere.extendAround(tbSphere(CENTRE, 2));
    EXPECT_EQ(sphere, tbSphere(CENTRE, 2));
    sphere.extendAround(tbSphere(tbVec3(0, 0.5f, 0), 1)); // inside
    EXPECT_EQ(sphere, tbSphere(CENTRE, 2));
    sphere.extendAround(tbSphere(tbVec3(0, 0.5f, 0), 4)); // around
    EXPECT_EQ(sphere, tbSphere(tbVec3(0, 0.5f, 0), 4));
    sphere = unit();
    sphere.extendAround(tbSphere(tbVec3(5, 0, 0), 2));
    EXPECT_TRUE(near(*sphere.getCenter(), tbVec3(3, 0, 0)));
    EXPECT_FLOAT_EQ(sphere.getRadius(), 4.0f);
}

TEST(Sphere, GrowsAroundBoxes)
{
    const tbBox box(tbVec3(-1, -2, -2), tbVec3(1, 2, 2));
    tbSphere sphere;
    sphere.extendAround(box);
    EXPECT_EQ(sphere, tbSphere(CENTRE, 3));
    // A sphere that is not empty takes the corners in turn, x changing fastest.
    tbSphere byBox(tbVec3(5, 0, 0), 1);
    tbSphere byCorners(byBox);
    byBox.extendAround(box);
    for (const float z : {-2.0f, 2.0f})
        for (const float y : {-2.0f, 2.0f})
            for (const float x : {-1.0f, 1.0f})
                byCorners.extendAround(tbVec3(x, y, z));
    EXPECT_EQ(byBox, byCorners);
}

TEST(Sphere, BoundsGrowWithoutOverflow)
{
    tbSphere sphere(unit());
    sphere.extendAround(tbRay(CENTRE, tbVec3(1, 0, 0), -1));
    EXPECT_EQ(sphere.contains(tbVec3(1e30f, 1e20f, 0)), tbVolume::INSIDE);
    tbSphere endless(CENTRE, std::numeric_limits<float>::infinity());
    endless.extendAround(tbSphere(tbVec3(1, 2, 3), endless.getRadius()));
    EXPECT_EQ(endless.contains(tbVec3(7, 8, 9)), tbVolume::INSIDE);
}

TEST(Sphere, ScalesByItsZAxisOnly)
{
    tbSphere sphere(tbVec3(1, 0, 0), 1);
    sphere.xform(tbtest::scaling(2, 2, 2));
    EXPECT_EQ(sphere, tbSphere(tbVec3(2, 0, 0), 2));
    sphere.xform(unit(), tbtest::scaling(1.00001f, 1.00001f, 1.00001f));
    EXPECT_EQ(sphere.getRadius(), 1.0f);
    sphere.xform(unit(), tbtest::scaling(9, 9, 3));
    EXPECT_EQ(sphere.getRadius(), 3.0f);
}
