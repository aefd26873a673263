#include "tbiAssimpGraph.h"

#include <portable/tbMesh.h>
#include <tamber/graph/tbModel.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/render/tbStyle.h>
#include <tamber/render/tbVertexArray.h>

#include "tbiAssimpAnimation.h"
#include "tbiAssimpAxes.h"
#include "tbiAssimpMaterial.h"
#include "tbiAssimpMesh.h"
#include "tbiExtras.h"
#include "tbiGltfMarks.h"
#include "tbiModelError.h"

#include <assimp/commonMetaData.h>
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
    /// `readsNotes` for files of our own.
    Converter(const aiScene& source, bool readsNotes)
        : scene(source),
          hasNotes(readsNotes),
          materials(source),
          parts(source.mNumMeshes)
    {
    }

    tbRef<tbTransform> convertNode(const aiNode& source, int depth)
    {
        if (depth > MAX_DEPTH)
            throw tbiModelError("the nodes nest too deep");
        const tbiExtras notes = notesOf(source);
        tbRef<tbTransform> node = new tbTransform(convertMatrix(source.mTransformation));
        setName(*node, source.mName);
        takeNotes(*node, notes);
        nodes.emplace(source.mName.C_Str(), tbiMovedNode{node.get(), notes.numbers(tbiGltfMarks::ACTIONS)});
        addParts(*node, source, notes);
        for (unsigned i = 0; i < source.mNumChildren; ++i)
        {
            if (!source.mChildren[i])
                continue;
            const aiNode& child = *source.mChildren[i];
            if (const tbiExtras more = notesOf(child);
                more.has(tbiGltfMarks::PART) && child.mNumChildren == 0)
                addParts(*node, child, more);
            else
                node->addChild(convertNode(child, depth + 1).get());
        }
        return node;
    }

    /// The node that stands for the scene: below the one that only turns it, where there is that.
    const aiNode& findTop(bool& isTurned) const
    {
        const aiNode& top = *scene.mRootNode;
        isTurned = notesOf(top).has(tbiGltfMarks::TURN) && top.mNumMeshes == 0 && top.mNumChildren == 1 &&
                   top.mChildren[0];
        return isTurned ? *top.mChildren[0] : top;
    }

    const tbiNodesByName& getNodes() const { return nodes; }

private:
    tbiExtras notesOf(const aiNode& node) const { return hasNotes ? tbiExtras::ofNode(node) : tbiExtras(); }

    static void takeNotes(tbTransform& node, const tbiExtras& notes)
    {
        if (notes.has(tbiGltfMarks::NAME))
            setExactName(node, notes);
        if (const std::vector<float> elements = notes.numbers(tbiGltfMarks::MATRIX); elements.size() == 16)
            node.setMatrix(tbMatrix(elements.data(), 0));
    }

    static void setExactName(tbBase& object, const tbiExtras& notes)
    {
        const std::string name = notes.name();
        object.setName(name.empty() ? nullptr : name.c_str());
    }

    void addParts(tbTransform& node, const aiNode& source, const tbiExtras& notes)
    {
        for (unsigned i = 0; i < source.mNumMeshes; ++i)
            if (source.mMeshes[i] < scene.mNumMeshes)
                node.addChild(partOf(source.mMeshes[i], notes));
    }

    /// The style and geometry of a mesh, made on first use. Both stay shared when instances are split, so that an
    /// instance costs no more than its transform.
    tbStyle* partOf(unsigned index, const tbiExtras& notes)
    {
        tbRef<tbStyle>& part = parts[index];
        if (part)
            return part.get();
        const aiMesh& source = *scene.mMeshes[index];
        const tbRef<tbMesh> mesh = convertMesh(source, notes.group(tbiGltfMarks::MESH));
        mesh->setNodeFlags(tbGroup::NODE_SHARE);
        part = new tbStyle;
        part->setNodeFlags(tbGroup::NODE_SHARE);
        if (const int id = notes.integer(tbiGltfMarks::MATERIAL); id >= 0)
            materials.addNotedTraits(id, notes.group(tbiGltfMarks::STYLE), source.mMaterialIndex, *part);
        else
            materials.addTraits(source.mMaterialIndex, *part);
        part->addChild(mesh.get());
        return part.get();
    }

    static tbRef<tbMesh> convertMesh(const aiMesh& source, const tbiExtras& notes)
    {
        tbRef<tbMesh> mesh =
            notes.has(tbiGltfMarks::MESH_IS_EMPTY) ? tbRef<tbMesh>(new tbMesh) : tbiConvertMesh(source);
        if (notes.has(tbiGltfMarks::NAME))
            setExactName(*mesh, notes);
        if (notes.has(tbiGltfMarks::MESH_IS_UNINDEXED))
            dropIndices(*mesh);
        return mesh;
    }

    /// Leaves out indices that count up from 0 to the last vertex, as the source's reader makes them.
    static void dropIndices(tbMesh& mesh)
    {
        const unsigned int* indices = mesh.getIndices();
        const int count = mesh.getNumIndices();
        if (!mesh.getVertexArray() || count != mesh.getVertexArray()->getNum())
            return;
        for (int i = 0; i < count; ++i)
            if (indices[i] != unsigned(i))
                return;
        mesh.setIndices(mesh.getPrimitive(), nullptr, 0);
    }

    const aiScene& scene;
    const bool hasNotes;
    tbiAssimpMaterials materials;
    std::vector<tbRef<tbStyle>> parts;
    tbiNodesByName nodes;
};

tbRef<tbTransform> makeTurn()
{
    tbRef<tbTransform> turn = new tbTransform(tbiTurn());
    turn->setName(TBI_TURN_NAME);
    return turn;
}
} // namespace

void tbiUnRef::operator()(tbModel* model) const
{
    model->unRef();
}

bool tbiIsOwnFile(const aiScene& scene)
{
    aiString maker;
    return scene.mMetaData && scene.mMetaData->Get(AI_METADATA_SOURCE_GENERATOR, maker) &&
           std::string_view(maker.C_Str()).starts_with(tbiGltfMarks::GENERATOR);
}

tbiNewModel tbiConvertScene(const aiScene& scene, std::string_view extension)
{
    if (!scene.mRootNode || (scene.mNumMeshes == 0 && !tbiIsOwnFile(scene)))
        throw tbiModelError("the file holds nothing to draw");
    Converter converter(scene, tbiIsOwnFile(scene));
    bool isTurned = false;
    const aiNode& top = converter.findTop(isTurned);
    tbRef<tbTransform> root = converter.convertNode(top, 1);
    tbiAddAnimations(scene, converter.getNodes());
    if (!isTurned && !tbiIsZUp(scene, extension))
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
