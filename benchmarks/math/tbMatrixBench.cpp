// Products of matrices by pair of types, inverses by type, chains of products, angles and points.
#include <tamber/math/tbMatrix.h>
#include <tamber/math/tbMatrixStack.h>
#include <tamber/math/tbQuat.h>
#include <tamber/math/tbVec3.h>

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace
{

// Types by name: rotation, translation, scale, and what is made of them.
enum KIND : int
{
    IDENT,
    LINEAR,
    XLATE,
    AFFINE,
    SCALE,
    SCALED_AFFINE,
    PROJ,
    NUM_KINDS
};

constexpr const char* NAMES[] = {"ident", "linear", "xlate", "affine", "scale", "scaledAffine", "proj"};

tbMatrix make(int kind)
{
    tbMatrix m;
    m.makeIdent();
    if (kind == SCALE || kind == SCALED_AFFINE)
        m.makeScale(1.0f, 2.0f, 3.0f);
    if (kind == LINEAR || kind == AFFINE || kind == SCALED_AFFINE)
        m.postRot(30.0f, 1.0f, 2.0f, 3.0f);
    if (kind == XLATE || kind == AFFINE || kind == SCALED_AFFINE)
        m.postTrans(4.0f, 5.0f, 6.0f);
    if (kind == PROJ)
        m.setCol(3, 0.1f, 0.2f, 0.3f, 2.0f, 0);
    return m;
}

void product(benchmark::State& state)
{
    tbMatrix a = make(int(state.range(0)));
    tbMatrix b = make(int(state.range(1)));
    tbMatrix m;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(b);
        m.mult(a, b);
        benchmark::DoNotOptimize(m);
    }
    state.SetLabel(std::string(NAMES[state.range(0)]) + " by " + NAMES[state.range(1)]);
}
BENCHMARK(product)->ArgsProduct({benchmark::CreateDenseRange(0, NUM_KINDS - 1, 1),
                                 benchmark::CreateDenseRange(0, NUM_KINDS - 1, 1)});

void inverse(benchmark::State& state)
{
    tbMatrix a = make(int(state.range(0)));
    tbMatrix m;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(a);
        m.invert(a);
        benchmark::DoNotOptimize(m);
    }
    state.SetLabel(NAMES[state.range(0)]);
}
BENCHMARK(inverse)->DenseRange(0, NUM_KINDS - 1);

// As a walk down a branch of a graph does.
void pushedChain(benchmark::State& state)
{
    tbMatrixStack stack(1, tbMatrixStack::UNLIMITED);
    const tbMatrix m = make(AFFINE);
    const int depth = int(state.range(0));
    for (auto _ : state)
    {
        for (int i = 0; i < depth; ++i)
            stack.pushMult(m);
        benchmark::DoNotOptimize(stack.getTop());
        for (int i = 0; i < depth; ++i)
            stack.pop();
    }
    state.SetItemsProcessed(state.iterations() * depth);
}
BENCHMARK(pushedChain)->RangeMultiplier(10)->Range(10, 1000);

void setAngles(benchmark::State& state)
{
    tbMatrix m = make(AFFINE);
    float h = 0.0f;
    for (auto _ : state)
    {
        m.setHPR(h += 1.0f, 20.0f, 10.0f);
        benchmark::DoNotOptimize(m);
    }
}
BENCHMARK(setAngles);

void getAngles(benchmark::State& state)
{
    tbMatrix m = make(AFFINE);
    tbVec3 hpr;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(m);
        m.getHPR(hpr);
        benchmark::DoNotOptimize(hpr);
    }
}
BENCHMARK(getAngles);

void slerp(benchmark::State& state)
{
    const tbQuat from(0, 0, 0, 1);
    const tbQuat to(0, 0.6f, 0, 0.8f);
    tbQuat q;
    float t = 0.0f;
    for (auto _ : state)
    {
        q.slerp(t, from, to);
        t = t < 1.0f ? t + 0.01f : 0.0f;
        benchmark::DoNotOptimize(q);
    }
}
BENCHMARK(slerp);

void points(benchmark::State& state)
{
    std::vector<tbVec3> array(std::size_t(state.range(0)), tbVec3(1, 2, 3));
    const tbMatrix m = make(AFFINE);
    for (auto _ : state)
    {
        for (tbVec3& p : array)
            p.xformPt(p, m);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(points)->RangeMultiplier(10)->Range(1000, 1000000);

void normalise(benchmark::State& state)
{
    tbVec3 v(1, 2, 3);
    for (auto _ : state)
    {
        tbVec3 unit(v);
        benchmark::DoNotOptimize(unit);
        unit.normalize();
        benchmark::DoNotOptimize(unit);
    }
}
BENCHMARK(normalise);

} // namespace
