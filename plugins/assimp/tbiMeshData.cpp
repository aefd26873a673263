#include "tbiMeshData.h"

#include <portable/tbMesh.h>
#include <tamber/render/tbVertexArray.h>

#include "tbiModelError.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <string>

bool tbiIsEmpty(const tbMesh& mesh)
{
    const tbVertexArray* vertices = mesh.getVertexArray();
    return !vertices || vertices->getNum() <= 0 || !vertices->getData() || mesh.getNumPrimitives() <= 0;
}

void tbiCheckIndices(const tbMesh& mesh)
{
    const unsigned int* indices = mesh.getIndices();
    const int count = mesh.getNumIndices();
    const auto numVertices = unsigned(mesh.getVertexArray()->getNum());
    const unsigned int* beyond =
        std::find_if(indices, indices + count, [=](unsigned int i) { return i >= numVertices; });
    if (beyond != indices + count)
        throw tbiModelError("the mesh \"" + std::string(mesh.getName() ? mesh.getName() : "") +
                            "\" has the index " + std::to_string(*beyond) + " and " +
                            std::to_string(numVertices) + " vertices");
}

std::vector<unsigned> tbiCornersOf(const tbMesh& mesh)
{
    if (tbiIsEmpty(mesh))
        return {};
    tbiCheckIndices(mesh);
    std::vector<unsigned> corners(std::size_t(mesh.getNumPrimitives()) *
                                  std::size_t(tbMesh::verticesOf(mesh.getPrimitive())));
    if (mesh.getNumIndices() > 0)
        std::copy_n(mesh.getIndices(), corners.size(), corners.begin());
    else
        std::iota(corners.begin(), corners.end(), 0u);
    return corners;
}

tbVec3 tbiVectorAt(const tbVertexArray& vertices, int offset, unsigned vertex)
{
    float v[3];
    const auto* data = static_cast<const unsigned char*>(vertices.getData());
    std::memcpy(v, data + std::size_t(vertex) * std::size_t(vertices.getVertexSize()) + offset, sizeof v);
    return tbVec3(v[0], v[1], v[2]);
}
