// Random edits on real nodes and on the plain model.
#include <tests/graph/GraphEdits.h>

#include <gtest/gtest.h>

#include <random>

using tbtest::GraphPair;
using tbtest::ModelNode;

TEST(GroupModel, RandomEditsGiveTheListsFlagsAndCountsOfThePlainRules)
{
    for (unsigned seed = 1; seed <= 12; ++seed)
    {
        std::mt19937 random(seed);
        GraphPair graphs = tbtest::makeNodes(16);
        tbtest::GraphEdits edits(graphs, [&](std::size_t count) { return random() % count; });
        for (int i = 0; i < 800; ++i)
        {
            ASSERT_TRUE(edits.step()) << "seed " << seed << " step " << i;
            ASSERT_EQ(tbtest::difference(graphs), "") << "seed " << seed << " step " << i;
        }
        for (tbRef<tbGroup>& node : graphs.real)
            node->removeChildren();
    }
}

// Long lists on both ends of the edges: removals leave holes in them, and readers come between edits.
TEST(GroupModel, LongListsKeepTheirOrderThroughRemovalsAndInsertionsAnywhere)
{
    constexpr int NUM_PARENTS = 60;
    constexpr int NUM_CHILDREN = 300;
    GraphPair graphs;
    for (int i = 0; i < NUM_PARENTS + NUM_CHILDREN; ++i)
        graphs.add(new tbGroup, 0, false);
    std::mt19937 random(7);
    const auto playStep = [&](int keep)
    {
        const std::size_t p = random() % NUM_PARENTS;
        const std::size_t c = NUM_PARENTS + random() % NUM_CHILDREN;
        tbGroup *parent = graphs.real[p].get(), *child = graphs.real[c].get();
        ModelNode *modelParent = graphs.model[p].get(), *modelChild = graphs.model[c].get();
        if (int(random() % 100) < keep)
        {
            const int at = int(random() % (modelParent->children.size() + 1));
            ASSERT_EQ(parent->insertChild(at, child), modelParent->insertChild(at, modelChild));
        }
        else if (random() % 40 == 0)
        {
            child->detach();
            modelChild->detach();
        }
        else
            ASSERT_EQ(parent->removeChild(child), modelParent->removeChild(modelChild));
        ASSERT_EQ(parent->getChildIndex(child), ModelNode::indexOf(modelParent->children, modelChild));
    };
    for (const int keep : {90, 50, 10, 70, 5})
    {
        for (int i = 0; i < 8000; ++i)
            ASSERT_NO_FATAL_FAILURE(playStep(keep)) << "step " << i;
        for (std::size_t i = 0; i < graphs.real.size(); ++i)
        {
            const tbGroup& real = *graphs.real[i];
            const ModelNode& model = *graphs.model[i];
            ASSERT_TRUE(tbtest::matches(graphs, real.getChildren(), model.children)) << i;
            ASSERT_TRUE(tbtest::matches(graphs, real.getParents(), model.parents)) << i;
        }
    }
    for (int p = 0; p < NUM_PARENTS; ++p)
        graphs.real[std::size_t(p)]->removeChildren();
}
