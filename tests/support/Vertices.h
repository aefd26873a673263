// Vertex arrays for tests of what is made of points.
#pragma once

#include <tamber/math/tbVec3.h>
#include <tamber/render/tbVertexArray.h>

#include <cstring>
#include <vector>

namespace tbtest
{
/// Positions alone.
inline tbVertexArray* makeVertices(const std::vector<tbVec3>& points)
{
    auto* vertices = new tbVertexArray(int(points.size()), tbVertexArray::VT_POSITION);
    std::memcpy(vertices->getData(), points.data(), points.size() * sizeof(tbVec3));
    return vertices;
}
} // namespace tbtest
