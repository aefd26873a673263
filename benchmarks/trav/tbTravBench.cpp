// What every walk pays per node: the path, the matrices, the trait stack, and a generic walk as a whole.
#include <tamber/graph/tbGroup.h>
#include <tamber/trav/tbCull.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbTravPath.h>
#include <tamber/trav/tbTraverser.h>

#include <benchmark/benchmark.h>

namespace
{
void resetOfContext(benchmark::State& state)
{
    tbRef<tbTravContext> context(new tbTravContext);
    if (state.range(0) != 0)
        context->setTraitStack(new tbTraitStack);
    for (auto _ : state)
        context->reset();
}
BENCHMARK(resetOfContext)->ArgName("traits")->Arg(0)->Arg(1);

void pushAndPopGroup(benchmark::State& state)
{
    tbRef<tbTravContext> context(new tbTravContext);
    tbRef<tbGroup> group(new tbGroup);
    for (auto _ : state)
    {
        context->pushGroup(group.get());
        benchmark::DoNotOptimize(context->popGroup());
    }
}
BENCHMARK(pushAndPopGroup);

void pushAndPopMatrix(benchmark::State& state)
{
    tbRef<tbTravContext> context(new tbTravContext);
    tbMatrix moved;
    moved.makeXYZ(1.0f, 2.0f, 3.0f);
    for (auto _ : state)
    {
        context->pushMultMatrix(moved);
        benchmark::DoNotOptimize(context->getMatrix());
        context->popMatrix();
    }
}
BENCHMARK(pushAndPopMatrix);

void pushAndPopTrait(benchmark::State& state)
{
    tbRef<tbTravContext> context(new tbTravContext);
    context->setTraitStack(new tbTraitStack);
    tbRef<tbCull> trait(new tbCull);
    for (auto _ : state)
    {
        context->getTraitStack()->pushTrait(trait.get(), context.get());
        context->getTraitStack()->popTrait(trait.get(), context.get());
    }
}
BENCHMARK(pushAndPopTrait);

void storeAndComparePath(benchmark::State& state)
{
    tbTravStack stack(8);
    tbRef<tbGroup> groups[16];
    for (auto& group : groups)
    {
        group = new tbGroup;
        stack.push(group.get());
    }
    tbTravPath path;
    for (auto _ : state)
    {
        path = stack;
        benchmark::DoNotOptimize(path == stack);
    }
}
BENCHMARK(storeAndComparePath);

tbGroup* makeTree(int width, int depth)
{
    tbGroup* node = new tbGroup;
    for (int i = 0; depth > 0 && i < width; ++i)
        node->addChild(makeTree(width, depth - 1));
    return node;
}

void traverseTree(benchmark::State& state)
{
    tbRef<tbGroup> root(makeTree(10, 4));
    tbRef<tbTraverser> traverser(new tbTraverser);
    traverser->setTravContext(new tbTravContext);
    for (auto _ : state)
        traverser->traverse(root.get());
    state.SetItemsProcessed(state.iterations() * 11'111);
}
BENCHMARK(traverseTree);
} // namespace
