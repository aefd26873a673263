// One edit after another on real nodes and on the plain model, chosen by whoever plays them.
#pragma once

#include <tamber/trav/tbTravContext.h>
#include <tests/graph/GraphModel.h>

#include <functional>
#include <string>

namespace tbtest
{
inline GraphPair makeNodes(int num)
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

/// Whether the lists hold the same nodes in the same order.
inline bool matches(const GraphPair& graphs, std::span<tbGroup* const> real, const ModelNode::List& model)
{
    return std::equal(real.begin(), real.end(), model.begin(), model.end(),
                      [&](const tbGroup* node, const ModelNode* same)
                      { return graphs.real[std::size_t(graphs.indexOf(same))] == node; });
}

/// The first thing in which a node is not as the model says; the empty text when there is none.
inline std::string difference(const GraphPair& graphs)
{
    for (std::size_t i = 0; i < graphs.real.size(); ++i)
    {
        const tbGroup& real = *graphs.real[i];
        const ModelNode& model = *graphs.model[i];
        const std::string who = " of " + std::to_string(i);
        if (!matches(graphs, real.getChildren(), model.children))
            return "children" + who;
        if (!matches(graphs, real.getParents(), model.parents))
            return "parents" + who;
        if (real.getTravFlags() != model.flags)
            return "flags" + who;
        if (real.getRefCount() != 1 + int(model.parents.size()))
            return "references" + who;
        bool holdsTransform = false; // the node itself counts
        for (std::size_t k = 0; k < graphs.real.size(); ++k)
        {
            const int index = ModelNode::indexOf(model.children, graphs.model[k].get());
            if (real.getChildIndex(graphs.real[k].get()) != index ||
                graphs.real[k]->hasParent(&real) != (index >= 0))
                return "index of " + std::to_string(k) + " among the children" + who;
            const bool reached = model.reaches(graphs.model[k].get());
            if (real.hasDescendant(graphs.real[k].get()) != (k != i && reached))
                return "descendant " + std::to_string(k) + who;
            holdsTransform = holdsTransform || (reached && graphs.model[k]->transform);
        }
        if (real.hasDescendantOfType(tbTransform::getClassType()) != holdsTransform)
            return "descendants of a type" + who;
    }
    return {};
}

class GraphEdits
{
public:
    /// `choose` returns numbers from 0 to its argument - 1.
    GraphEdits(GraphPair& pair, std::function<std::size_t(std::size_t)> choose)
        : graphs(pair),
          below(std::move(choose))
    {
    }

    /// One edit that closes no cycle, or none; false when node and model answer differently.
    bool step()
    {
        const std::size_t i = below(graphs.real.size());
        const std::size_t k = below(graphs.real.size());
        a = graphs.real[i].get();
        b = graphs.real[k].get();
        ma = graphs.model[i].get();
        mb = graphs.model[k].get();
        switch (below(14))
        {
        case 4:
        case 5:
            return mb->reaches(ma) || insert(int(below(ma->children.size() + 2)));
        case 6:
            return a->removeChild(b) == ma->removeChild(mb);
        case 7:
            a->detach();
            ma->detach();
            return true;
        case 8:
            a->remove();
            ma->remove();
            return true;
        case 9:
            return !noCycle(ma->children, {mb}) || !noCycle({mb}, ma->parents) ||
                   a->replace(b) == ma->replace(mb);
        case 10:
            return !noCycle({mb}, ma->parents) || a->replaceGraph(b) == ma->replaceGraph(mb);
        case 11:
            return !noCycle(ma->children, {mb}) || (ma != mb && mb->reaches(ma)) ||
                   a->insertBelow(b) == ma->insertBelow(mb);
        case 12:
            return (ma != mb && ma->reaches(mb)) || !noCycle({mb}, ma->parents) ||
                   a->insertAbove(b) == ma->insertAbove(mb);
        case 13:
            change();
            return true;
        default:
            return (mb->reaches(ma) && ma != mb) || a->addChild(b) == ma->addChild(mb);
        }
    }

private:
    bool insert(int at) { return a->insertChild(at, b) == ma->insertChild(at, mb); }
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
    // Edges from the second list's nodes to the first's would close no cycle.
    static bool noCycle(const ModelNode::List& lower, const ModelNode::List& upper)
    {
        for (const ModelNode* from : lower)
            for (const ModelNode* to : upper)
                if (from != to && from->reaches(to))
                    return false;
        return true;
    }

    GraphPair& graphs;
    std::function<std::size_t(std::size_t)> below;
    tbGroup* a = nullptr;
    tbGroup* b = nullptr;
    ModelNode* ma = nullptr;
    ModelNode* mb = nullptr;
};
} // namespace tbtest
