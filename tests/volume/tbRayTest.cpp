#include <tamber/volume/tbRay.h>

#include <tamber/volume/tbFrustum.h>
#include <tamber/volume/tbPlane.h>
#include <tamber/volume/tbSphere.h>
#include <tests/support/Near.h>
#include <tests/support/RandomValues.h>
#include <tests/support/RootScope.h>

#include <gtest/gtest.h>

#include <cmath>

using tbtest::near;

namespace
{

const tbVec3 ORIGIN(0, 0, 0);
const tbVec3 FORWARD(0, 1, 0);

tbRay forward(float length)
{
    return tbRay(ORIGIN, FORWARD, length);
}

} // namespace

TEST(Ray, WithoutLengthMeetsNothingAndAnyOtherEveryFrustum)
{
    const tbRay ray;
    const tbFrustum empty;
    tbVec3 point;
    EXPECT_EQ(ray, forward(0));
    EXPECT_FALSE(ray.intersects(tbSphere(ORIGIN, 1)));
    EXPECT_FALSE(ray.intersects(tbBox(tbVec3(-1, -1, -1), tbVec3(1, 1, 1))));
    EXPECT_FALSE(ray.intersects(tbPlane(FORWARD, 0)));
    EXPECT_FALSE(ray.intersects(empty));
    EXPECT_EQ(ray.intersects(tbVec3(-1, 1, -1), tbVec3(1, 1, -1), tbVec3(0, 1, 1), point), -1.0f);
    EXPECT_EQ(ray.intersects(tbVec3(-1, 1, 0), tbVec3(1, 1, 0), point), -1.0f);
    EXPECT_TRUE(forward(1).intersects(empty));
    EXPECT_TRUE(forward(1).intersects(static_cast<const tbVolume&>(empty)));
    EXPECT_FALSE(empty.intersects(forward(1)));
    EXPECT_FALSE(forward(1).intersects(static_cast<const tbVolume&>(tbSphere())));
}

TEST(Ray, FromPointsHasTheirDistance)
{
    const tbtest::RootScope exact;
    tbRay ray(tbVec3(1, 2, 3), tbVec3(1, 6, 6));
    EXPECT_FLOAT_EQ(ray.getLength(), 5.0f);
    tbVec3 point;
    ray.getEndPoint(point);
    EXPECT_TRUE(near(point, tbVec3(1, 6, 6), 1e-5f));
    ray.makeFromPoints(ORIGIN, tbVec3(0, 1.0000003f, 0));
    EXPECT_EQ(ray.getLength(), 1.0f);
    EXPECT_EQ(tbRay(ORIGIN, tbVec3(0, 5, 0), 7), forward(7)); // a given length stays
    EXPECT_EQ(tbRay(forward(7), 3), forward(3));
    tbRay(ORIGIN, tbVec3(1, 0, 0), -1).getEndPoint(point);
    EXPECT_EQ(point, tbVec3(3.4028233e36f, 0, 0));
}

// A frame does not normalise them. Spheres behind the origin count too.
TEST(Ray, MeetsTheSameSpheresInScaledFrames)
{
    EXPECT_FALSE(forward(5).intersects(tbSphere()));
    EXPECT_TRUE(forward(5).intersects(tbSphere(tbVec3(0, -3, 0), 1)));
    EXPECT_TRUE(forward(-1).intersects(tbSphere(tbVec3(1, 1e6f, 0), 1.001f)));
    tbtest::Random random(25);
    for (int i = 0; i < 500; ++i)
    {
        const float scale = random.number(0.1f, 10);
        tbMatrix m = random.place(5);
        m.preScale(scale, scale, scale);
        tbRay ray(random.point(4), random.direction(), random.number(-1, 6));
        tbSphere sphere(random.point(4), random.number(0.5f, 2));
        const tbVec3 away = *sphere.getCenter() - *ray.getOrigin();
        const float along = away.dot(*ray.getDirection());
        const float discriminant =
            sphere.getRadius() * sphere.getRadius() - (away.sqrLength() - along * along);
        const float spare = ray.getLength() - (along - std::sqrt(std::max(discriminant, 0.0f)));
        if (std::fabs(discriminant) < 1e-2f || std::fabs(spare) < 1e-2f)
            continue;
        const bool expected = discriminant > 0 && (ray.isUnbounded() || spare > 0);
        EXPECT_EQ(ray.intersects(sphere), expected);
        ray.xform(m);
        sphere.xform(m);
        EXPECT_EQ(ray.intersects(sphere), expected) << scale;
    }
}

TEST(Ray, EntersBoxesWithinItsLength)
{
    const tbBox box(tbVec3(-1, -1, -1), tbVec3(1, 1, 1));
    EXPECT_TRUE(tbRay(tbVec3(0, -5, 0), FORWARD, 5).intersects(box));
    EXPECT_FALSE(tbRay(tbVec3(0, -5, 0), FORWARD, 3).intersects(box));
    EXPECT_FALSE(tbRay(tbVec3(0, 5, 0), FORWARD, -1).intersects(box));
    EXPECT_TRUE(forward(1e-3f).intersects(box)); // begins inside
    EXPECT_FALSE(forward(1).intersects(tbBox()));
    // An axis on which the ray begins between the faces is not checked where it enters.
    EXPECT_TRUE(tbRay(tbVec3(0, -5, 0), tbVec3(1, 1, 0), -1).intersects(box));
    EXPECT_FALSE(tbRay(tbVec3(-1.1f, -5, 0), tbVec3(1, 1, 0), -1).intersects(box));
}

TEST(Ray, HitsTrianglesWithTheirEdges)
{
    const tbtest::RootScope exact;
    tbtest::Random random(27);
    for (int i = 0; i < 2000; ++i)
    {
        const tbVec3 p0 = random.point(4), p1 = random.point(4), p2 = random.point(4);
        const float a = random.number(-0.5f, 1.5f), b = random.number(-0.5f, 1.5f);
        tbVec3 normal;
        normal.makeNormal(p0, p1, p2);
        const tbVec3 target = p0 + (p1 - p0) * a + (p2 - p0) * b;
        const tbVec3 start = target + normal * (i % 2 ? 3.0f : -3.0f) + random.direction();
        tbVec3 side;
        side.cross(p1 - p0, p2 - p0);
        if (side.length() < 2.0f || std::fabs(a) < 1e-2f || std::fabs(b) < 1e-2f ||
            std::fabs(1 - a - b) < 1e-2f)
            continue;
        const bool inside = a > 0 && b > 0 && a + b < 1;
        tbVec3 hit;
        const float t = tbRay(tbRay(start, target), -1).intersects(p0, p1, p2, hit);
        EXPECT_TRUE(near(hit, target, 1e-3f));
        EXPECT_NEAR(t, inside ? std::sqrt(start.sqrDistance(target)) : -1.0f, 1e-3f);
        EXPECT_EQ(tbRay(tbRay(start, target), 0.5f).intersects(p0, p1, p2, hit), -1.0f); // too short
    }
    tbVec3 hit;
    EXPECT_FLOAT_EQ(forward(-1).intersects(tbVec3(0, 2, 0), tbVec3(1, 2, 0), tbVec3(0, 2, 1), hit), 2.0f);
    EXPECT_FLOAT_EQ(forward(2).intersects(tbVec3(-1, 2, 0), tbVec3(1, 2, 0), tbVec3(0, 2, 1), hit), 2.0f);
    EXPECT_EQ(forward(-1).intersects(ORIGIN, tbVec3(1, 0, 0), tbVec3(0, 0, 1), hit), -1.0f); // begins in it
    EXPECT_EQ(forward(-1).intersects(ORIGIN, tbVec3(0, 1, 0), tbVec3(0, 0, 1), hit), -1.0f); // runs in it
    EXPECT_EQ(forward(-1).intersects(FORWARD, FORWARD, FORWARD, hit), -1.0f);
}

TEST(Ray, HitsBothHalvesOfAQuadrilateral)
{
    const tbVec3 p0(-1, 2, -1), p1(1, 2, -1), p2(1, 2, 1), p3(-1, 2, 1);
    for (const tbVec3& start : {tbVec3(0.5f, 0, -0.5f), tbVec3(-0.5f, 0, 0.5f), ORIGIN})
    {
        tbVec3 hit;
        EXPECT_FLOAT_EQ(tbRay(start, FORWARD, -1).intersects(p0, p1, p2, p3, hit), 2.0f);
        EXPECT_TRUE(near(hit, start + FORWARD * 2.0f));
    }
    tbVec3 corner(p0); // also where the hit is written
    EXPECT_EQ(tbRay(tbVec3(1.1f, 0, 0), FORWARD, -1).intersects(corner, p1, p2, p3, corner), -1.0f);
    corner = p0;
    EXPECT_FLOAT_EQ(forward(-1).intersects(corner, p1, p2, p3, corner), 2.0f);
    EXPECT_TRUE(near(corner, tbVec3(0, 2, 0)));
}

TEST(Ray, MeetsSegmentsThatCrossIt)
{
    tbVec3 hit(7, 7, 7);
    EXPECT_EQ(forward(-1).intersects(tbVec3(-1, 3, 1e-3f), tbVec3(1, 3, 1e-3f), hit), -1.0f); // passes it
    EXPECT_EQ(forward(-1).intersects(tbVec3(1, 3, 0), tbVec3(2, 3, 0), hit), -1.0f); // beyond its ends
    EXPECT_EQ(forward(-1).intersects(tbVec3(0, 3, 0), tbVec3(0, 4, 0), hit), -1.0f); // parallel
    EXPECT_EQ(forward(2).intersects(tbVec3(-1, 3, 0), tbVec3(1, 3, 0), hit), -1.0f); // too short
    EXPECT_EQ(hit, tbVec3(7, 7, 7));
    EXPECT_FLOAT_EQ(forward(-1).intersects(tbVec3(-1, 3, 0), tbVec3(1, 3, 0), hit), 3.0f);
    EXPECT_TRUE(near(hit, tbVec3(0, 3, 0), 1e-6f));
    EXPECT_NEAR(forward(5).intersects(tbVec3(-1, 2, -1), tbVec3(1, 4, 1), hit), 3.0f, 1e-5f);
}
