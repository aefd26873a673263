#include "tbiMeshTree.h"

#include <tamber/render/tbVertexArray.h>

#include "tbMesh.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

void tbiMeshTree::Box::extend(const float* point)
{
    for (int axis = 0; axis < 3; ++axis)
    {
        min[axis] = std::min(min[axis], point[axis]);
        max[axis] = std::max(max[axis], point[axis]);
    }
}

void tbiMeshTree::Box::extend(const Box& other)
{
    for (int axis = 0; axis < 3; ++axis)
    {
        if (!(other.min[axis] <= other.max[axis]))
            continue; // of a primitive without numbers
        min[axis] = std::min(min[axis], other.min[axis]);
        max[axis] = std::max(max[axis], other.max[axis]);
    }
}

// Boxes are widened by what rounding does to coordinates, so that a ray that ends on a primitive finds it.
tbiMeshTree::Slabs::Slabs(const Query& query, float boxMargin, const Box& whole) : margin(boxMargin)
{
    constexpr float ROUNDING = 4.0e-7f;
    float largest = 0.0f;
    for (int axis = 0; axis < 3; ++axis)
    {
        origin[axis] = query.origin[axis];
        inverse[axis] = 1.0f / query.direction[axis];
        for (const float coordinate : {origin[axis], whole.min[axis], whole.max[axis]})
            if (std::isfinite(coordinate))
                largest = std::max(largest, std::fabs(coordinate));
    }
    margin += largest * ROUNDING;
}

// Comparisons are written so that what is no number neither enters nor leaves a slab: a direction of 0 along an axis
// asks whether the origin lies between the planes.
float tbiMeshTree::Slabs::enter(const Box& box, float limit) const
{
    float begin = 0.0f;
    float end = limit;
    for (int axis = 0; axis < 3; ++axis)
    {
        const float low = box.min[axis] - margin;
        const float high = box.max[axis] + margin;
        if (std::isinf(inverse[axis]))
        {
            if (!(origin[axis] >= low && origin[axis] <= high))
                return std::numeric_limits<float>::infinity();
            continue;
        }
        float first = (low - origin[axis]) * inverse[axis];
        float second = (high - origin[axis]) * inverse[axis];
        if (first > second)
            std::swap(first, second);
        begin = std::max(begin, first);
        end = std::min(end, second * 1.0000004f); // rounding must not lose a box that the ray grazes
    }
    return begin <= end ? begin : std::numeric_limits<float>::infinity();
}

const tbiMeshTree* tbiMeshTree::make(const tbMesh& mesh)
{
    auto* tree = new tbiMeshTree;
    if (tree && tbTryAllocate([&] { tree->build(mesh); }))
        return tree;
    delete tree;
    return nullptr;
}

void tbiMeshTree::build(const tbMesh& mesh)
{
    const tbVertexArray* vertices = mesh.getVertexArray();
    const int n = mesh.getNumPrimitives();
    if (!vertices || n == 0)
        return;
    std::vector<Box, tbAllocator<Box>> boxes(static_cast<std::size_t>(n));
    const auto* data = static_cast<const unsigned char*>(vertices->getData());
    const auto stride = std::size_t(vertices->getVertexSize());
    const unsigned* indices = mesh.getIndices();
    const int perPrimitive = tbMesh::verticesOf(mesh.getPrimitive());
    for (int i = 0; i < n; ++i)
    {
        for (int corner = 0; corner < perPrimitive; ++corner)
        {
            const auto slot = unsigned(i * perPrimitive + corner);
            float point[3];
            std::memcpy(point, data + std::size_t(indices ? indices[slot] : slot) * stride, sizeof point);
            boxes[std::size_t(i)].extend(point);
        }
    }
    build(boxes);
}

void tbiMeshTree::build(const std::vector<Box, tbAllocator<Box>>& boxes)
{
    order.resize(boxes.size());
    std::iota(order.begin(), order.end(), 0);
    nodes.reserve(boxes.size());
    nodes.emplace_back();
    split(0, 0, int(boxes.size()), boxes);
}

// Halves the primitives at the middle one along the longest side of what their centres span. Ends after as many
// levels as the number of primitives has bits.
void tbiMeshTree::split(int node, int begin, int end, const std::vector<Box, tbAllocator<Box>>& boxes)
{
    const auto center = [&boxes](int primitive, int axis)
    {
        const Box& box = boxes[std::size_t(primitive)];
        const float middle = box.min[axis] * 0.5f + box.max[axis] * 0.5f;
        return std::isfinite(middle) ? middle : 0.0f;
    };
    Box bounds;
    Box centers;
    for (int i = begin; i < end; ++i)
    {
        const int primitive = order[std::size_t(i)];
        bounds.extend(boxes[std::size_t(primitive)]);
        const float middle[3] = {center(primitive, 0), center(primitive, 1), center(primitive, 2)};
        centers.extend(middle);
    }
    nodes[std::size_t(node)].box = bounds;
    if (end - begin <= LEAF_SIZE)
    {
        nodes[std::size_t(node)].first = begin;
        nodes[std::size_t(node)].count = end - begin;
        return;
    }
    int axis = 0;
    for (int other = 1; other < 3; ++other)
        if (centers.max[other] - centers.min[other] > centers.max[axis] - centers.min[axis])
            axis = other;
    const int middle = begin + (end - begin) / 2;
    std::nth_element(order.begin() + begin, order.begin() + middle, order.begin() + end,
                     [&](int a, int b) { return center(a, axis) < center(b, axis); });
    const int children = int(nodes.size());
    nodes[std::size_t(node)].first = children;
    nodes.emplace_back();
    nodes.emplace_back();
    split(children, begin, middle, boxes);
    split(children + 1, middle, end, boxes);
}
