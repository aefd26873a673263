#include "tbiAssimpGraph.h"

#include <portable/tbMesh.h>
#include <tamber/graph/tbModel.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/render/tbStyle.h>

#include "tbiAssimpAnimation.h"
#include "tbiAssimpAxes.h"
#include "tbiAssimpMaterial.h"
#include "tbiAssimpMesh.h"
#include "tbiImportError.h"

#include <assimp/scene.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{
/// Leaves room for model, style, mesh and vertices in files, whose references nest no deeper than 1,024.
constexpr int MAX_DEPTH = 1000;

/// The source multiplies columns from the left, this system rows from the right. What is not finite is no placement.
tbMatrix convertMatrix(const aiMatrix4x4& source)
{
    float elements[16];
    for (unsigned row = 0; row < 4; ++row)
        for (unsigned column = 0; column < 4; ++column)
            elements[row * 4 + column] = source[column][row];
    tbMatrix matrix;
    matrix.makeIdent();
    if (std::all_of(std::begin(elements), std::end(elements), [](float x) { return std::isfinite(x); }))
        matrix.set(elements, 0);
    return matrix;
}

void setName(tbBase& object, const aiString& name)
{
    if (name.length > 0)
        object.setName(name.C_Str());
}

class Converter
{
public:
    explicit Converter(const aiScene& source) : scene(source), materials(source), parts(source.mNumMeshes) {}

    tbRef<tbTransform> convertNode(const aiNode& source, int depth)
    {
        if (depth > MAX_DEPTH)
            throw tbiImportError("the nodes nest too deep");
        tbRef<tbTransform> node = new tbTransform(convertMatrix(source.mTransformation));
        setName(*node, source.mName);
        nodes.emplace(source.mName.C_Str(), node.get());
        for (unsigned i = 0; i < source.mNumMeshes; ++i)
            if (source.mMeshes[i] < scene.mNumMeshes)
                node->addChild(partOf(source.mMeshes[i]));
        for (unsigned i = 0; i < source.mNumChildren; ++i)
            if (source.mChildren[i])
                node->addChild(convertNode(*source.mChildren[i], depth + 1).get());
        return node;
    }

    const tbiNodesByName& getNodes() const { return nodes; }

private:
    /// The style and geometry of a mesh, made on first use. Both stay shared when instances are split, so that an
    /// instance costs no more than its transform.
    tbStyle* partOf(unsigned index)
    {
        tbRef<tbStyle>& part = parts[index];
        if (part)
            return part.get();
        const aiMesh& source = *scene.mMeshes[index];
        const tbRef<tbMesh> mesh = tbiConvertMesh(source);
        mesh->setNodeFlags(tbGroup::NODE_SHARE);
        part = new tbStyle;
        part->setNodeFlags(tbGroup::NODE_SHARE);
        materials.addTraits(source.mMaterialIndex, *part);
        part->addChild(mesh.get());
        return part.get();
    }

    const aiScene& scene;
    tbiAssimpMaterials materials;
    std::vector<tbRef<tbStyle>> parts;
    tbiNodesByName nodes;
};

/// Turns Y-up into Z-up: +Y goes to +Z and +Z to -Y.
tbRef<tbTransform> makeTurn()
{
    tbMatrix matrix;
    matrix.makeRot(90.0f, 1.0f, 0.0f, 0.0f);
    tbRef<tbTransform> turn = new tbTransform(matrix);
    turn->setName("Y-up to Z-up");
    return turn;
}
} // namespace

void tbiUnRef::operator()(tbModel* model) const
{
    model->unRef();
}

tbiNewModel tbiConvertScene(const aiScene& scene, std::string_view extension)
{
    if (!scene.mRootNode || scene.mNumMeshes == 0)
        throw tbiImportError("the file holds nothing to draw");
    Converter converter(scene);
    tbRef<tbTransform> root = converter.convertNode(*scene.mRootNode, 1);
    tbiAddAnimations(scene, converter.getNodes());
    if (!tbiIsZUp(scene, extension))
    {
        const tbRef<tbTransform> turn = makeTurn();
        turn->addChild(root.get());
        root = turn;
    }
    tbiNewModel model(new tbModel);
    setName(*model, scene.mName);
    model->addChild(root.get());
    return model;
}
