#include "ModelNodes.h"

#include <portable/tbMesh.h>
#include <tamber/graph/tbTransform.h>
#include <tamber/render/tbGeometry.h>
#include <tamber/render/tbStyle.h>
#include <tamber/render/tbVertexArray.h>
#include <tamber/trav/tbAudioTrait.h>
#include <tamber/trav/tbTravTrait.h>
#include <tamber/trav/tbVisualTrait.h>

#include <algorithm>

namespace
{
const tbGeometry* geometryOf(const tbGroup& node)
{
    return node.isOfType(tbGeometry::getClassType()) ? static_cast<const tbGeometry*>(&node) : nullptr;
}

/// The class of meshes is in a module, which is there where there are meshes.
bool drawsTriangles(const tbGeometry& geometry)
{
    const tbType* meshes = tbType::findType("tbMesh");
    return meshes && geometry.isOfType(meshes) &&
           static_cast<const tbMesh&>(geometry).getPrimitive() == tbMesh::TRIANGLES;
}

std::size_t sizeOfVertices(const tbGeometry& geometry)
{
    return geometry.getVertexArray() ? geometry.getVertexArray()->getSize() : 0;
}

std::size_t sizeOfIndices(const tbGeometry& geometry)
{
    return std::size_t(geometry.getNumIndices()) * sizeof(unsigned int);
}
} // namespace

// A scene's update would split what is shared.
ModelNodes::ModelNodes(tbGroup& modelRoot) : root(modelRoot)
{
    root.getBoundingVolume(sphere);
    walkModel(
        root, [this](tbGroup& node, int level) { return count(node, level); },
        [this](tbGroup& node) { addUp(node); });
}

bool ModelNodes::count(tbGroup& node, int level)
{
    levels = std::max(levels, level + 1);
    if (!sums.emplace(&node, ModelSum()).second)
        return false;
    ++classes[node.getType()->getName()];
    bytes += tbMemory::getSize(&node);
    if (const tbGeometry* geometry = geometryOf(node))
        countData(*geometry);
    return true;
}

void ModelNodes::countData(const tbGeometry& geometry)
{
    addData(geometry.getVertexArray(), sizeOfVertices(geometry));
    addData(geometry.getIndices(), sizeOfIndices(geometry));
}

void ModelNodes::addData(const void* data, std::size_t size)
{
    if (data && counted.insert(data).second)
        bytes += size;
}

void ModelNodes::addUp(tbGroup& node)
{
    ModelSum sum;
    if (const tbGeometry* geometry = geometryOf(node))
    {
        sum.primitives = std::uint64_t(geometry->getNumPrimitives());
        sum.triangles = drawsTriangles(*geometry) ? sum.primitives : 0;
    }
    for (const tbGroup* child : node.getChildren())
    {
        const ModelSum& below = sums.at(child);
        sum.nodes += below.nodes;
        sum.primitives += below.primitives;
        sum.triangles += below.triangles;
    }
    sums[&node] = sum;
}

ModelNode::ModelNode(tbGroup& node, const ModelNodes& model)
    : type(node.getType()->getName()),
      name(node.getName() ? node.getName() : ""),
      sum(model.getSum(node)),
      bytes(tbMemory::getSize(&node)),
      numParents(node.getNumParents()),
      numChildren(node.getNumChildren())
{
    sphere.makeEmpty();
    takeFlags(node);
    takeTraits(node);
    takeBounds(node);
    if (const tbGeometry* geometry = geometryOf(node))
        bytes += sizeOfVertices(*geometry) + sizeOfIndices(*geometry);
}

void ModelNode::takeFlags(const tbGroup& node)
{
    if (node.getNodeFlags() == tbGroup::NODE_SHARE)
        flags.push_back("share");
    if (node.getNodeFlags() == tbGroup::NODE_COPY)
        flags.push_back("copy");
    if (node.isDynamic())
        flags.push_back("dynamic");
    if ((node.getTravFlags() & tbGroup::TF_HAS_GEOMETRY) != 0)
        flags.push_back("geometry");
    if ((node.getTravFlags() & tbGroup::TF_HAS_EMITTER) != 0)
        flags.push_back("emitter");
}

void ModelNode::takeTraits(const tbGroup& node)
{
    if (!node.isOfType(tbStyle::getClassType()))
        return;
    const auto& style = static_cast<const tbStyle&>(node);
    const auto take = [this](const tbTrait* trait) { traits.push_back(trait->getType()->getName()); };
    for (int i = 0; i < style.getNumVisualTraits(); ++i)
        take(style.getVisualTrait(i));
    for (int i = 0; i < style.getNumAudioTraits(); ++i)
        take(style.getAudioTrait(i));
    for (int i = 0; i < style.getNumTravTraits(); ++i)
        take(style.getTravTrait(i));
}

// Only what is at hand: other nodes would ask all that lies below them.
void ModelNode::takeBounds(tbGroup& node)
{
    if (geometryOf(node))
        node.getBoundingVolume(sphere);
    else if (node.isOfType(tbTransform::getClassType()))
        sphere = *static_cast<tbTransform&>(node).getVolume();
}
