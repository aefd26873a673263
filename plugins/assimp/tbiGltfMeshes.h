#pragma once

#include "tbiGltfBuffer.h"

#include <map>

class tbMesh;
class tbVertexArray;
struct tbiExportMesh;

// Writes meshes as glTF has them. Vertices go into the file as they lie in memory, so that meshes share them there as
// here; only the second texture coordinate runs the other way.
class tbiGltfMeshes
{
public:
    explicit tbiGltfMeshes(tbiGltfBuffer& target) : buffer(target) {}

    /// Adds a mesh to the array that is open in `json`. One without vertices becomes a triangle without an area.
    void write(const tbiExportMesh& mesh, tbiJson& json);

private:
    struct Attributes
    {
        int position = -1;
        int normal = -1;
        int color = -1;
        std::vector<int> texCoords;
    };

    const Attributes& attributesOf(const tbVertexArray& vertices);
    Attributes addVertices(const tbVertexArray& vertices);
    int addIndices(const tbMesh& mesh);
    const Attributes& nothing();

    tbiGltfBuffer& buffer;
    std::map<const tbVertexArray*, Attributes> written; // null for the triangle that stands for nothing
};
