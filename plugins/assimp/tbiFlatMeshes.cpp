#include "tbiFlatMeshes.h"

#include <portable/tbMesh.h>
#include <tamber/containers/tbTArray.h>
#include <tamber/math/tbUByteVec4.h>
#include <tamber/math/tbVec2.h>
#include <tamber/render/tbVertexArray.h>

#include "tbiExportScene.h"
#include "tbiMeshData.h"
#include "tbiModelError.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace
{
constexpr std::size_t LARGEST = std::size_t(1) << 30;

template <class Value>
void append(std::string& bytes, const Value& value)
{
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

void append(std::string& bytes, const tbVec3& vector)
{
    for (int i = 0; i < 3; ++i)
        append(bytes, vector[i]);
}

/// True when triangles change sides.
bool isMirrored(const tbMatrix& m)
{
    return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
               m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
               m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]) <
           0.0f;
}

tbVec3 unit(const tbVec3& v)
{
    const float length = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
    return length > 0.0f ? tbVec3(v[0] / length, v[1] / length, v[2] / length) : tbVec3(0, 0, 0);
}

tbVec3 facing(const tbVec3& a, const tbVec3& b, const tbVec3& c)
{
    const tbVec3 u(b[0] - a[0], b[1] - a[1], b[2] - a[2]);
    const tbVec3 v(c[0] - a[0], c[1] - a[1], c[2] - a[2]);
    return unit(tbVec3(u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]));
}

/// What carries normals along with `placement`: the transposed inverse of its linear part, up to a factor.
tbVec3 turnNormal(const tbVec3& n, const tbMatrix& m)
{
    tbVec3 turned;
    for (int i = 0; i < 3; ++i)
    {
        const int a = (i + 1) % 3;
        const int b = (i + 2) % 3;
        turned[i] = 0.0f;
        for (int j = 0; j < 3; ++j)
            turned[i] +=
                n[j] * (m[(j + 1) % 3][a] * m[(j + 2) % 3][b] - m[(j + 1) % 3][b] * m[(j + 2) % 3][a]);
    }
    const float sign = isMirrored(m) ? -1.0f : 1.0f;
    return unit(tbVec3(turned[0] * sign, turned[1] * sign, turned[2] * sign));
}

void checkSize(std::size_t count, std::size_t size)
{
    if (count > LARGEST / size)
        throw tbiModelError("the file would be larger than 1 GiB");
}

std::vector<unsigned> orderedCorners(const tbiInstance& instance)
{
    std::vector<unsigned> corners = tbiCornersOf(*instance.mesh);
    if (instance.mesh->getPrimitive() == tbMesh::TRIANGLES && isMirrored(instance.placement))
        for (std::size_t i = 0; i + 2 < corners.size(); i += 3)
            std::swap(corners[i + 1], corners[i + 2]);
    return corners;
}

tbVec3 placed(const tbiInstance& instance, unsigned vertex)
{
    tbVec3 point;
    point.xformPt(tbiVectorAt(*instance.mesh->getVertexArray(), 0, vertex), instance.placement);
    return point;
}

void flatten(const tbiExportScene& scene, int index, const tbMatrix& above, std::vector<tbiInstance>& out)
{
    const tbiExportNode& node = scene.nodes[std::size_t(index)];
    const tbMatrix placement = tbiExportScene::placementOf(node) * above;
    for (const int mesh : node.meshes)
        if (!tbiIsEmpty(*scene.meshes[std::size_t(mesh)].mesh))
            out.push_back({scene.meshes[std::size_t(mesh)].mesh, placement});
    for (const int child : scene.childrenOf(index))
        flatten(scene, child, placement, out);
}

// What a PLY file says of each vertex.
struct PlyLayout
{
    bool hasNormals = true;
    bool hasColors = true;
    bool hasTexCoords = true;

    explicit PlyLayout(const std::vector<tbiInstance>& instances)
    {
        for (const tbiInstance& instance : instances)
        {
            const tbVertexArray& vertices = *instance.mesh->getVertexArray();
            hasNormals = hasNormals && vertices.getOffset(tbVertexArray::VT_NORMAL) >= 0;
            hasColors = hasColors && vertices.getOffset(tbVertexArray::VT_COLOR) >= 0;
            hasTexCoords = hasTexCoords && vertices.getNumTexCoordSets() > 0;
        }
    }

    std::size_t size() const
    {
        return 12u + (hasNormals ? 12u : 0u) + (hasColors ? 4u : 0u) + (hasTexCoords ? 8u : 0u);
    }

    std::string header(std::size_t numVertices) const
    {
        std::string text = "element vertex " + std::to_string(numVertices) + "\n";
        const auto add = [&text](const char* type, std::initializer_list<const char*> names)
        {
            for (const char* name : names)
                text += std::string("property ") + type + " " + name + "\n";
        };
        add("float", {"x", "y", "z"});
        if (hasNormals)
            add("float", {"nx", "ny", "nz"});
        if (hasColors)
            add("uchar", {"red", "green", "blue", "alpha"});
        if (hasTexCoords)
            add("float", {"s", "t"});
        return text;
    }

    void appendVertices(std::string& bytes, const tbiInstance& instance) const
    {
        const tbVertexArray& vertices = *instance.mesh->getVertexArray();
        const int normal = vertices.getOffset(tbVertexArray::VT_NORMAL);
        tbTArray<tbUByteVec4> colors;
        tbTArray<tbVec2> texCoords;
        vertices.getColors(colors);
        vertices.getTexCoords(texCoords);
        for (int i = 0; i < vertices.getNum(); ++i)
        {
            append(bytes, placed(instance, unsigned(i)));
            if (hasNormals)
                append(bytes, turnNormal(tbiVectorAt(vertices, normal, unsigned(i)), instance.placement));
            for (int part = 0; hasColors && part < 4; ++part)
                bytes += char(colors[i][part]);
            for (int part = 0; hasTexCoords && part < 2; ++part)
                append(bytes, texCoords[i][part]);
        }
    }
};
} // namespace

std::vector<tbiInstance> tbiFlatten(const tbiExportScene& scene)
{
    std::vector<tbiInstance> instances;
    flatten(scene, 0, tbMatrix::identity(), instances);
    return instances;
}

std::string tbiWriteStl(const tbiExportScene& scene)
{
    constexpr std::size_t HEADER_SIZE = 80;
    constexpr std::size_t FACET_SIZE = 50;
    const std::vector<tbiInstance> instances = tbiFlatten(scene);
    std::size_t count = 0;
    for (const tbiInstance& instance : instances)
        if (instance.mesh->getPrimitive() == tbMesh::TRIANGLES)
            count += std::size_t(instance.mesh->getNumPrimitives());
    if (count == 0)
        throw tbiModelError("there are no triangles, and STL files hold nothing else");
    checkSize(count, FACET_SIZE);
    std::string bytes = "binary, Z up";
    bytes.resize(HEADER_SIZE, ' ');
    append(bytes, std::uint32_t(count));
    for (const tbiInstance& instance : instances)
    {
        if (instance.mesh->getPrimitive() != tbMesh::TRIANGLES)
            continue;
        const std::vector<unsigned> corners = orderedCorners(instance);
        for (std::size_t i = 0; i + 2 < corners.size(); i += 3)
        {
            const tbVec3 a = placed(instance, corners[i]);
            const tbVec3 b = placed(instance, corners[i + 1]);
            const tbVec3 c = placed(instance, corners[i + 2]);
            for (const tbVec3& vector : {facing(a, b, c), a, b, c})
                append(bytes, vector);
            append(bytes, std::uint16_t(0));
        }
    }
    return bytes;
}

std::string tbiWritePly(const tbiExportScene& scene)
{
    const std::vector<tbiInstance> instances = tbiFlatten(scene);
    if (instances.empty())
        throw tbiModelError("there is nothing to draw");
    const PlyLayout layout(instances);
    std::size_t numVertices = 0;
    std::size_t numFaces = 0;
    std::size_t numEdges = 0;
    for (const tbiInstance& instance : instances)
    {
        const auto count = std::size_t(instance.mesh->getNumPrimitives());
        numVertices += std::size_t(instance.mesh->getVertexArray()->getNum());
        numFaces += instance.mesh->getPrimitive() == tbMesh::TRIANGLES ? count : 0;
        numEdges += instance.mesh->getPrimitive() == tbMesh::LINES ? count : 0;
    }
    checkSize(numVertices + numFaces + numEdges, layout.size());
    std::string faces;
    std::string edges;
    std::string bytes = "ply\nformat binary_little_endian 1.0\n" + layout.header(numVertices);
    if (numFaces > 0)
        bytes += "element face " + std::to_string(numFaces) + "\nproperty list uchar uint vertex_indices\n";
    if (numEdges > 0)
        bytes +=
            "element edge " + std::to_string(numEdges) + "\nproperty uint vertex1\nproperty uint vertex2\n";
    bytes += "end_header\n";
    std::uint32_t base = 0;
    for (const tbiInstance& instance : instances)
    {
        layout.appendVertices(bytes, instance);
        const auto size = std::size_t(tbMesh::verticesOf(instance.mesh->getPrimitive()));
        std::string& target = size == 3 ? faces : edges;
        const std::vector<unsigned> corners = size > 1 ? orderedCorners(instance) : std::vector<unsigned>();
        for (std::size_t i = 0; i < corners.size(); ++i)
        {
            if (size == 3 && i % 3 == 0)
                target += char(3);
            append(target, std::uint32_t(base + corners[i]));
        }
        base += std::uint32_t(instance.mesh->getVertexArray()->getNum());
    }
    return bytes + faces + edges;
}
