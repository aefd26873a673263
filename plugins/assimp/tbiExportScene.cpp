#include "tbiExportScene.h"

#include <portable/tbBlend.h>
#include <portable/tbFaceCull.h>
#include <portable/tbKeyFrameAction.h>
#include <portable/tbMaterial.h>
#include <portable/tbMesh.h>
#include <portable/tbTexture.h>
#include <tamber/graph/tbModel.h>
#include <tamber/graph/tbRangeSwitch.h>
#include <tamber/graph/tbSwitch.h>
#include <tamber/render/tbStyle.h>

#include "tbiAssimpAxes.h"
#include "tbiModelError.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace
{
/// As deep as files nest.
constexpr int MAX_DEPTH = 1024;
/// A graph of few nodes can have any number of paths; a tree of more nodes than these is nothing that others open.
constexpr std::size_t MAX_PATHS = std::size_t(1) << 20;

template <class Class>
const Class* as(const tbBase* object)
{
    return object->isOfType(Class::getClassType()) ? static_cast<const Class*>(object) : nullptr;
}

class Collector
{
public:
    explicit Collector(tbiExportScene& target) : scene(target) {}

    void addNode(const tbGroup& source, const tbiExportMaterial& above, int depth)
    {
        if (depth > MAX_DEPTH)
            throw tbiModelError("the nodes nest deeper than " + std::to_string(MAX_DEPTH));
        countPath();
        const std::size_t index = scene.nodes.size();
        scene.nodes.emplace_back().source = &source;
        const tbiExportMaterial material = withTraits(above, source);
        if (const auto* mesh = as<tbMesh>(&source))
            addMesh(index, *mesh, material);
        for (int i = 0; i < source.getNumChildren(); ++i)
            if (isShown(source, i))
                addChild(index, *source.getChild(i), material, depth);
        scene.nodes[index].numBelow = int(scene.nodes.size() - index - 1);
    }

private:
    void countPath()
    {
        if (++paths > MAX_PATHS)
            throw tbiModelError("there are more than " + std::to_string(MAX_PATHS) +
                                " paths to nodes and meshes");
    }

    static bool isShown(const tbGroup& parent, int i)
    {
        if (const auto* model = as<tbModel>(parent.getChild(i)); model && !model->isEnabled())
            return false;
        if (as<tbRangeSwitch>(&parent))
            return i == 0;
        const auto* choice = as<tbSwitch>(&parent);
        return !choice || choice->isActive(i);
    }

    /// A trait of the class is in force from here on where the apply modes let it.
    template <class Trait>
    static void take(const Trait*& inForce, const tbVisualTrait* trait)
    {
        const auto* taken = as<Trait>(trait);
        if (taken && taken->replaces(inForce))
            inForce = taken;
    }

    static tbiExportMaterial withTraits(tbiExportMaterial material, const tbGroup& node)
    {
        const auto* style = as<tbStyle>(&node);
        for (int i = 0; style && i < style->getNumVisualTraits(); ++i)
        {
            const tbVisualTrait* trait = style->getVisualTrait(i);
            take(material.material, trait);
            take(material.texture, trait);
            take(material.blend, trait);
            take(material.cull, trait);
        }
        return material;
    }

    /// A mesh, alone or alone in a style, belongs to the node; everything else becomes a node.
    void addChild(std::size_t parent, const tbGroup& child, const tbiExportMaterial& material, int depth)
    {
        if (const auto* action = as<tbKeyFrameAction>(&child); action && child.getNumChildren() == 0)
        {
            scene.nodes[parent].actions.push_back(action);
            return;
        }
        const bool isStyle = child.getType() == tbStyle::getClassType() && child.getNumChildren() == 1;
        const tbGroup& leaf = isStyle ? *child.getChild(0) : child;
        const auto* mesh = as<tbMesh>(&leaf);
        if (mesh && leaf.getNumChildren() == 0)
            addMesh(parent, *mesh, isStyle ? withTraits(material, child) : material);
        else
            addNode(child, material, depth + 1);
    }

    void addMesh(std::size_t node, const tbMesh& mesh, const tbiExportMaterial& material)
    {
        countPath();
        const auto [surface, isNewSurface] = materials.try_emplace(material, int(scene.materials.size()));
        if (isNewSurface)
            scene.materials.push_back(material);
        const auto [place, isNew] = meshes.try_emplace({&mesh, surface->second}, int(scene.meshes.size()));
        if (isNew)
            scene.meshes.push_back({&mesh, surface->second});
        scene.nodes[node].meshes.push_back(place->second);
    }

    tbiExportScene& scene;
    std::size_t paths = 0;
    std::map<tbiExportMaterial, int> materials;
    std::map<std::pair<const tbMesh*, int>, int> meshes;
};

/// A plain model says nothing that the scene's name does not say.
const tbGroup& belowModel(const tbGroup& root)
{
    const bool isPlain = as<tbModel>(&root) && root.getNumChildren() == 1 &&
                         as<tbTransform>(root.getChild(0)) && static_cast<const tbModel&>(root).isIdentity();
    return isPlain ? *root.getChild(0) : root;
}
} // namespace

std::vector<int> tbiExportScene::childrenOf(int node) const
{
    std::vector<int> children;
    const int end = node + nodes[std::size_t(node)].numBelow;
    for (int child = node + 1; child <= end; child += nodes[std::size_t(child)].numBelow + 1)
        children.push_back(child);
    return children;
}

tbMatrix tbiExportScene::placementOf(const tbiExportNode& node)
{
    tbMatrix matrix = tbMatrix::identity();
    if (!node.source)
        matrix.invert(tbiTurn());
    else if (const auto* transform = as<tbTransform>(node.source))
        matrix = *transform->getMatrix();
    const float* elements = matrix.getData();
    if (!std::all_of(elements, elements + 16, [](float x) { return std::isfinite(x); }))
        matrix.makeIdent();
    return matrix;
}

tbiExportScene tbiCollectScene(const tbGroup& root, tbiExportScene::UP up)
{
    tbiExportScene scene;
    scene.name = root.getName() ? root.getName() : "";
    const tbGroup* top = &belowModel(root);
    const bool wantsY = up == tbiExportScene::Y_UP;
    const bool isTurned = top != &root && tbiIsTurn(*top) && top->getNumChildren() == 1;
    if (isTurned && wantsY)
        top = top->getChild(0);
    const bool addsTurn = wantsY && !isTurned;
    if (addsTurn)
        scene.nodes.emplace_back();
    Collector(scene).addNode(*top, {}, 1);
    if (addsTurn)
        scene.nodes[0].numBelow = int(scene.nodes.size()) - 1;
    return scene;
}

float tbiClampUnit(float value)
{
    return std::clamp(std::isfinite(value) ? value : 0.0f, 0.0f, 1.0f);
}
