// What picking costs: one ray and 32 rays against meshes of a thousand to a million triangles and against ten thousand
// small meshes, and volumes against many bounds. Times are per intersect().
#include <portable/tbMesh.h>
#include <tamber/collide/tbCollider.h>
#include <tamber/collide/tbSphereFence.h>
#include <tamber/graph/tbScene.h>
#include <tamber/graph/tbTransform.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/render/tbVertexArray.h>
#include <tamber/volume/tbBox.h>
#include <tamber/volume/tbSphere.h>
#include <tests/support/SceneBuilder.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace
{

constexpr float EXTENT = 1000.0f;

// A square of uneven ground with about `num` triangles and sides of `extent`, its corner in the origin.
tbMesh* makeGround(int num, float extent)
{
    const int side = std::max(1, int(std::lround(std::sqrt(double(num) / 2.0))));
    const float cell = extent / float(side);
    auto* vertices = new tbVertexArray((side + 1) * (side + 1), tbVertexArray::VT_POSITION);
    auto* point = static_cast<tbVec3*>(vertices->getData());
    std::mt19937 random(3);
    for (int y = 0; y <= side; ++y)
        for (int x = 0; x <= side; ++x)
            *point++ = tbVec3(float(x) * cell, float(y) * cell, float(random() % 1000) * 1e-3f * cell);
    std::vector<unsigned> indices;
    for (int y = 0; y < side; ++y)
    {
        for (int x = 0; x < side; ++x)
        {
            const unsigned a = unsigned(y * (side + 1) + x), b = a + 1, c = b + unsigned(side), d = c + 1;
            indices.insert(indices.end(), {a, b, d, a, d, c});
        }
    }
    auto* mesh = new tbMesh;
    mesh->set(tbMesh::TRIANGLES, vertices, indices.data(), int(indices.size()));
    return mesh;
}

// Ten thousand pieces of ground below a hierarchy of transforms, ten by ten at each of two levels.
void addTiles(tbGroup* root, int trianglesEach)
{
    constexpr int WIDTH = 10;
    const auto place = [](tbGroup* parent, int i, float pitch)
    {
        auto* node = new tbTransform;
        node->setXYZ(float(i % WIDTH) * pitch, float(i / WIDTH) * pitch, 0.0f);
        parent->addChild(node);
        return node;
    };
    for (int i = 0; i < WIDTH * WIDTH; ++i)
    {
        tbTransform* district = place(root, i, EXTENT / WIDTH);
        for (int k = 0; k < WIDTH * WIDTH; ++k)
            place(district, k, EXTENT / (WIDTH * WIDTH))
                ->addChild(makeGround(trianglesEach, EXTENT / (WIDTH * WIDTH)));
    }
}

tbRef<tbScene> makeScene(int triangles, int meshes)
{
    tbRef<tbScene> scene(new tbScene);
    if (meshes == 1)
        scene->addChild(makeGround(triangles, EXTENT));
    else
        addTiles(scene.get(), triangles / meshes);
    scene->update();
    return scene;
}

// Walks of several rays say a line for each that missed a subtree.
void sayNothing(const char*) {}

// Slanting rays from above the middle of the ground, a little apart.
tbRef<tbCollider> makeCollider(int rays)
{
    tbSetMessageFunc(&sayNothing);
    tbRef<tbCollider> collider(new tbCollider);
    collider->setVolumeMode(tbCollider::VOLUME_NONE);
    for (int i = 0; i < rays; ++i)
    {
        tbVec3 direction(0.02f * float(i), 0.3f, -1.0f);
        direction.normalize();
        collider->addRay(tbRay(tbVec3(float(i), 0, 0), direction, 200.0f));
    }
    return collider;
}

void rays(benchmark::State& state)
{
    const tbRef<tbScene> scene = makeScene(int(state.range(1)), int(state.range(2)));
    const tbRef<tbCollider> collider = makeCollider(int(state.range(0)));
    std::mt19937 random(1);
    std::uniform_real_distribution<float> place(0.1f * EXTENT, 0.8f * EXTENT);
    std::int64_t hits = 0, tests = 0;
    for (int warm = 0; warm < 2; ++warm)
        collider->intersect(scene.get());
    for (auto _ : state)
    {
        const float x = place(random);
        collider->setXYZ(x, place(random), 100.0f);
        hits += collider->intersect(scene.get());
        tests += collider->getNumVolume();
    }
    state.counters["hits"] = benchmark::Counter(double(hits), benchmark::Counter::kAvgIterations);
    state.counters["node tests"] = benchmark::Counter(double(tests), benchmark::Counter::kAvgIterations);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(rays)
    ->ArgNames({"rays", "triangles", "meshes"})
    ->ArgsProduct({{1, 32}, {1'000, 100'000, 1'000'000}, {1}})
    ->ArgsProduct({{1, 32}, {100'000}, {10'000}});

// The first ray after the vertices have changed builds the tree again.
void firstRay(benchmark::State& state)
{
    const tbRef<tbScene> scene = makeScene(int(state.range(0)), 1);
    auto* ground = static_cast<tbMesh*>(scene->getChild(0));
    const tbRef<tbCollider> collider = makeCollider(1);
    collider->setXYZ(500, 500, 100);
    for (auto _ : state)
    {
        state.PauseTiming();
        ground->changed();
        scene->update();
        state.ResumeTiming();
        collider->intersect(scene.get());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(firstRay)->ArgName("triangles")->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

void volumes(benchmark::State& state, tbVolume& volume)
{
    const tbRef<tbScene> scene(new tbScene);
    const tbtest::SceneBuilder builder(scene.get(), int(state.range(0)));
    scene->update();
    const tbRef<tbCollider> collider(new tbCollider);
    collider->setVolume(&volume);
    collider->setVolumeHitMode(tbCollider::VOLUME_HIT_FIRST);
    std::int64_t hits = 0, tests = 0;
    std::mt19937 random(1);
    std::uniform_real_distribution<float> place(-60.0f, 60.0f);
    for (auto _ : state)
    {
        const float x = place(random);
        collider->setXYZ(x, place(random), 2.0f);
        hits += collider->intersect(scene.get());
        tests += collider->getNumVolume();
    }
    state.counters["hits"] = benchmark::Counter(double(hits), benchmark::Counter::kAvgIterations);
    state.counters["node tests"] = benchmark::Counter(double(tests), benchmark::Counter::kAvgIterations);
}

void sphereVolume(benchmark::State& state)
{
    tbSphere sphere(tbVec3(0, 0, 0), 1.0f);
    volumes(state, sphere);
}
BENCHMARK(sphereVolume)->ArgName("nodes")->RangeMultiplier(10)->Range(1'000, 100'000);

void boxVolume(benchmark::State& state)
{
    tbBox box(tbVec3(-1, -1, -1), tbVec3(1, 1, 1));
    volumes(state, box);
}
BENCHMARK(boxVolume)->ArgName("nodes")->RangeMultiplier(10)->Range(1'000, 100'000);

// Ten thousand groups, each walked into, and as many fences that keep the ray out of what lies below.
void missed(benchmark::State& state, bool fences)
{
    const tbRef<tbScene> scene(new tbScene);
    for (int i = 0; i < 10'000; ++i)
    {
        tbGroup* parent = fences ? new tbSphereFence : new tbGroup;
        parent->addChild(new tbtest::TestGeometry(tbSphere(tbVec3(float(i), 0, 0), 0.4f)));
        scene->addChild(parent);
    }
    scene->update();
    const tbRef<tbCollider> collider = makeCollider(1);
    collider->setXYZ(0, 10, 0);
    for (auto _ : state)
        collider->intersect(scene.get());
    state.counters["node tests"] = double(collider->getNumVolume());
    state.SetItemsProcessed(state.iterations() * 10'000);
}
BENCHMARK_CAPTURE(missed, groups, false);
BENCHMARK_CAPTURE(missed, fences, true);

} // namespace
