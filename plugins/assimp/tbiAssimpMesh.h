#pragma once

#include <tamber/kernel/tbRef.h>

struct aiMesh;
class tbMesh;

/// The vertices and the points, lines or triangles of `source`. Faces of other kinds and faces with indices beyond
/// the vertices are left out. Throws tbiImportError when the mesh is too large or memory is out.
tbRef<tbMesh> tbiConvertMesh(const aiMesh& source);
