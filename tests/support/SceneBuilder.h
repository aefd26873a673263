// Large graphs of a known shape, for benchmarks and for tests of what they cost.
#pragma once

#include <tests/support/TestGeometry.h>

#include <tamber/graph/tbTransform.h>

#include <vector>

namespace tbtest
{

/// A tree of transforms, eight below each, level by level, and a geometry below every transform that has no other
/// below it.
class SceneBuilder
{
public:
    static constexpr int WIDTH = 8;

    /// Fills the graph below `root` with about `num` nodes.
    SceneBuilder(tbGroup* root, int num)
    {
        const int numTransforms = num * WIDTH / (2 * WIDTH - 1);
        std::vector<tbGroup*> open{root};
        for (std::size_t i = 0; int(transforms.size()) < numTransforms; ++i)
            for (int k = 0; k < WIDTH && int(transforms.size()) < numTransforms; ++k)
                open.push_back(addTransform(open[i], k));
        for (tbTransform* transform : transforms)
            if (transform->getNumChildren() == 0)
                add(transform, new TestGeometry(tbSphere(tbVec3(0, 0, 0), 1)));
    }

    /// Parents before children.
    const std::vector<tbGroup*>& getNodes() const { return nodes; }
    const std::vector<tbTransform*>& getTransforms() const { return transforms; }

private:
    tbTransform* addTransform(tbGroup* parent, int k)
    {
        auto* node = new tbTransform;
        node->setXYZ(float(k) * 4.0f - 14.0f, float(transforms.size() % 16), 1.0f);
        add(parent, node);
        transforms.push_back(node);
        return node;
    }
    void add(tbGroup* parent, tbGroup* node)
    {
        parent->addChild(node);
        nodes.push_back(node);
    }

    std::vector<tbGroup*> nodes;
    std::vector<tbTransform*> transforms;
};

} // namespace tbtest
