// Large graphs of a known shape, for benchmarks and for tests of what they cost.
#pragma once

#include <tests/support/TestGeometry.h>

#include <tamber/graph/tbTransform.h>

#include <vector>

namespace tbtest
{

/// Trees of transforms, eight below each, with one geometry at every leaf.
class SceneBuilder
{
public:
    static constexpr int WIDTH = 8;

    /// Fills the graph below `root` with about `num` nodes, level by level.
    SceneBuilder(tbGroup* root, int num)
    {
        std::vector<tbGroup*> level{root};
        while (int(nodes.size()) < num * WIDTH / (2 * WIDTH - 1))
            level = addLevel(level, num);
        for (tbGroup* node : level)
            add(node, new TestGeometry(tbSphere(tbVec3(0, 0, 0), 1)));
    }

    /// Parents before children.
    const std::vector<tbGroup*>& getNodes() const { return nodes; }
    const std::vector<tbTransform*>& getTransforms() const { return transforms; }

private:
    std::vector<tbGroup*> addLevel(const std::vector<tbGroup*>& above, int num)
    {
        std::vector<tbGroup*> level;
        for (tbGroup* parent : above)
        {
            for (int i = 0; i < WIDTH && int(nodes.size()) < num * WIDTH / (2 * WIDTH - 1); ++i)
            {
                auto* node = new tbTransform;
                node->setXYZ(float(i) * 4.0f - 14.0f, float(level.size() % 16), 1.0f);
                add(parent, node);
                transforms.push_back(node);
                level.push_back(node);
            }
        }
        return level;
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
