// What switches cost: ten thousand of them at rest and in transition, in the frame and in the camera's walk, beside
// as many plain groups.
#include <tamber/display/tbCamera.h>
#include <tamber/graph/tbScene.h>
#include <tamber/graph/tbSwitch.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/volume/tbFrustum.h>
#include <tests/support/TestGeometry.h>

#include <benchmark/benchmark.h>

#include <vector>

namespace
{

constexpr int NUM = 10'000;
constexpr float FOR_EVER = 1.0e6f;

enum KIND
{
    GROUPS,
    AT_REST,
    FADING
};

// Every node has two geometries; a switch shows one of them, or fades from one to the other.
tbRef<tbScene> makeScene(KIND kind, std::vector<tbSwitch*>& switches)
{
    tbRef<tbScene> scene(new tbScene);
    for (int i = 0; i < NUM; ++i)
    {
        auto* node = kind == GROUPS ? new tbGroup : new tbSwitch;
        scene->addChild(node);
        node->addChild(new tbtest::TestGeometry(tbSphere(tbVec3(0, 0, 0), 1)));
        node->addChild(new tbtest::TestGeometry(tbSphere(tbVec3(0, 0, 0), 1)));
        if (kind == GROUPS)
            continue;
        switches.push_back(static_cast<tbSwitch*>(node));
        if (kind == FADING)
            switches.back()->setTransitionTime(FOR_EVER);
        switches.back()->enableTransition(kind == FADING);
    }
    scene->update();
    for (tbSwitch* node : switches)
        node->selectChild(1);
    scene->update();
    return scene;
}

// Sees everything and draws nothing.
class BlindCamera : public tbCamera
{
public:
    const tbFrustum* getFrustum() const override { return &frustum; }
    void draw(tbGroup* root) override
    {
        getTravContext()->reset();
        static_cast<const tbGroup*>(root)->apply(this);
    }
    void setFOV(float, float) override {}
    void getFOV(float& h, float& v) const override { h = v = 0; }
    void applyViewport() override {}
    void clear() override {}
    void loadMatrices() override {}
    void loadModelMatrix(const tbMatrix&) override {}

private:
    tbFrustum frustum;
};

void cameraWalk(benchmark::State& state, KIND kind)
{
    std::vector<tbSwitch*> switches;
    const tbRef<tbScene> scene = makeScene(kind, switches);
    const tbRef<BlindCamera> camera(new BlindCamera);
    for (auto _ : state)
        camera->draw(scene.get());
    state.SetItemsProcessed(state.iterations() * NUM);
}
BENCHMARK_CAPTURE(cameraWalk, groups, GROUPS);
BENCHMARK_CAPTURE(cameraWalk, switches, AT_REST);
BENCHMARK_CAPTURE(cameraWalk, inTransition, FADING);

void frame(benchmark::State& state, KIND kind)
{
    std::vector<tbSwitch*> switches;
    const tbRef<tbScene> scene = makeScene(kind, switches);
    for (auto _ : state)
        scene->update();
    std::int64_t running = 0;
    for (const tbSwitch* node : switches)
        running += node->isInTransition() ? 1 : 0;
    state.counters["in transition"] = double(running);
    state.SetItemsProcessed(state.iterations() * NUM);
}
BENCHMARK_CAPTURE(frame, groups, GROUPS);
BENCHMARK_CAPTURE(frame, switches, AT_REST);
BENCHMARK_CAPTURE(frame, inTransition, FADING);

// Every switch turns to its other child, and the frame after it.
void turnAll(benchmark::State& state)
{
    std::vector<tbSwitch*> switches;
    const tbRef<tbScene> scene = makeScene(FADING, switches);
    int child = 0;
    for (auto _ : state)
    {
        for (tbSwitch* node : switches)
            node->selectChild(child);
        child = 1 - child;
        scene->update();
    }
    state.SetItemsProcessed(state.iterations() * NUM);
}
BENCHMARK(turnAll);

} // namespace
