#pragma once

#include <tamber/math/tbMatrix.h>

#include <string>
#include <vector>

class tbBase;
class tbBlend;
class tbFaceCull;
class tbGroup;
class tbKeyFrameAction;
class tbMaterial;
class tbMesh;
class tbTexture;

// What of a graph goes into files of other formats: a tree of placed nodes, which share meshes, which share materials.
// Everything points into the graph, which must stand meanwhile.

// How a surface looks: the traits that are in force at a mesh, null where there is none.
struct tbiExportMaterial
{
    const tbMaterial* material = nullptr;
    const tbTexture* texture = nullptr;
    const tbBlend* blend = nullptr;
    const tbFaceCull* cull = nullptr;

    auto operator<=>(const tbiExportMaterial&) const = default;
};

// A mesh in one material.
struct tbiExportMesh
{
    const tbMesh* mesh;
    int material;
};

struct tbiExportNode
{
    const tbGroup* source = nullptr; // null for the node that turns the scene
    int numBelow = 0;                // nodes below this one, which follow it
    std::vector<int> meshes;
    std::vector<const tbKeyFrameAction*> actions;
};

// Nodes stand parents before children, each followed by all that is below it.
struct tbiExportScene
{
    enum UP
    {
        Y_UP,
        Z_UP
    };

    std::string name;
    std::vector<tbiExportNode> nodes;
    std::vector<tbiExportMesh> meshes;
    std::vector<tbiExportMaterial> materials;

    /// The indices of the children of a node.
    std::vector<int> childrenOf(int node) const;
    /// The placement of a node in its parent; the identity when that of the source is not finite.
    static tbMatrix placementOf(const tbiExportNode& node);
};

/// Takes what `root` holds. Nodes with several parents come once for each path; of switches come the children that are
/// on, of range switches the first; models that are off stay away; nodes without children or meshes come too. In the scene the axis `up` points up:
/// where the graph holds the turn that importing put on its top, it is left out for Y, otherwise one is put there.
/// Throws tbiModelError when the nodes are too many or nest too deep.
tbiExportScene tbiCollectScene(const tbGroup& root, tbiExportScene::UP up);

/// A share between 0 and 1, such as a part of a colour; 0 for what is not finite.
float tbiClampUnit(float value);
