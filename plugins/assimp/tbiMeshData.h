#pragma once

#include <tamber/math/tbVec3.h>

#include <vector>

class tbMesh;
class tbVertexArray;

// What every writer asks of a mesh.

/// True when nothing of the mesh can be seen.
bool tbiIsEmpty(const tbMesh& mesh);
/// Throws tbiModelError, which names the mesh, when an index of one that is not empty is beyond its vertices.
void tbiCheckIndices(const tbMesh& mesh);
/// The vertices of the points, lines or triangles in turn, one index each; empty when there are none. Throws
/// tbiModelError when an index is beyond the vertices.
std::vector<unsigned> tbiCornersOf(const tbMesh& mesh);
/// The three floats at a byte offset of a vertex.
tbVec3 tbiVectorAt(const tbVertexArray& vertices, int offset, unsigned vertex);
