// Random edits on real nodes and on the plain model.
#include <tamber/trav/tbTravContext.h>
#include <tests/graph/GraphModel.h>

#include <gtest/gtest.h>

#include <random>

using tbtest::ContentNode;
using tbtest::GraphPair;
using tbtest::ModelNode;

namespace
{

std::string describe(const GraphPair& graphs, const std::vector<ModelNode*>& list)
{
    std::string text;
    for (const ModelNode* node : list)
        text += std::to_string(graphs.indexOf(node)) + ' ';
    return text;
}

std::string describe(const GraphPair& graphs, std::span<tbGroup* const> list)
{
    std::string text;
    for (const tbGroup* node : list)
        for (std::size_t i = 0; i < graphs.real.size(); ++i)
            if (graphs.real[i] == node)
                text += std::to_string(i) + ' ';
    return text;
}

void expectSame(const GraphPair& graphs)
{
    for (std::size_t i = 0; i < graphs.real.size(); ++i)
    {
        const tbGroup& real = *graphs.real[i];
        const ModelNode& model = *graphs.model[i];
        ASSERT_EQ(describe(graphs, real.getChildren()), describe(graphs, model.children))
            << "children of " << i;
        ASSERT_EQ(describe(graphs, real.getParents()), describe(graphs, model.parents)) << "parents of " << i;
        ASSERT_EQ(real.getTravFlags(), model.flags) << "flags of " << i;
        ASSERT_EQ(real.getRefCount(), 1 + int(model.parents.size())) << "references on " << i;
        for (std::size_t k = 0; k < graphs.real.size(); ++k)
        {
            const int index = ModelNode::indexOf(model.children, graphs.model[k].get());
            ASSERT_EQ(real.getChildIndex(graphs.real[k].get()), index);
            ASSERT_EQ(graphs.real[k]->hasParent(&real), index >= 0);
        }
    }
}

GraphPair makeNodes(int num)
{
    GraphPair graphs;
    for (int i = 0; i < num; ++i)
    {
        const unsigned own = i % 3 == 0 ? 0x200u << (i / 3 % 5) : 0u;
        if (own != 0)
            graphs.add(new ContentNode(own), own, false);
        else if (i % 3 == 1)
            graphs.add(new tbTransform, 0, true);
        else
            graphs.add(new tbGroup, 0, false);
    }
    return graphs;
}

class RandomEdits
{
public:
    RandomEdits(GraphPair& pair, unsigned seed) : graphs(pair), random(seed) {}

    void step()
    {
        const std::size_t i = pick();
        const std::size_t k = pick();
        a = graphs.real[i].get();
        b = graphs.real[k].get();
        ma = graphs.model[i].get();
        mb = graphs.model[k].get();
        switch (random() % 14)
        {
        case 0:
        case 1:
        case 2:
        case 3:
            if (!mb->reaches(ma) || ma == mb)
            {
                EXPECT_EQ(a->addChild(b), ma->addChild(mb));
            }
            break;
        case 4:
        case 5:
            if (!mb->reaches(ma))
                insert();
            break;
        case 6:
            EXPECT_EQ(a->removeChild(b), ma->removeChild(mb));
            break;
        case 7:
            a->detach();
            ma->detach();
            break;
        case 8:
            a->remove();
            ma->remove();
            break;
        case 9:
            if (noCycle(ma->children, mb) && noCycle(mb, ma->parents))
            {
                EXPECT_EQ(a->replace(b), ma->replace(mb));
            }
            break;
        case 10:
            if (noCycle(mb, ma->parents))
            {
                EXPECT_EQ(a->replaceGraph(b), ma->replaceGraph(mb));
            }
            break;
        case 11:
            if (noCycle(ma->children, mb) && (ma == mb || !mb->reaches(ma)))
            {
                EXPECT_EQ(a->insertBelow(b), ma->insertBelow(mb));
            }
            break;
        case 12:
            if ((ma == mb || !ma->reaches(mb)) && noCycle(mb, ma->parents))
            {
                EXPECT_EQ(a->insertAbove(b), ma->insertAbove(mb));
            }
            break;
        default:
            change();
        }
    }

private:
    std::size_t pick() { return random() % graphs.real.size(); }
    void insert()
    {
        const int at = int(random() % (ma->children.size() + 2));
        EXPECT_EQ(a->insertChild(at, b), ma->insertChild(at, mb));
    }
    void change()
    {
        if (ma->transform)
        {
            static_cast<tbTransform*>(a)->setXYZ(1, 2, 3);
            ma->changeMatrix();
        }
        const tbRef<tbTravContext> context(new tbTravContext);
        b->update(context.get());
        mb->update();
    }
    // Edges from the first to the second would close no cycle.
    static bool noCycle(const ModelNode* from, const std::vector<ModelNode*>& to)
    {
        return std::none_of(to.begin(), to.end(),
                            [=](const ModelNode* node) { return node != from && from->reaches(node); });
    }
    static bool noCycle(const std::vector<ModelNode*>& from, const ModelNode* to)
    {
        return std::none_of(from.begin(), from.end(),
                            [=](const ModelNode* node) { return node != to && node->reaches(to); });
    }

    GraphPair& graphs;
    std::mt19937 random;
    tbGroup* a = nullptr;
    tbGroup* b = nullptr;
    ModelNode* ma = nullptr;
    ModelNode* mb = nullptr;
};

} // namespace

TEST(GroupModel, RandomEditsGiveTheListsFlagsAndCountsOfThePlainRules)
{
    for (unsigned seed = 1; seed <= 12; ++seed)
    {
        GraphPair graphs = makeNodes(16);
        RandomEdits edits(graphs, seed);
        for (int i = 0; i < 800; ++i)
        {
            edits.step();
            ASSERT_NO_FATAL_FAILURE(expectSame(graphs)) << "seed " << seed << " step " << i;
            ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed << " step " << i;
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
        tbGroup* parent = graphs.real[p].get();
        tbGroup* child = graphs.real[c].get();
        ModelNode* modelParent = graphs.model[p].get();
        ModelNode* modelChild = graphs.model[c].get();
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
            ASSERT_EQ(describe(graphs, graphs.real[i]->getChildren()),
                      describe(graphs, graphs.model[i]->children));
            ASSERT_EQ(describe(graphs, graphs.real[i]->getParents()),
                      describe(graphs, graphs.model[i]->parents));
        }
    }
    for (int p = 0; p < NUM_PARENTS; ++p)
        graphs.real[std::size_t(p)]->removeChildren();
}
