#pragma once

#include <tamber/kernel/tbAllocator.h>
#include <tamber/math/tbVec3.h>

#include <limits>
#include <vector>

class tbMesh;

// A bounding-volume tree over the primitives of a mesh, so that a ray looks at those near its way only. The mesh drops
// it when its vertices or indices change.
class tbiMeshTree : public tbAllocated<tbiMeshTree>
{
public:
    /// One ray in the mesh's coordinates. Distances are in units of the direction, which need not be of length 1.
    struct Query
    {
        tbVec3 origin;
        tbVec3 direction;
        float maxDistance; // shortened by `visit` to look no farther than a hit
    };

    /// Null when memory is out.
    static const tbiMeshTree* make(const tbMesh& mesh);

    /// Calls visit(primitive) for every primitive whose box, widened by `margin` on every side, meets the ray between
    /// 0 and the query's maximum distance, boxes near the origin first. Nothing is allocated.
    template <class Visit>
    void visit(const Query& query, float margin, Visit visit) const;

private:
    struct Box
    {
        float min[3] = {std::numeric_limits<float>::max(), std::numeric_limits<float>::max(),
                        std::numeric_limits<float>::max()};
        float max[3] = {-std::numeric_limits<float>::max(), -std::numeric_limits<float>::max(),
                        -std::numeric_limits<float>::max()};

        void extend(const float* point);
        void extend(const Box& other);
    };

    // The children of an inner node stand at `first` and `first` + 1, a leaf's primitives in `order` from `first`.
    struct Node
    {
        Box box;
        int first = 0;
        int count = 0; // of a leaf's primitives, 0 for an inner node
    };

    // The deepest tree that `visit` can walk; the halving of the primitives keeps trees below it.
    static constexpr int MAX_DEPTH = 64;
    static constexpr int LEAF_SIZE = 4;

    // Where a ray enters a box, beyond `limit` when it misses.
    class Slabs
    {
    public:
        /// `whole` is the box of the root.
        Slabs(const Query& query, float margin, const Box& whole);
        float enter(const Box& box, float limit) const;

    private:
        float origin[3];
        float inverse[3];
        float margin;
    };

    void build(const tbMesh& mesh);
    void build(const std::vector<Box, tbAllocator<Box>>& boxes);
    void split(int node, int begin, int end, const std::vector<Box, tbAllocator<Box>>& boxes);

    std::vector<Node, tbAllocator<Node>> nodes;
    std::vector<int, tbAllocator<int>> order;
};

template <class Visit>
void tbiMeshTree::visit(const Query& query, float margin, Visit visit) const
{
    constexpr float MISSED = std::numeric_limits<float>::infinity();
    if (nodes.empty())
        return;
    struct Waiting
    {
        int node;
        float distance;
    };
    Waiting stack[MAX_DEPTH];
    int waiting = 0;
    const Slabs slabs(query, margin, nodes[0].box);
    Waiting now{0, slabs.enter(nodes[0].box, query.maxDistance)};
    if (now.distance == MISSED)
        return;
    for (;;)
    {
        const Node& node = nodes[std::size_t(now.node)];
        bool descended = false;
        if (now.distance <= query.maxDistance)
        {
            if (node.count > 0)
            {
                for (int i = 0; i < node.count; ++i)
                    visit(order[std::size_t(node.first + i)]);
            }
            else
            {
                Waiting near{node.first, slabs.enter(nodes[std::size_t(node.first)].box, query.maxDistance)};
                Waiting far{node.first + 1,
                            slabs.enter(nodes[std::size_t(node.first) + 1].box, query.maxDistance)};
                if (far.distance < near.distance)
                    std::swap(near, far);
                if (far.distance != MISSED)
                    stack[waiting++] = far;
                if (near.distance != MISSED)
                {
                    now = near;
                    descended = true;
                }
            }
        }
        if (descended)
            continue;
        if (waiting == 0)
            return;
        now = stack[--waiting];
    }
}
