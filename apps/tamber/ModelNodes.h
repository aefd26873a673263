#pragma once

#include <tamber/graph/tbGroup.h>
#include <tamber/volume/tbSphere.h>

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class tbGeometry;

// What is told of a model's nodes, however deep they lie and at however many places.

/// What lies below a node and with it, once for each path.
struct ModelSum
{
    std::uint64_t nodes = 1;
    std::uint64_t primitives = 0;
    std::uint64_t triangles = 0; // of the primitives
};

/// Visits a graph from the root down without recursion. `enter(node, depth)` says whether to go below the node;
/// `leave(node)` follows when all below it was visited.
template <class Enter, class Leave>
void walkModel(tbGroup& root, Enter enter, Leave leave)
{
    struct Step
    {
        tbGroup* node;
        int nextChild;
    };
    std::vector<Step> steps;
    if (enter(root, 0))
        steps.push_back({&root, 0});
    while (!steps.empty())
    {
        Step& step = steps.back();
        if (step.nextChild == step.node->getNumChildren())
        {
            leave(*step.node);
            steps.pop_back();
            continue;
        }
        tbGroup& child = *step.node->getChildren()[std::size_t(step.nextChild++)];
        if (enter(child, int(steps.size())))
            steps.push_back({&child, 0});
    }
}

// A model whose bounds are up to date, with its sums. Lives no longer than the root.
class ModelNodes
{
public:
    explicit ModelNodes(tbGroup& modelRoot);
    ModelNodes(const ModelNodes&) = delete;
    ModelNodes& operator=(const ModelNodes&) = delete;

    tbGroup& getRoot() const { return root; }
    const ModelSum& getSum(const tbGroup& node) const { return sums.at(&node); }
    const ModelSum& getSum() const { return getSum(root); }
    std::size_t getNumNodes() const { return sums.size(); }
    int getNumLevels() const { return levels; }
    /// Of nodes, vertices and indices; what is shared counts once.
    std::size_t getBytes() const { return bytes; }
    const tbSphere& getSphere() const { return sphere; }
    /// Nodes by class.
    const std::map<std::string, int>& getClasses() const { return classes; }

private:
    bool count(tbGroup& node, int level);
    void countData(const tbGeometry& geometry);
    void addData(const void* data, std::size_t size);
    void addUp(tbGroup& node);

    tbGroup& root;
    tbSphere sphere;
    int levels = 0;
    std::size_t bytes = 0;
    std::map<std::string, int> classes;
    std::unordered_map<const tbGroup*, ModelSum> sums;
    std::unordered_set<const void*> counted; // data
};

// What is told of one node.
struct ModelNode
{
    ModelNode(tbGroup& node, const ModelNodes& model);

    std::string type;
    std::string name;
    std::vector<std::string> flags;
    std::vector<std::string> traits; // their classes
    ModelSum sum;
    std::size_t bytes; // of the node and what it draws
    int numParents;
    int numChildren;
    tbSphere sphere; // in the node's own coordinates, empty where it is not known

private:
    void takeFlags(const tbGroup& node);
    void takeTraits(const tbGroup& node);
    void takeBounds(tbGroup& node);
};
