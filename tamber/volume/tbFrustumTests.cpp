// What a frustum contains and touches.
#include <tamber/volume/tbBox.h>
#include <tamber/volume/tbFrustum.h>
#include <tamber/volume/tbRay.h>
#include <tamber/volume/tbSphere.h>

#include <algorithm>

namespace
{

// An edge of a face and the face on its other side.
struct Neighbour
{
    tbFrustum::EDGE edge;
    tbFrustum::FACE face;
};

// Of each face, in the order in which they are asked.
constexpr Neighbour NEIGHBOURS[tbFrustum::NUM_FACES][4] = {
    {{tbFrustum::EDGE_NEAR_LEFT, tbFrustum::FACE_LEFT},
     {tbFrustum::EDGE_NEAR_RIGHT, tbFrustum::FACE_RIGHT},
     {tbFrustum::EDGE_NEAR_TOP, tbFrustum::FACE_TOP},
     {tbFrustum::EDGE_NEAR_BOTTOM, tbFrustum::FACE_BOTTOM}},
    {{tbFrustum::EDGE_FAR_LEFT, tbFrustum::FACE_LEFT},
     {tbFrustum::EDGE_FAR_RIGHT, tbFrustum::FACE_RIGHT},
     {tbFrustum::EDGE_FAR_TOP, tbFrustum::FACE_TOP},
     {tbFrustum::EDGE_FAR_BOTTOM, tbFrustum::FACE_BOTTOM}},
    {{tbFrustum::EDGE_NEAR_LEFT, tbFrustum::FACE_NEAR},
     {tbFrustum::EDGE_FAR_LEFT, tbFrustum::FACE_FAR},
     {tbFrustum::EDGE_LEFT_TOP, tbFrustum::FACE_TOP},
     {tbFrustum::EDGE_LEFT_BOTTOM, tbFrustum::FACE_BOTTOM}},
    {{tbFrustum::EDGE_NEAR_RIGHT, tbFrustum::FACE_NEAR},
     {tbFrustum::EDGE_FAR_RIGHT, tbFrustum::FACE_FAR},
     {tbFrustum::EDGE_RIGHT_TOP, tbFrustum::FACE_TOP},
     {tbFrustum::EDGE_RIGHT_BOTTOM, tbFrustum::FACE_BOTTOM}},
    {{tbFrustum::EDGE_LEFT_BOTTOM, tbFrustum::FACE_LEFT},
     {tbFrustum::EDGE_RIGHT_BOTTOM, tbFrustum::FACE_RIGHT},
     {tbFrustum::EDGE_FAR_BOTTOM, tbFrustum::FACE_FAR},
     {tbFrustum::EDGE_NEAR_BOTTOM, tbFrustum::FACE_NEAR}},
    {{tbFrustum::EDGE_LEFT_TOP, tbFrustum::FACE_LEFT},
     {tbFrustum::EDGE_RIGHT_TOP, tbFrustum::FACE_RIGHT},
     {tbFrustum::EDGE_NEAR_TOP, tbFrustum::FACE_NEAR},
     {tbFrustum::EDGE_FAR_TOP, tbFrustum::FACE_FAR}},
};

} // namespace

template <class Volume>
tbVolume::CONTAINMENT tbFrustum::containsVolume(const Volume& volume) const
{
    if (isEmpty() || volume.isEmpty())
        return OUTSIDE;
    for (int i = 0; i < NUM_FACES; ++i)
    {
        const CONTAINMENT side = faces[i].contains(volume);
        if (side == OUTSIDE)
            return OUTSIDE;
        if (side == INSIDE)
            continue;
        const Neighbour* neighbours = NEIGHBOURS[i];
        const CONTAINMENT first = edges[neighbours[0].edge].contains(volume);
        if (first == OUTSIDE)
            return OUTSIDE;
        if (first != PARTIAL)
            continue;
        const CONTAINMENT beside = faces[neighbours[0].face].contains(volume);
        if (beside != INSIDE)
            return beside;
        for (int pair = 1; pair < 4; ++pair)
        {
            if (edges[neighbours[pair].edge].contains(volume) == INSIDE &&
                faces[neighbours[pair].face].contains(volume) != OUTSIDE)
                return PARTIAL;
        }
    }
    return INSIDE; // also what no edge could settle
}

tbVolume::CONTAINMENT tbFrustum::contains(const tbSphere& sphere) const
{
    return containsVolume(sphere);
}

tbVolume::CONTAINMENT tbFrustum::contains(const tbBox& box) const
{
    return containsVolume(box);
}

tbVolume::CONTAINMENT tbFrustum::contains(const tbVec3& point) const
{
    const bool holds =
        !isEmpty() && std::all_of(faces, faces + NUM_FACES,
                                  [&](const tbPlane& face) { return face.contains(point) == INSIDE; });
    return holds ? INSIDE : OUTSIDE;
}

tbVolume::CONTAINMENT tbFrustum::contains(const tbRay& ray) const
{
    if (isEmpty() || ray.getLength() == 0.0f)
        return OUTSIDE;
    tbVec3 end;
    ray.getEndPoint(end);
    const bool holdsStart = contains(*ray.getOrigin()) == INSIDE;
    const bool holdsEnd = !ray.isUnbounded() && contains(end) == INSIDE;
    if (holdsStart && holdsEnd)
        return INSIDE;
    return holdsStart || holdsEnd || isectRayFrust(ray, *this) ? PARTIAL : OUTSIDE;
}

tbVolume::CONTAINMENT tbFrustum::contains(const tbFrustum& frustum) const
{
    if (!isectFrustFrust(*this, frustum))
        return OUTSIDE;
    const bool whole = std::all_of(frustum.corners, frustum.corners + NUM_CORNERS,
                                   [this](const tbVec3& corner) { return contains(corner) == INSIDE; });
    return whole ? INSIDE : PARTIAL;
}

tbVolume::CONTAINMENT tbFrustum::contains(const tbPlane& plane) const
{
    return isectPlaneFrust(plane, *this) ? PARTIAL : OUTSIDE;
}

bool tbFrustum::intersects(const tbFrustum& frustum) const
{
    return isectFrustFrust(*this, frustum);
}

bool tbFrustum::intersects(const tbSphere& sphere) const
{
    return isectSphereFrust(sphere, *this);
}

bool tbFrustum::intersects(const tbBox& box) const
{
    return isectBoxFrust(box, *this);
}

bool tbFrustum::intersects(const tbPlane& plane) const
{
    return isectPlaneFrust(plane, *this);
}

bool tbFrustum::intersects(const tbRay& ray) const
{
    return isectRayFrust(ray, *this);
}
