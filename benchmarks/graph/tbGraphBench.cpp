// What a graph costs per node: made, edited, updated, bounded, walked and taken down, from a thousand to a million
// nodes. Times are per node of the graph, or per edit.
#include <tamber/graph/tbScene.h>
#include <tamber/graph/tbTransform.h>
#include <tamber/trav/tbTravContext.h>
#include <tests/support/SceneBuilder.h>
#include <tests/support/WalkCamera.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <random>

namespace
{

using tbtest::SceneBuilder;

void sizes(benchmark::internal::Benchmark* bench)
{
    for (const int num : {1'000, 10'000, 100'000, 1'000'000})
        bench->Arg(num);
    bench->ArgName("nodes")->Unit(benchmark::kMillisecond);
}

void countNodes(benchmark::State& state, std::size_t num)
{
    state.counters["per node"] = benchmark::Counter(
        double(num), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void build(benchmark::State& state)
{
    std::size_t num = 0;
    for (auto _ : state)
    {
        tbRef<tbScene> scene(new tbScene);
        num = SceneBuilder(scene.get(), int(state.range(0))).getNodes().size();
        state.PauseTiming();
        scene.reset();
        state.ResumeTiming();
    }
    countNodes(state, num);
}
BENCHMARK(build)->Apply(sizes);

void teardown(benchmark::State& state)
{
    std::size_t num = 0;
    for (auto _ : state)
    {
        state.PauseTiming();
        tbRef<tbScene> scene(new tbScene);
        num = SceneBuilder(scene.get(), int(state.range(0))).getNodes().size();
        state.ResumeTiming();
        scene.reset();
    }
    countNodes(state, num);
}
BENCHMARK(teardown)->Apply(sizes);

enum ORDER
{
    FRONT_TO_BACK,
    BACK_TO_FRONT,
    SHUFFLED
};

// Every node is detached by itself.
void takeApart(benchmark::State& state, ORDER order)
{
    std::size_t num = 0;
    for (auto _ : state)
    {
        state.PauseTiming();
        const tbRef<tbScene> scene(new tbScene);
        std::vector<tbRef<tbGroup>> held;
        {
            const SceneBuilder builder(scene.get(), int(state.range(0)));
            held.assign(builder.getNodes().begin(), builder.getNodes().end());
        }
        num = held.size();
        if (order == BACK_TO_FRONT)
            std::reverse(held.begin(), held.end());
        else if (order == SHUFFLED)
            std::shuffle(held.begin(), held.end(), std::mt19937(1));
        state.ResumeTiming();
        for (tbRef<tbGroup>& node : held)
        {
            node->detach();
            node.reset();
        }
    }
    countNodes(state, num);
}
BENCHMARK_CAPTURE(takeApart, backToFront, BACK_TO_FRONT)->Apply(sizes);
BENCHMARK_CAPTURE(takeApart, shuffled, SHUFFLED)->Apply(sizes);

// One leaf among many siblings comes and goes.
void attachAndDetach(benchmark::State& state)
{
    const tbRef<tbGroup> parent(new tbGroup);
    std::vector<tbRef<tbGroup>> children;
    for (int i = 0; i < state.range(0); ++i)
    {
        children.emplace_back(new tbGroup);
        parent->addChild(children.back().get());
    }
    std::mt19937 random(1);
    for (auto _ : state)
    {
        tbGroup* child = children[random() % children.size()].get();
        parent->removeChild(child);
        parent->addChild(child);
    }
}
BENCHMARK(attachAndDetach)->ArgName("siblings")->RangeMultiplier(10)->Range(1'000, 1'000'000);

// Two parents share many children in different orders: every membership is asked of the short lists.
void askMembership(benchmark::State& state)
{
    const tbRef<tbGroup> parent(new tbGroup);
    std::vector<tbGroup*> children;
    for (int i = 0; i < state.range(0); ++i)
    {
        children.push_back(new tbGroup);
        parent->addChild(children.back());
    }
    std::mt19937 random(1);
    for (auto _ : state)
        benchmark::DoNotOptimize(parent->getChildIndex(children[random() % children.size()]));
}
BENCHMARK(askMembership)->ArgName("siblings")->RangeMultiplier(10)->Range(1'000, 1'000'000);

class Frame
{
public:
    explicit Frame(const benchmark::State& state)
        : scene(new tbScene),
          builder(scene.get(), int(state.range(0)))
    {
        scene->update();
    }

    tbRef<tbScene> scene;
    SceneBuilder builder;
};

void updateWithEverythingMoved(benchmark::State& state)
{
    Frame frame(state);
    for (auto _ : state)
    {
        for (tbTransform* transform : frame.builder.getTransforms())
            transform->setXYZ(1, 2, 3);
        frame.scene->update();
    }
    countNodes(state, frame.builder.getNodes().size());
}
BENCHMARK(updateWithEverythingMoved)->Apply(sizes);

void updateWithOneMoved(benchmark::State& state)
{
    Frame frame(state);
    for (auto _ : state)
    {
        frame.builder.getTransforms().back()->setXYZ(1, 2, 3);
        frame.scene->update();
    }
}
BENCHMARK(updateWithOneMoved)->ArgName("nodes")->RangeMultiplier(10)->Range(1'000, 1'000'000);

void treeUpdate(benchmark::State& state)
{
    Frame frame(state);
    tbTravContext* context = frame.scene->getTravContext();
    for (auto _ : state)
    {
        state.PauseTiming();
        for (tbTransform* transform : frame.builder.getTransforms())
            transform->changed();
        state.ResumeTiming();
        frame.scene->update(context);
    }
    countNodes(state, frame.builder.getNodes().size());
}
BENCHMARK(treeUpdate)->Apply(sizes);

void bounds(benchmark::State& state)
{
    Frame frame(state);
    for (auto _ : state)
    {
        state.PauseTiming();
        for (tbTransform* transform : frame.builder.getTransforms())
            transform->changed();
        state.ResumeTiming();
        frame.scene->updateFences();
    }
    countNodes(state, frame.builder.getNodes().size());
}
BENCHMARK(bounds)->Apply(sizes);

// Without a width everything is visited; else a box of that width in the middle of the scene is in view.
void cameraWalk(benchmark::State& state, float width)
{
    Frame frame(state);
    tbtest::WalkCamera camera;
    const bool culling = width > 0.0f;
    if (culling)
        camera.frustum().makeOrtho(-width, width, -width, width, -width, width);
    for (auto _ : state)
        camera.walk(frame.scene.get(), culling);
    countNodes(state, frame.builder.getNodes().size());
}
BENCHMARK_CAPTURE(cameraWalk, culling, 10.0f)->Apply(sizes);
BENCHMARK_CAPTURE(cameraWalk, everything, 0.0f)->Apply(sizes);

class Visitor : public tbTraverser
{
public:
    Visitor() { setTravContext(new tbTravContext); }
};

void traverserWalk(benchmark::State& state)
{
    Frame frame(state);
    const tbRef<Visitor> visitor(new Visitor);
    for (auto _ : state)
        visitor->traverse(frame.scene.get());
    countNodes(state, frame.builder.getNodes().size());
}
BENCHMARK(traverserWalk)->Apply(sizes);

} // namespace
