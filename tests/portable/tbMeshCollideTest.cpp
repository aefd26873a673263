// Rays of a collider against meshes, compared with testing every primitive.

#include <portable/tbMesh.h>
#include <tests/support/Near.h>
#include <tests/support/RandomValues.h>
#include <tests/support/RayCollider.h>
#include <tests/support/TestScene.h>
#include <tests/support/Vertices.h>

#include <algorithm>

#include <gtest/gtest.h>

using tbtest::makeCollider;
using tbtest::makeVertices;
using tbtest::NOT_A_NUMBER;

namespace
{
tbMesh* addMesh(tbGroup* parent, tbMesh::PRIMITIVE kind, const std::vector<tbVec3>& points)
{
    auto* mesh = new tbMesh;
    EXPECT_TRUE(mesh->set(kind, makeVertices(points), nullptr, 0));
    parent->addChild(mesh);
    return mesh;
}

// Three points each, near to each other.
std::vector<tbVec3> triangles(int n, tbtest::Random& random)
{
    std::vector<tbVec3> points;
    for (int i = 0; i < n; ++i)
    {
        const tbVec3 corner = random.point(10);
        for (const tbVec3& point : {corner, corner + random.point(1), corner + random.point(1)})
            points.push_back(point);
    }
    return points;
}

// The primitive that a ray hits, -1 for none, and how far off.
std::pair<int, float> byHand(const tbRay& ray, const std::vector<tbVec3>& points, bool farthest)
{
    std::pair<int, float> found(-1, 0.0f);
    for (std::size_t i = 0; i + 2 < points.size(); i += 3)
    {
        tbVec3 point;
        const float distance = ray.intersects(points[i], points[i + 1], points[i + 2], point);
        if (distance > 0 && (found.first < 0 || (distance > found.second) == farthest))
            found = {int(i / 3), distance};
    }
    return found;
}
} // namespace

TEST(MeshCollide, FindsWhatTestingEveryTriangleFinds)
{
    tbtest::Random random(11);
    tbtest::TestScene scene;
    const std::vector<tbVec3> points = triangles(3000, random);
    addMesh(scene, tbMesh::TRIANGLES, points);
    scene.update();
    int hits = 0;
    for (int i = 0; i < 400; ++i)
    {
        const tbRay ray(random.point(20), random.point(5));
        for (const bool farthest : {false, true})
        {
            const auto [primitive, distance] = byHand(ray, points, farthest);
            const tbRef<tbCollider> collider =
                makeCollider(ray, farthest ? tbCollider::RAY_HIT_FARTHEST : tbCollider::RAY_HIT_NEAREST);
            ASSERT_EQ(collider->intersect(scene), primitive >= 0 ? 1 : 0) << i;
            if (primitive < 0)
                continue;
            ++hits;
            ASSERT_EQ(collider->getRayHit(0)->primitive, primitive) << i;
            ASSERT_EQ(collider->getRayHit(0)->index, primitive * 3);
            ASSERT_NEAR(collider->getRayHit(0)->distance, distance, 1e-3f);
        }
    }
    EXPECT_GT(hits, 300);
}

TEST(MeshCollide, RoundingFarFromTheOriginLosesNoCorner)
{
    tbtest::Random random(5);
    const auto step = [&](int n) { return float(random.index(2 * n + 1) - n) * 0.1f; };
    const auto knot = [&](int n) { return tbVec3(1e5f + step(n), step(n), step(n)); };
    std::vector<tbVec3> points(90);
    const tbRef<tbMesh> mesh(new tbMesh);
    for (int i = 0; i < 20'000; ++i)
    {
        if (i % 200 == 0)
        {
            std::generate(points.begin(), points.end(), [&] { return knot(4); });
            mesh->set(tbMesh::TRIANGLES, makeVertices(points), nullptr, 0);
        }
        const tbVec3 start = knot(6);
        const tbRay ray(start, knot(6) - start, -1);
        const bool found = byHand(ray, points, false).first >= 0 && ray.intersects(mesh->getBoundingBox());
        ASSERT_EQ(makeCollider(ray)->intersect(mesh.get()), found) << i;
    }
}

TEST(MeshCollide, AxisParallelRaysFindFlatGrids)
{
    tbtest::TestScene scene;
    std::vector<tbVec3> ground;
    for (int x = 0; x < 30; ++x)
        for (int y = 0; y < 30; ++y)
            for (const tbVec3& offset : {tbVec3(0, 0, 0), tbVec3(1, 0, 0), tbVec3(1, 1, 0), tbVec3(0, 0, 0),
                                         tbVec3(1, 1, 0), tbVec3(0, 1, 0)})
                ground.push_back(tbVec3(float(x), float(y), 0) + offset);
    addMesh(scene.addTransform(nullptr, 5, 0, 2), tbMesh::TRIANGLES, ground);
    scene.update();
    for (float x = 5.25f; x < 35; x += 1.0f)
    {
        const tbRef<tbCollider> collider = makeCollider(tbRay(tbVec3(x, 7.5f, 50), tbVec3(0, 0, -1), -1));
        ASSERT_EQ(collider->intersect(scene), 1) << x;
        EXPECT_TRUE(tbtest::near(collider->getRayHit(0)->point, tbVec3(x, 7.5f, 2)));
        EXPECT_EQ(collider->getRayHit(0)->primitive / 2, int(x - 5) * 30 + 7);
    }
}

TEST(MeshCollide, TheTreeFollowsTheVertices)
{
    tbtest::TestScene scene;
    tbMesh* mesh = addMesh(scene, tbMesh::TRIANGLES, {tbVec3(-1, 5, -1), tbVec3(1, 5, -1), tbVec3(0, 5, 1)});
    scene.update();
    const tbRef<tbCollider> collider = makeCollider(tbRay(tbVec3(0, 0, 0), tbVec3(0, 1, 0), 20));
    EXPECT_EQ(collider->intersect(scene), 1);
    auto* points = static_cast<tbVec3*>(mesh->getVertexArray()->getData());
    for (int i = 0; i < 3; ++i)
        points[i] += tbVec3(0, 10, 0);
    mesh->changed();
    scene.update();
    EXPECT_NEAR((*scene->getVolume()->getCenter())[1], 15, 1e-4f);
    EXPECT_EQ(collider->intersect(scene), 1);
    EXPECT_NEAR(collider->getRayHit(0)->distance, 15, 1e-4f);
    mesh->setVertexArray(nullptr);
    scene.update();
    EXPECT_EQ(collider->intersect(scene), 0);
}

TEST(MeshCollide, LinesAndPointsAreHitWithinTheirTolerance)
{
    for (const tbMesh::PRIMITIVE kind : {tbMesh::LINES, tbMesh::POINTS})
    {
        tbtest::TestScene scene;
        tbMesh* mesh = addMesh(scene, kind, {tbVec3(0.2f, 4, -3), tbVec3(0.2f, 4, 0.05f)});
        scene.update();
        const tbRef<tbCollider> collider = makeCollider(tbRay(tbVec3(0, 0, 0), tbVec3(0, 1, 0), 20));
        EXPECT_EQ(collider->intersect(scene), 0);
        mesh->setHitTolerance(0.25f);
        EXPECT_EQ(collider->intersect(scene), 1);
        EXPECT_NEAR(collider->getRayHit(0)->distance, 4, 1e-3f);
        EXPECT_EQ(collider->getRayHit(0)->primitive, kind == tbMesh::LINES ? 0 : 1);
    }
}

TEST(MeshCollide, WhatIsNoNumberIsHitByNothing)
{
    tbtest::TestScene scene;
    addMesh(scene, tbMesh::TRIANGLES,
            {tbVec3(NOT_A_NUMBER, 5, -1), tbVec3(1, 5, -1), tbVec3(0, 5, NOT_A_NUMBER), tbVec3(-1, 8, -1),
             tbVec3(1, 8, -1), tbVec3(0, 8, 1)});
    scene.update();
    const tbRef<tbCollider> collider = makeCollider(tbRay(tbVec3(0, 0, 0), tbVec3(0, 1, 0), 20));
    EXPECT_EQ(collider->intersect(scene), 1);
    EXPECT_EQ(collider->getRayHit(0)->primitive, 1);
    EXPECT_EQ(makeCollider(tbRay(tbVec3(0, 0, 0), tbVec3(0, NOT_A_NUMBER, 0), 20))->intersect(scene), 0);
}

TEST(MeshCollide, NothingIsAllocatedOnceWarm)
{
    tbtest::Random random(11);
    tbtest::TestScene scene;
    addMesh(scene.addTransform(nullptr, 1, 2, 3), tbMesh::TRIANGLES, triangles(2000, random));
    scene.update();
    const tbRef<tbCollider> collider(new tbCollider);
    collider->setSaveMask(tbCollider::SAVE_PATH | tbCollider::SAVE_MATRIX);
    collider->setVolumeMode(tbCollider::VOLUME_BOX);
    collider->setVolumeHitMode(tbCollider::VOLUME_HIT_ALL);
    for (int i = 0; i < tbCollider::MAX_RAYS; ++i)
        collider->addRay(tbRay(tbVec3(0, 0, 0), random.point(1), 20));
    std::size_t warm = 0;
    for (int round = 0; round < 2; ++round) // the first one makes the paths of every ray that hits
    {
        for (int i = 0; i < 20; ++i)
        {
            collider->setHPR(0.0f, 0.0f, 3.0f * float(i));
            EXPECT_GT(collider->intersect(scene), 0);
            EXPECT_TRUE(round == 0 || tbMemory::getSize() == warm);
        }
        warm = tbMemory::getSize();
    }
}
