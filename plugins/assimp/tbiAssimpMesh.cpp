#include "tbiAssimpMesh.h"

#include <portable/tbMesh.h>
#include <tamber/render/tbVertexArray.h>

#include "tbiModelError.h"

#include <assimp/scene.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

namespace
{
constexpr unsigned TEX_COORD_TYPES[] = {0, tbVertexArray::VT_TEXCOORD0, tbVertexArray::VT_TEXCOORD1,
                                        tbVertexArray::VT_TEXCOORD2, tbVertexArray::VT_TEXCOORD3};
constexpr unsigned MAX_TEX_COORD_SETS = 4;

unsigned layoutOf(const aiMesh& source)
{
    unsigned type = tbVertexArray::VT_POSITION;
    if (source.HasNormals())
        type |= tbVertexArray::VT_NORMAL;
    if (source.HasVertexColors(0))
        type |= unsigned(tbVertexArray::VT_COLOR) | unsigned(tbVertexArray::COLOR_ABGR);
    return type | TEX_COORD_TYPES[std::min(source.GetNumUVChannels(), MAX_TEX_COORD_SETS)];
}

std::uint32_t packColor(const aiColor4D& color)
{
    const auto byte = [](float part)
    { return std::uint32_t((part > 0.0f ? std::min(part, 1.0f) : 0.0f) * 255.0f + 0.5f); };
    return byte(color.a) << 24 | byte(color.b) << 16 | byte(color.g) << 8 | byte(color.r);
}

unsigned char* put(unsigned char* where, const void* bytes, std::size_t size)
{
    std::memcpy(where, bytes, size);
    return where + size;
}

tbRef<tbVertexArray> convertVertices(const aiMesh& source)
{
    if (source.mNumVertices > unsigned(std::numeric_limits<int>::max()))
        throw tbiModelError("a mesh has too many vertices");
    const unsigned type = layoutOf(source);
    tbRef<tbVertexArray> vertices = new tbVertexArray(int(source.mNumVertices), type);
    auto* where = vertices ? static_cast<unsigned char*>(vertices->getData()) : nullptr;
    if (!where)
        throw tbiModelError("there is no memory for the vertices");
    const int sets = vertices->getNumTexCoordSets();
    for (unsigned i = 0; i < source.mNumVertices; ++i)
    {
        where = put(where, &source.mVertices[i], 12);
        if (type & tbVertexArray::VT_NORMAL)
            where = put(where, &source.mNormals[i], 12);
        if (type & tbVertexArray::VT_COLOR)
        {
            const std::uint32_t color = packColor(source.mColors[0][i]);
            where = put(where, &color, sizeof(color));
        }
        for (int set = 0; set < sets; ++set)
            where = put(where, &source.mTextureCoords[set][i], 8);
    }
    return vertices;
}

bool isWhole(const aiFace& face, unsigned numVertices)
{
    return face.mIndices && std::all_of(face.mIndices, face.mIndices + face.mNumIndices,
                                        [numVertices](unsigned index) { return index < numVertices; });
}

/// What most faces are: meshes are split by kind before they come here.
tbMesh::PRIMITIVE primitiveOf(const aiMesh& source)
{
    if (source.mPrimitiveTypes & (aiPrimitiveType_TRIANGLE | aiPrimitiveType_POLYGON))
        return tbMesh::TRIANGLES;
    return source.mPrimitiveTypes & aiPrimitiveType_LINE ? tbMesh::LINES : tbMesh::POINTS;
}

std::vector<unsigned int> convertIndices(const aiMesh& source, tbMesh::PRIMITIVE primitive)
{
    const auto size = unsigned(tbMesh::verticesOf(primitive));
    std::vector<unsigned int> indices;
    indices.reserve(std::size_t(source.mNumFaces) * size);
    for (unsigned i = 0; i < source.mNumFaces; ++i)
    {
        const aiFace& face = source.mFaces[i];
        if (face.mNumIndices == size && isWhole(face, source.mNumVertices))
            indices.insert(indices.end(), face.mIndices, face.mIndices + size);
    }
    if (indices.size() > std::size_t(std::numeric_limits<int>::max()))
        throw tbiModelError("a mesh has too many indices");
    return indices;
}
} // namespace

void tbiCheckFaces(const aiScene& scene)
{
    for (unsigned i = 0; i < scene.mNumMeshes; ++i)
    {
        const aiMesh& mesh = *scene.mMeshes[i];
        if (!std::all_of(mesh.mFaces, mesh.mFaces + mesh.mNumFaces,
                         [&](const aiFace& face) { return isWhole(face, mesh.mNumVertices); }))
            throw tbiModelError("a face names vertices that are not there");
    }
}

tbRef<tbMesh> tbiConvertMesh(const aiMesh& source)
{
    static_assert(sizeof(aiVector3D) == 12, "positions are taken as they lie");
    const tbMesh::PRIMITIVE primitive = primitiveOf(source);
    const std::vector<unsigned int> indices = convertIndices(source, primitive);
    tbRef<tbMesh> mesh = new tbMesh;
    if (source.mName.length > 0)
        mesh->setName(source.mName.C_Str());
    const bool isCloud = source.mNumFaces == 0 && source.mNumVertices > 0;
    if (indices.empty() && !isCloud)
        return mesh;
    const tbRef<tbVertexArray> vertices = convertVertices(source);
    if (!mesh->set(isCloud ? tbMesh::POINTS : primitive, vertices.get(), indices.data(), int(indices.size())))
        throw tbiModelError("there is no memory for the indices");
    return mesh;
}
