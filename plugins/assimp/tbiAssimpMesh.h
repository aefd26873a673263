#pragma once

#include <tamber/kernel/tbRef.h>

struct aiMesh;
struct aiScene;
class tbMesh;

/// Throws tbiModelError when a face of any mesh has no indices or names a vertex that is not there.
void tbiCheckFaces(const aiScene& scene);

/// The vertices and the points, lines or triangles of `source`; vertices without any face are points. Faces of
/// other kinds are left out. Throws tbiModelError when the mesh is too large or memory is out.
tbRef<tbMesh> tbiConvertMesh(const aiMesh& source);
