#include <tamber/volume/tbFrustum.h>

#include <tamber/volume/tbBox.h>
#include <tamber/volume/tbRay.h>
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

TEST(Frustum, FromOpeningAngles)
{
    const tbFrustum frustum = wide();
    EXPECT_NEAR(frustum.getLeft(), -1.0f, 1e-6f);
    EXPECT_NEAR(frustum.getTop(), 1.0f, 1e-6f);
    EXPECT_EQ(frustum.getNear(), 1.0f);
    EXPECT_EQ(frustum.getFar(), 100.0f);
    EXPECT_TRUE(frustum.isSymmetrical());
    EXPECT_EQ(frustum.contains(tbVec3(0, 50, 0)), tbVolume::INSIDE);
    EXPECT_EQ(frustum.contains(tbVec3(0, 0.5f, 0)), tbVolume::OUTSIDE);
    EXPECT_EQ(frustum.contains(tbVec3(60, 50, 0)), tbVolume::OUTSIDE);
    EXPECT_EQ(frustum.contains(tbVec3(0, 101, 0)), tbVolume::OUTSIDE);
    tbVec3 center;
    frustum.getCenter(center);
    EXPECT_TRUE(near(center, tbVec3(49.5f, 50.5f, -49.5f), 1e-3f)); // of one diagonal
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

TEST(Frustum, CornersLieOnThreeFacesAndEdgesHoldEverything)
{
    const tbtest::RootScope exact;
    tbtest::Random random(31);
    for (int i = 0; i < 100; ++i)
    {
        tbFrustum frustum = Shape(random).make();
        frustum.xform(random.place(5));
        const tbVec3* corners = frustum.getCorners();
        for (int c = 0; c < tbFrustum::NUM_CORNERS; ++c)
        {
            for (const int face : {c & tbFrustum::CORNER_FAR ? tbFrustum::FACE_FAR : tbFrustum::FACE_NEAR,
                                   c & tbFrustum::CORNER_RIGHT ? tbFrustum::FACE_RIGHT : tbFrustum::FACE_LEFT,
                                   c & tbFrustum::CORNER_TOP ? tbFrustum::FACE_TOP : tbFrustum::FACE_BOTTOM})
            {
                const tbPlane& plane = frustum.getFacePlane(face);
                EXPECT_NEAR(plane.getNormal()->dot(corners[c]), plane.getOffset(), EDGE);
            }
        }
        for (int e = 0; e < tbFrustum::NUM_EDGES; ++e)
        {
            const tbPlane& plane = frustum.getEdgePlane(e);
            int touching = 0;
            for (int c = 0; c < tbFrustum::NUM_CORNERS; ++c)
            {
                const float height = plane.getNormal()->dot(corners[c]) - plane.getOffset();
                EXPECT_LE(height, EDGE);
                touching += std::fabs(height) <= EDGE ? 1 : 0;
            }
            EXPECT_EQ(touching, 2) << "edge " << e;
        }
    }
}

TEST(Frustum, EdgesJoinTheFacesOfTheirNames)
{
    using F = tbFrustum;
    const int joined[F::NUM_EDGES][2] = {
        {F::FACE_LEFT, F::FACE_TOP},     {F::FACE_RIGHT, F::FACE_TOP}, {F::FACE_LEFT, F::FACE_BOTTOM},
        {F::FACE_RIGHT, F::FACE_BOTTOM}, {F::FACE_NEAR, F::FACE_TOP},  {F::FACE_NEAR, F::FACE_BOTTOM},
        {F::FACE_NEAR, F::FACE_RIGHT},   {F::FACE_NEAR, F::FACE_LEFT}, {F::FACE_FAR, F::FACE_TOP},
        {F::FACE_FAR, F::FACE_BOTTOM},   {F::FACE_FAR, F::FACE_RIGHT}, {F::FACE_FAR, F::FACE_LEFT}};
    const tbFrustum frustum = wide();
    for (int e = 0; e < F::NUM_EDGES; ++e)
    {
        tbVec3 mean =
            *frustum.getFacePlane(joined[e][0]).getNormal() + *frustum.getFacePlane(joined[e][1]).getNormal();
        mean.normalize();
        EXPECT_TRUE(near(*frustum.getEdgePlane(e).getNormal(), mean, EDGE)) << e;
    }
}

// Follows the scheme; what is called outside holds no point of the frustum, and what lies deep inside is inside.
TEST(Frustum, NeverDropsWhatItSees)
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
        const tbVolume::CONTAINMENT ofBox = frustum.contains(box);
        ++counts[ofSphere];
        EXPECT_EQ(ofSphere, containmentByScheme(frustum, sphere));
        EXPECT_EQ(ofBox, containmentByScheme(frustum, box));
        bool sphereSeen = false, boxSeen = false;
        for (int j = 0; j < 100; ++j)
        {
            const tbVec3 p = *sphere.getCenter() + random.direction() * (r * random.number(0, 0.999f));
            const tbVec3 q = *sphere.getCenter() + random.point(r * 0.999f);
            sphereSeen |= shape.depth(p) > EDGE;
            boxSeen |= shape.depth(q) > EDGE;
        }
        EXPECT_TRUE(!sphereSeen || ofSphere != tbVolume::OUTSIDE);
        EXPECT_TRUE(!boxSeen || (ofBox != tbVolume::OUTSIDE && frustum.intersects(box)));
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

TEST(Frustum, IdentityLeavesItAndTranslationMovesAll)
{
    tbMatrix m;
    m.makeIdent();
    tbFrustum frustum;
    frustum.xform(wide(), m);
    EXPECT_EQ(frustum, wide());
    m.makeXYZ(1, 2, 3);
    frustum.xform(frustum, m);
    for (int i = 0; i < tbFrustum::NUM_CORNERS; ++i)
        EXPECT_TRUE(near(frustum.getCorners()[i], wide().getCorners()[i] + tbVec3(1, 2, 3)));
    EXPECT_EQ(frustum.getFacePlane(tbFrustum::FACE_FAR).getOffset(), 102.0f);
    EXPECT_EQ(frustum.getFar(), 100.0f);
    EXPECT_EQ(frustum.getLeft(), wide().getLeft());
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
            EXPECT_EQ(back.getFacePlane(face), frustum.getFacePlane(face));
        for (int corner = 0; corner < tbFrustum::NUM_CORNERS; ++corner)
            EXPECT_TRUE(near(back.getCorners()[corner], frustum.getCorners()[corner]));
        EXPECT_EQ(back.getNear(), frustum.getNear());
        EXPECT_EQ(back.getFar(), frustum.getFar());
        EXPECT_EQ(back.getTop(), frustum.getTop());
    }
}
