// The camera walk of the null display: culling, traits and matrices, with nothing drawn.
#include <tamber/display/tbCamera.h>

#include <tamber/graph/tbScene.h>
#include <tamber/graph/tbTransform.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/render/tbGeometry.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/volume/tbSphere.h>

#include <plugins/null/tbNullCamera.h>
#include <plugins/null/tbNullWindow.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int BLOCK = 32; // geometries below one transform
constexpr float SPACING = 4.0f;

class Sphere : public tbGeometry
{
public:
    const tbVertexArray* getVertexArray() const override { return nullptr; }
    int getNumPrimitives() const override { return 1; }
    int getNumIndices() const override { return 0; }
    const unsigned int* getIndices() const override { return nullptr; }
    void updateFences(tbTravContext* context) override
    {
        tbGeometry::updateFences(context);
        tbSphere sphere(tbVec3(0, 0, 0), 1.0f);
        sphere.xform(context->getMatrix());
        if (tbVolume* volume = context->getVolume())
            volume->extendAround(sphere);
    }
};

// `n` geometries on a square field, each below a transform, in blocks below transforms.
tbRef<tbScene> makeField(int n)
{
    tbRef<tbScene> scene = new tbScene;
    const int numBlocks = n / BLOCK;
    const int edge = std::max(1, int(std::sqrt(double(numBlocks))));
    for (int i = 0; i < numBlocks; ++i)
    {
        auto* block = new tbTransform;
        block->setXYZ(float(i % edge - edge / 2) * SPACING * 6.0f,
                      float(i / edge - edge / 2) * SPACING * 6.0f, 0.0f);
        scene->addChild(block);
        for (int j = 0; j < BLOCK; ++j)
        {
            auto* place = new tbTransform;
            place->setXYZ(float(j % 6) * SPACING, float(j / 6) * SPACING, 0.0f);
            place->addChild(new Sphere);
            block->addChild(place);
        }
    }
    scene->update();
    return scene;
}

// Argument: geometries. The camera turns on the spot in the middle of the field.
void walk(benchmark::State& state, float fieldOfView)
{
    tbRef<tbScene> scene = makeField(int(state.range(0)));
    tbRef<tbNullWindow> window = new tbNullWindow;
    window->open();
    tbRef<tbNullCamera> camera = new tbNullCamera;
    camera->setWindow(window.get());
    camera->setNearFar(0.1f, 1.0e5f);
    camera->setFOV(fieldOfView, fieldOfView);
    float heading = 0.0f;
    for (auto _ : state)
    {
        heading = heading < 353.0f ? heading + 7.0f : 0.0f;
        camera->setXYZHPR(tbVec3(0, 0, 3), tbVec3(heading, -5, 0));
        camera->draw(scene.get());
    }
    const tbNullCounts& counts = camera->getCounts();
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["drawn"] = double(counts.geometries) / double(counts.walks);
    state.counters["culled"] = double(counts.culled) / double(counts.walks);
    scene->removeChildren();
}

void cameraWalkNarrow(benchmark::State& state)
{
    walk(state, 45.0f);
}
BENCHMARK(cameraWalkNarrow)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMicrosecond);

void cameraWalkWide(benchmark::State& state)
{
    walk(state, 150.0f);
}
BENCHMARK(cameraWalkWide)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMicrosecond);

void cameraMoves(benchmark::State& state)
{
    tbRef<tbNullCamera> camera = new tbNullCamera;
    float heading = 0.0f;
    for (auto _ : state)
    {
        heading = heading < 353.0f ? heading + 7.0f : 0.0f;
        camera->setXYZHPR(tbVec3(1, 2, 3), tbVec3(heading, -5, 0));
        benchmark::DoNotOptimize(camera->getFrustum());
    }
}
BENCHMARK(cameraMoves);

} // namespace
