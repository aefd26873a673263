// Tests of many spheres and boxes against a frustum, a ray and each other, and bounds grown around them.
#include <tamber/volume/tbBox.h>
#include <tamber/volume/tbFrustum.h>
#include <tamber/volume/tbRay.h>
#include <tamber/volume/tbSphere.h>

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace
{

std::vector<tbSphere> makeSpheres(std::size_t count)
{
    std::mt19937 engine(1);
    std::uniform_real_distribution<float> place(-60, 60);
    std::uniform_real_distribution<float> radius(0.1f, 5);
    std::vector<tbSphere> spheres;
    spheres.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        spheres.emplace_back(tbVec3(place(engine), place(engine), place(engine)), radius(engine));
    return spheres;
}

std::vector<tbBox> makeBoxes(std::size_t count)
{
    std::vector<tbBox> boxes(count);
    const std::vector<tbSphere> spheres = makeSpheres(count);
    for (std::size_t i = 0; i < count; ++i)
        boxes[i].extendAround(spheres[i]);
    return boxes;
}

tbFrustum makeFrustum()
{
    tbFrustum frustum;
    frustum.makeFOV(60, 45, 1, 100);
    return frustum;
}

template <class Test, class Volume>
void countOver(benchmark::State& state, const std::vector<Volume>& volumes, Test test)
{
    for (auto _ : state)
    {
        int count = 0;
        for (const Volume& volume : volumes)
            count += test(volume) ? 1 : 0;
        benchmark::DoNotOptimize(count);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void spheresInFrustum(benchmark::State& state)
{
    const tbFrustum frustum = makeFrustum();
    countOver(state, makeSpheres(std::size_t(state.range(0))),
              [&](const tbSphere& s) { return frustum.contains(s) != tbVolume::OUTSIDE; });
}
BENCHMARK(spheresInFrustum)->RangeMultiplier(10)->Range(1000, 1000000);

void boxesInFrustum(benchmark::State& state)
{
    const tbFrustum frustum = makeFrustum();
    countOver(state, makeBoxes(std::size_t(state.range(0))),
              [&](const tbBox& b) { return frustum.contains(b) != tbVolume::OUTSIDE; });
}
BENCHMARK(boxesInFrustum)->RangeMultiplier(10)->Range(1000, 1000000);

void spheresAgainstSphere(benchmark::State& state)
{
    const tbSphere sphere(tbVec3(0, 0, 0), 30);
    countOver(state, makeSpheres(std::size_t(state.range(0))),
              [&](const tbSphere& s) { return sphere.contains(s) != tbVolume::OUTSIDE; });
}
BENCHMARK(spheresAgainstSphere)->RangeMultiplier(10)->Range(1000, 1000000);

void boxesAgainstBox(benchmark::State& state)
{
    const tbBox box(tbVec3(-30, -30, -30), tbVec3(30, 30, 30));
    countOver(state, makeBoxes(std::size_t(state.range(0))),
              [&](const tbBox& b) { return box.contains(b) != tbVolume::OUTSIDE; });
}
BENCHMARK(boxesAgainstBox)->RangeMultiplier(10)->Range(1000, 1000000);

void rayAgainstSpheres(benchmark::State& state)
{
    const tbRay ray(tbVec3(-50, -50, -50), tbVec3(1, 1, 1), -1);
    countOver(state, makeSpheres(std::size_t(state.range(0))),
              [&](const tbSphere& s) { return ray.intersects(s); });
}
BENCHMARK(rayAgainstSpheres)->RangeMultiplier(10)->Range(1000, 1000000);

void rayAgainstBoxes(benchmark::State& state)
{
    const tbRay ray(tbVec3(-50, -50, -50), tbVec3(1, 1, 1), -1);
    countOver(state, makeBoxes(std::size_t(state.range(0))),
              [&](const tbBox& b) { return ray.intersects(b); });
}
BENCHMARK(rayAgainstBoxes)->RangeMultiplier(10)->Range(1000, 1000000);

template <class Bounds, class Volume>
void growAround(benchmark::State& state, const std::vector<Volume>& volumes)
{
    for (auto _ : state)
    {
        Bounds bounds;
        for (const Volume& volume : volumes)
            bounds.extendAround(volume);
        benchmark::DoNotOptimize(bounds);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void sphereAroundSpheres(benchmark::State& state)
{
    growAround<tbSphere>(state, makeSpheres(std::size_t(state.range(0))));
}
BENCHMARK(sphereAroundSpheres)->RangeMultiplier(10)->Range(1000, 1000000);

void boxAroundBoxes(benchmark::State& state)
{
    growAround<tbBox>(state, makeBoxes(std::size_t(state.range(0))));
}
BENCHMARK(boxAroundBoxes)->RangeMultiplier(10)->Range(1000, 1000000);

void spheresCarried(benchmark::State& state)
{
    const std::vector<tbSphere> spheres = makeSpheres(std::size_t(state.range(0)));
    tbMatrix m;
    m.makeHPR(10, 20, 30);
    m.setXYZ(1, 2, 3);
    for (auto _ : state)
    {
        tbSphere carried;
        for (const tbSphere& sphere : spheres)
        {
            carried.xform(sphere, m);
            benchmark::DoNotOptimize(carried);
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(spheresCarried)->RangeMultiplier(10)->Range(1000, 1000000);

void frustumCarried(benchmark::State& state)
{
    const tbFrustum frustum = makeFrustum();
    tbMatrix m;
    m.makeHPR(10, 20, 30);
    tbFrustum carried;
    for (auto _ : state)
    {
        carried.xform(frustum, m);
        benchmark::DoNotOptimize(carried);
    }
}
BENCHMARK(frustumCarried);

} // namespace
