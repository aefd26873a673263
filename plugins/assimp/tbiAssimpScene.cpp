#include "tbiAssimpScene.h"

#include <portable/tbBlend.h>
#include <portable/tbFaceCull.h>
#include <portable/tbMaterial.h>
#include <portable/tbMesh.h>
#include <portable/tbTexture.h>
#include <tamber/containers/tbTArray.h>
#include <tamber/graph/tbGroup.h>
#include <tamber/math/tbVec4.h>
#include <tamber/render/tbVertexArray.h>

#include "tbiExportScene.h"
#include "tbiMeshData.h"
#include "tbiModelError.h"

#include <assimp/material.h>
#include <assimp/scene.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <vector>

namespace
{
constexpr std::size_t LONGEST_BASE = MAXLEN - 16; // leaves room for a number

/// Text forms put names in quotes as they are.
aiString textOf(std::string text)
{
    for (char& c : text)
        if (c == '"' || static_cast<unsigned char>(c) < ' ')
            c = '_';
    return aiString(text.substr(0, MAXLEN - 1));
}

aiNode* makeTop(aiNode* below)
{
    auto* top = new aiNode("scene");
    top->mChildren = new aiNode*[1];
    top->mChildren[0] = below;
    top->mNumChildren = 1;
    below->mParent = top;
    return top;
}

aiColor3D colorOf(const tbVec3& color)
{
    return {color[0], color[1], color[2]};
}

int mapModeOf(tbTexture::WRAP wrap)
{
    return wrap == tbTexture::WRAP_CLAMP    ? aiTextureMapMode_Clamp
           : wrap == tbTexture::WRAP_MIRROR ? aiTextureMapMode_Mirror
                                            : aiTextureMapMode_Wrap;
}

void addTexture(aiMaterial& target, const tbTexture& texture, const std::string& image)
{
    const aiString path = textOf(image);
    const int modeU = mapModeOf(texture.getWrapS());
    const int modeV = mapModeOf(texture.getWrapT());
    target.AddProperty(&path, AI_MATKEY_TEXTURE_DIFFUSE(0));
    target.AddProperty(&modeU, 1, AI_MATKEY_MAPPINGMODE_U_DIFFUSE(0));
    target.AddProperty(&modeV, 1, AI_MATKEY_MAPPINGMODE_V_DIFFUSE(0));
}

aiMaterial* makeMaterial(const tbiExportMaterial& source, const std::string& name, const std::string& image)
{
    auto target = std::make_unique<aiMaterial>();
    const aiString text = textOf(name);
    target->AddProperty(&text, AI_MATKEY_NAME);
    if (const tbMaterial* material = source.material)
    {
        const aiColor3D ambient = colorOf(material->getAmbient());
        const aiColor3D diffuse = colorOf(material->getDiffuse());
        const aiColor3D specular = colorOf(material->getSpecular());
        const aiColor3D emissive = colorOf(material->getEmissive());
        const float shininess = material->getShininess();
        const float opacity = material->getOpacity();
        const int model = shininess > 0.0f ? aiShadingMode_Phong : aiShadingMode_Gouraud;
        target->AddProperty(&ambient, 1, AI_MATKEY_COLOR_AMBIENT);
        target->AddProperty(&diffuse, 1, AI_MATKEY_COLOR_DIFFUSE);
        target->AddProperty(&specular, 1, AI_MATKEY_COLOR_SPECULAR);
        target->AddProperty(&emissive, 1, AI_MATKEY_COLOR_EMISSIVE);
        target->AddProperty(&shininess, 1, AI_MATKEY_SHININESS);
        target->AddProperty(&opacity, 1, AI_MATKEY_OPACITY);
        target->AddProperty(&model, 1, AI_MATKEY_SHADING_MODEL);
    }
    if (source.texture && !image.empty())
        addTexture(*target, *source.texture, image);
    const int isTwoSided = !source.cull || source.cull->getFace() == tbFaceCull::CULL_NONE;
    target->AddProperty(&isTwoSided, 1, AI_MATKEY_TWOSIDED);
    return target.release();
}

void copyVectors(const tbVertexArray& from, int offset, aiVector3D*& to)
{
    if (offset < 0)
        return;
    const auto* data = static_cast<const unsigned char*>(from.getData()) + offset;
    to = new aiVector3D[std::size_t(from.getNum())];
    for (int i = 0; i < from.getNum(); ++i)
        std::memcpy(&to[i], data + std::size_t(i) * std::size_t(from.getVertexSize()), 12);
}

void copyVertices(const tbVertexArray& from, aiMesh& to)
{
    const int count = from.getNum();
    to.mNumVertices = unsigned(count);
    copyVectors(from, 0, to.mVertices);
    copyVectors(from, from.getOffset(tbVertexArray::VT_NORMAL), to.mNormals);
    tbTArray<tbVec4> colors;
    if (from.getColors(colors))
    {
        to.mColors[0] = new aiColor4D[std::size_t(count)];
        for (int i = 0; i < count; ++i)
            to.mColors[0][i] = aiColor4D(colors[i][0], colors[i][1], colors[i][2], colors[i][3]);
    }
    const int sets = from.getNumTexCoordSets();
    const int first = from.getVertexSize() - sets * 8;
    const auto* data = static_cast<const unsigned char*>(from.getData());
    for (int set = 0; set < sets; ++set)
    {
        to.mNumUVComponents[set] = 2;
        to.mTextureCoords[set] = new aiVector3D[std::size_t(count)];
        for (int i = 0; i < count; ++i)
            std::memcpy(static_cast<void*>(&to.mTextureCoords[set][i]),
                        data + std::size_t(i) * std::size_t(from.getVertexSize()) + first + set * 8, 8);
    }
}

void copyFaces(const tbMesh& from, aiMesh& to)
{
    constexpr unsigned TYPES[] = {aiPrimitiveType_POINT, aiPrimitiveType_LINE, aiPrimitiveType_TRIANGLE};
    to.mPrimitiveTypes = TYPES[from.getPrimitive()];
    const auto size = unsigned(tbMesh::verticesOf(from.getPrimitive()));
    const std::vector<unsigned> corners = tbiCornersOf(from);
    const auto count = unsigned(corners.size()) / size;
    to.mFaces = new aiFace[count];
    to.mNumFaces = count;
    for (unsigned i = 0; i < count; ++i)
    {
        to.mFaces[i].mIndices = new unsigned[size];
        to.mFaces[i].mNumIndices = size;
        std::copy_n(corners.begin() + std::ptrdiff_t(i) * size, size, to.mFaces[i].mIndices);
    }
}

aiMesh* makeMesh(const tbiExportMesh& source)
{
    auto target = std::make_unique<aiMesh>();
    if (source.mesh->getName())
        target->mName = textOf(source.mesh->getName());
    target->mMaterialIndex = unsigned(source.material);
    copyVertices(*source.mesh->getVertexArray(), *target);
    copyFaces(*source.mesh, *target);
    return target.release();
}

aiMatrix4x4 transposed(const tbMatrix& source)
{
    aiMatrix4x4 target;
    for (unsigned row = 0; row < 4; ++row)
        for (unsigned column = 0; column < 4; ++column)
            target[column][row] = source[int(row)][column];
    return target;
}

class Builder
{
public:
    Builder(const tbiExportScene& from, aiScene& to) : source(from), target(to) {}

    void addMeshes()
    {
        target.mMeshes = new aiMesh*[source.meshes.size()];
        for (const tbiExportMesh& mesh : source.meshes)
        {
            const bool isEmpty = tbiIsEmpty(*mesh.mesh);
            places.push_back(isEmpty ? -1 : int(target.mNumMeshes));
            if (!isEmpty)
                target.mMeshes[target.mNumMeshes++] = makeMesh(mesh);
        }
        if (target.mNumMeshes == 0)
            throw tbiModelError("there is nothing to draw");
    }

    void addMaterials(const std::vector<std::string>& images)
    {
        target.mMaterials = new aiMaterial*[source.materials.size()];
        for (const tbiExportMaterial& material : source.materials)
        {
            const std::string name = uniqueName(material);
            target.mMaterials[target.mNumMaterials] =
                makeMaterial(material, name, images[target.mNumMaterials]);
            ++target.mNumMaterials;
        }
    }

    aiNode* makeNode(int index)
    {
        const tbiExportNode& from = source.nodes[std::size_t(index)];
        auto node =
            std::make_unique<aiNode>(from.source && from.source->getName() ? from.source->getName() : "");
        node->mTransformation = transposed(tbiExportScene::placementOf(from));
        node->mMeshes = new unsigned[from.meshes.size()];
        for (const int mesh : from.meshes)
            if (places[std::size_t(mesh)] >= 0)
                node->mMeshes[node->mNumMeshes++] = unsigned(places[std::size_t(mesh)]);
        const std::vector<int> children = source.childrenOf(index);
        node->mChildren = new aiNode*[children.size()];
        for (const int child : children)
        {
            aiNode* made = makeNode(child);
            made->mParent = node.get();
            node->mChildren[node->mNumChildren++] = made;
        }
        return node.release();
    }

private:
    /// Files tell materials apart by name.
    std::string uniqueName(const tbiExportMaterial& material)
    {
        const char* given = material.material ? material.material->getName() : nullptr;
        const std::string base =
            std::string(textOf(given && *given ? given : "material").C_Str()).substr(0, LONGEST_BASE);
        int& uses = numUses[base];
        std::string name = base;
        while (!names.insert(name).second)
            name = base + "_" + std::to_string(++uses + 1);
        return name;
    }

    const tbiExportScene& source;
    aiScene& target;
    std::vector<int> places; // of the meshes in the target, -1 for what is left out
    std::set<std::string> names;
    std::map<std::string, int> numUses; // of what a name begins with
};
} // namespace

std::unique_ptr<aiScene> tbiMakeAssimpScene(const tbiExportScene& source,
                                            const std::vector<std::string>& images, bool addsTop)
{
    auto scene = std::make_unique<aiScene>();
    Builder builder(source, *scene);
    builder.addMeshes();
    builder.addMaterials(images);
    aiNode* top = builder.makeNode(0);
    scene->mRootNode = addsTop ? makeTop(top) : top;
    return scene;
}
