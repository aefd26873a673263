#include <tamber/volume/tbFrustum.h>

#include <tamber/io/tbEntry.h>
#include <tamber/math/tbiTolerance.h>
#include <tamber/volume/tbBox.h>
#include <tamber/volume/tbRay.h>
#include <tamber/volume/tbSphere.h>

#include <algorithm>

tbFrustum::tbFrustum()
    : tbVolume(FRUSTUM),
      left(0.0f),
      right(0.0f),
      bottom(0.0f),
      top(0.0f),
      nearDist(0.0f),
      farDist(0.0f)
{
    std::fill_n(corners, int(NUM_CORNERS), tbVec3(0.0f, 0.0f, 0.0f));
}

tbFrustum::tbFrustum(const tbFrustum& other) = default;

tbFrustum::tbFrustum(const tbFrustum& other, tbArena*) : tbFrustum(other) {}

tbFrustum& tbFrustum::operator=(const tbFrustum& other)
{
    if (this == &other)
        return *this;
    std::copy_n(other.faces, int(NUM_FACES), faces);
    std::copy_n(other.edges, int(NUM_EDGES), edges);
    std::copy_n(other.corners, int(NUM_CORNERS), corners);
    left = other.left;
    right = other.right;
    bottom = other.bottom;
    top = other.top;
    nearDist = other.nearDist;
    farDist = other.farDist;
    return *this;
}

bool tbFrustum::isSymmetrical() const
{
    return tbiNearZero(left + right) && tbiNearZero(bottom + top);
}

bool tbFrustum::operator==(const tbFrustum& other) const
{
    return std::equal(faces, faces + NUM_FACES, other.faces) &&
           std::equal(edges, edges + NUM_EDGES, other.edges) &&
           std::equal(corners, corners + NUM_CORNERS, other.corners) && left == other.left &&
           right == other.right && bottom == other.bottom && top == other.top && nearDist == other.nearDist &&
           farDist == other.farDist;
}

void tbFrustum::xform(const tbFrustum& source, const tbMatrix& m)
{
    *this = source;
    if ((m.getType() & tbMatrix::MATRIX_IDENT) != 0 || isEmpty())
        return;
    for (tbPlane& face : faces)
        face.xform(face, m);
    for (tbPlane& edge : edges)
        edge.xform(edge, m);
    for (tbVec3& corner : corners)
        corner.xformPt(corner, m);
}

void tbFrustum::xform(const tbMatrix& m)
{
    xform(*this, m);
}

void tbFrustum::copy(const tbVolume& other)
{
    if (other.getType() == FRUSTUM)
        *this = static_cast<const tbFrustum&>(other);
}

tbFrustum* tbFrustum::createCopy() const
{
    return new tbFrustum(*this);
}

tbFrustum* tbFrustum::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbFrustum(*this, arena);
}

void tbFrustum::makeEmpty()
{
    left = right = bottom = top = 0.0f;
}

void tbFrustum::getCenter(tbVec3& center) const
{
    center.combine(0.5f, corners[CORNER_TOP], 0.5f, corners[CORNER_FAR | CORNER_RIGHT]);
}

void tbFrustum::read(tbEntry* entry)
{
    for (tbPlane& face : faces)
        face.read(entry);
    for (tbPlane& edge : edges)
        edge.read(entry);
    left = entry->readFloat();
    right = entry->readFloat();
    bottom = entry->readFloat();
    top = entry->readFloat();
    nearDist = -faces[FACE_NEAR].getOffset();
    farDist = faces[FACE_FAR].getOffset();
    cornersFromFaces();
}

void tbFrustum::write(tbEntry* entry) const
{
    for (const tbPlane& face : faces)
        face.write(entry);
    for (const tbPlane& edge : edges)
        edge.write(entry);
    entry->writeFloat(left);
    entry->writeFloat(right);
    entry->writeFloat(bottom);
    entry->writeFloat(top);
}
