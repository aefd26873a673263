#pragma once

#include <tamber/math/tbMatrix.h>

#include <string>
#include <vector>

class tbMesh;
struct tbiExportScene;

// One use of a mesh, with the placement in the scene.
struct tbiInstance
{
    const tbMesh* mesh;
    tbMatrix placement;
};

/// Every use of a mesh that is not empty.
std::vector<tbiInstance> tbiFlatten(const tbiExportScene& scene);

// Formats without nodes; every use of a mesh is written where it is. Both throw tbiModelError when there is nothing
// that they hold, or when the file would be larger than 1 GiB.

/// The triangles as a binary STL file.
std::string tbiWriteStl(const tbiExportScene& scene);
/// Vertices with what all meshes have of normals and colours and the first texture coordinates, triangles and, as
/// edges, lines, as a binary PLY file.
std::string tbiWritePly(const tbiExportScene& scene);
