#include <tamber/volume/tbFrustum.h>

#include <tamber/volume/tbSphere.h>
#include <tests/support/Near.h>
#include <tests/support/RandomValues.h>
#include <tests/support/RootScope.h>
#include <tests/support/StoredValue.h>

#include <gtest/gtest.h>

#include <cmath>

using tbtest::near;

namespace
{

// The extents and, for a perspective, the opening; the definition by which frustums are checked.
struct Shape
{
    explicit Shape(tbtest::Random& random)
        : perspective(random.index(2) == 0),
          left(random.number(-3, 0.2f)),
          right(random.number(0.5f, 3)),
          bottom(random.number(-3, 0.2f)),
          top(random.number(0.5f, 3)),
          nearDist(random.number(0.5f, 2)),
          farDist(random.number(5, 20))
    {
    }

    tbFrustum make() const
    {
        tbFrustum frustum;
        if (perspective)
            frustum.makePersp(left, right, bottom, top, nearDist, farDist);
        else
            frustum.makeOrtho(left, right, bottom, top, nearDist, farDist);
        return frustum;
    }
    // How far a point is from the nearest side, along the axes; positive inside.
    float depth(const tbVec3& p) const
    {
        const float scale = perspective ? p.y / nearDist : 1.0f;
        return std::min({p.y - nearDist, farDist - p.y, p.x - left * scale, right * scale - p.x,
                         p.z - bottom * scale, top * scale - p.z});
    }

    bool perspective;
    float left, right, bottom, top, nearDist, farDist;
};

tbFrustum wide()
{
    tbFrustum frustum;
    frustum.makeFOV(90, 90, 1, 100);
    return frustum;
}

constexpr float EDGE = 1e-3f;

// The scheme by numbers: for each face, first edge and neighbour, then three pairs of them.
constexpr int SCHEME[6][8] = {{7, 2, 6, 3, 4, 5, 5, 4},  {11, 2, 10, 3, 8, 5, 9, 4},
                              {7, 0, 11, 1, 0, 5, 2, 4}, {6, 0, 10, 1, 1, 5, 3, 4},
                              {2, 2, 3, 3, 9, 1, 5, 0},  {0, 2, 1, 3, 4, 0, 8, 1}};

template <class Volume>
tbVolume::CONTAINMENT containmentByScheme(const tbFrustum& frustum, const Volume& volume)
{
    const auto face = [&](int i) { return frustum.getFacePlane(i).contains(volume); };
    const auto edge = [&](int i) { return frustum.getEdgePlane(i).contains(volume); };
    for (int i = 0; i < 6; ++i)
    {
        const int* row = SCHEME[i];
        if (face(i) == tbVolume::OUTSIDE)
            return tbVolume::OUTSIDE;
        if (face(i) == tbVolume::PARTIAL && edge(row[0]) == tbVolume::OUTSIDE)
            return tbVolume::OUTSIDE;
        if (face(i) == tbVolume::INSIDE || edge(row[0]) == tbVolume::INSIDE)
            continue;
        if (face(row[1]) != tbVolume::INSIDE)
            return face(row[1]);
        for (int pair = 2; pair < 8; pair += 2)
        {
            if (edge(row[pair]) == tbVolume::INSIDE && face(row[pair + 1]) != tbVolume::OUTSIDE)
                return tbVolume::PARTIAL;
        }
    }
    return tbVolume::INSIDE;
}

} // namespace

TEST(Frustum, CentreIsThatOfOneDiagonal)
{
    tbVec3 center;
    wide().getCenter(center);
    EXPECT_TRUE(near(center, tbVec3(49.5f, 50.5f, -49.5f), 1e-3f));
    EXPECT_TRUE(wide().isSymmetrical());
}

TEST(Frustum, PointsAgreeWithTheDefinition)
{
    tbtest::Random random(30);
    for (int i = 0; i < 200; ++i)
    {
        const Shape shape(random);
        const tbFrustum own = shape.make();
        const tbMatrix place = random.place(10);
        const tbtest::RootScope exact;
        tbFrustum placed;
        placed.xform(own, place);
        EXPECT_EQ(placed.getFar(), own.getFar());
        for (int j = 0; j < 50; ++j)
        {
            const tbVec3 p = random.point(20);
            const float depth = shape.depth(p);
            if (std::fabs(depth) < EDGE * 10)
                continue;
            const tbVolume::CONTAINMENT expected = depth > 0 ? tbVolume::INSIDE : tbVolume::OUTSIDE;
            EXPECT_EQ(own.contains(p), expected);
            EXPECT_EQ(placed.contains(p * place), expected);
        }
    }
}

TEST(Frustum, CornersLieOnThreeFacesAndEdgesOnTwoHoldEverything)
{
    using F = tbFrustum;
    const int joined[F::NUM_EDGES][2] = {
        {F::FACE_LEFT, F::FACE_TOP},     {F::FACE_RIGHT, F::FACE_TOP}, {F::FACE_LEFT, F::FACE_BOTTOM},
        {F::FACE_RIGHT, F::FACE_BOTTOM}, {F::FACE_NEAR, F::FACE_TOP},  {F::FACE_NEAR, F::FACE_BOTTOM},
        {F::FACE_NEAR, F::FACE_RIGHT},   {F::FACE_NEAR, F::FACE_LEFT}, {F::FACE_FAR, F::FACE_TOP},
        {F::FACE_FAR, F::FACE_BOTTOM},   {F::FACE_FAR, F::FACE_RIGHT}, {F::FACE_FAR, F::FACE_LEFT}};
    const tbtest::RootScope exact;
    tbtest::Random random(31);
    for (int i = 0; i < 100; ++i)
    {
        F frustum = Shape(random).make();
        frustum.xform(random.place(5));
        const auto height = [&](const tbPlane& plane, int corner)
        { return plane.getNormal()->dot(frustum.getCorners()[corner]) - plane.getOffset(); };
        for (int c = 0; c < F::NUM_CORNERS; ++c)
        {
            for (const int face : {c & F::CORNER_FAR ? F::FACE_FAR : F::FACE_NEAR,
                                   c & F::CORNER_RIGHT ? F::FACE_RIGHT : F::FACE_LEFT,
                                   c & F::CORNER_TOP ? F::FACE_TOP : F::FACE_BOTTOM})
                EXPECT_NEAR(height(frustum.getFacePlane(face), c), 0.0f, EDGE);
        }
        for (int e = 0; e < F::NUM_EDGES; ++e)
        {
            const tbPlane& plane = frustum.getEdgePlane(e);
            tbVec3 mean = *frustum.getFacePlane(joined[e][0]).getNormal() +
                          *frustum.getFacePlane(joined[e][1]).getNormal();
            mean.normalize();
            EXPECT_TRUE(near(*plane.getNormal(), mean, EDGE)) << e;
            int touching = 0;
            for (int c = 0; c < F::NUM_CORNERS; ++c)
            {
                EXPECT_LE(height(plane, c), EDGE);
                touching += std::fabs(height(plane, c)) <= EDGE ? 1 : 0;
            }
            EXPECT_EQ(touching, 2) << "edge " << e;
        }
    }
}

// Deep inside is inside, and what lies before or behind it outside; else the scheme decides.
TEST(Frustum, FollowsTheSchemeForSpheresAndBoxes)
{
    const tbtest::RootScope exact;
    tbtest::Random random(32);
    int counts[3] = {};
    for (int i = 0; i < 3000; ++i)
    {
        const Shape shape(random);
        const tbFrustum frustum = shape.make();
        const tbSphere sphere(random.point(12), random.number(0.2f, 4));
        const float r = sphere.getRadius();
        tbBox box;
        box.extendAround(sphere);
        const tbVolume::CONTAINMENT ofSphere = frustum.contains(sphere);
        ++counts[ofSphere];
        EXPECT_EQ(ofSphere, containmentByScheme(frustum, sphere));
        EXPECT_EQ(frustum.contains(box), containmentByScheme(frustum, box));
        // Along the axes, so several radii away from slanted sides.
        EXPECT_TRUE(shape.depth(*sphere.getCenter()) < 8 * r || ofSphere == tbVolume::INSIDE);
        const float y = sphere.getCenter()->y;
        const bool apart = y + r < shape.nearDist || y - r > shape.farDist;
        EXPECT_TRUE(!apart || ofSphere == tbVolume::OUTSIDE);
    }
    for (const int count : counts)
        EXPECT_GT(count, 20);
}

TEST(Frustum, WhatStraddlesAFaceUnsettledCountsAsInside)
{
    EXPECT_EQ(wide().contains(tbSphere(tbVec3(0, 1, 0), 0.5f)),
              tbVolume::INSIDE); // half of it before the near face
    EXPECT_EQ(wide().contains(tbSphere(tbVec3(0, 0, 0), 0.5f)), tbVolume::OUTSIDE);
    EXPECT_EQ(wide().contains(tbSphere(tbVec3(0, 50, 0), 0)), tbVolume::OUTSIDE); // planes see no points
    tbBox point(tbVec3(0, 50, 0), tbVec3(0, 50, 0));
    EXPECT_EQ(wide().contains(point), tbVolume::INSIDE);
}

TEST(Frustum, GoesThroughAFileWithItsCorners)
{
    const tbtest::RootScope exact;
    tbtest::Random random(33);
    for (int i = 0; i < 10; ++i)
    {
        const tbFrustum frustum = Shape(random).make();
        tbFrustum back;
        EXPECT_EQ(tbtest::storeAndLoad(frustum, back), 18 * 20 + 16);
        for (int face = 0; face < tbFrustum::NUM_FACES; ++face)
            EXPECT_EQ(back.getFacePlane(face), frustum.getFacePlane(face)) << face;
        EXPECT_EQ(tbVec3(back.getNear(), back.getFar(), back.getTop()),
                  tbVec3(frustum.getNear(), frustum.getFar(), frustum.getTop()));
        for (int corner = 0; corner < tbFrustum::NUM_CORNERS; ++corner)
            EXPECT_TRUE(near(back.getCorners()[corner], frustum.getCorners()[corner]));
    }
}
