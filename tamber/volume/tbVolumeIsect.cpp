// Do two volumes touch? The tests that all volumes share.
#include <tamber/volume/tbVolume.h>

#include <tamber/volume/tbBox.h>
#include <tamber/volume/tbFrustum.h>
#include <tamber/volume/tbPlane.h>
#include <tamber/volume/tbRay.h>
#include <tamber/volume/tbSphere.h>

#include <algorithm>
#include <limits>

namespace
{

// True when the corners of `b` all lie outside one of the faces of `a`.
bool separates(const tbFrustum& a, const tbFrustum& b)
{
    const tbVec3* corners = b.getCorners();
    for (int face = 0; face < tbFrustum::NUM_FACES; ++face)
    {
        const tbPlane& plane = a.getFacePlane(face);
        if (std::all_of(corners, corners + tbFrustum::NUM_CORNERS,
                        [&](const tbVec3& corner) { return plane.contains(corner) == tbVolume::OUTSIDE; }))
            return true;
    }
    return false;
}

} // namespace

bool tbVolume::isectBoxBox(const tbBox& a, const tbBox& b)
{
    if (a.isEmpty() || b.isEmpty())
        return false;
    const tbVec3& aMin = *a.getMin();
    const tbVec3& aMax = *a.getMax();
    const tbVec3& bMin = *b.getMin();
    const tbVec3& bMax = *b.getMax();
    return aMin.x <= bMax.x && bMin.x <= aMax.x && aMin.y <= bMax.y && bMin.y <= aMax.y && aMin.z <= bMax.z &&
           bMin.z <= aMax.z;
}

bool tbVolume::isectBoxSphere(const tbBox& box, const tbSphere& sphere)
{
    const float radius = sphere.getRadius();
    if (box.isEmpty() || sphere.isEmpty() || !(radius > 0.0f))
        return false;
    const tbVec3& center = *sphere.getCenter();
    float sqrDistance = 0.0f;
    for (int i = 0; i < 3; ++i)
    {
        const float below = (*box.getMin())[i] - center[i];
        const float above = center[i] - (*box.getMax())[i];
        if (below > 0.0f)
            sqrDistance += below * below;
        else if (above > 0.0f)
            sqrDistance += above * above;
    }
    return sqrDistance <= radius * radius;
}

bool tbVolume::isectBoxFrust(const tbBox& box, const tbFrustum& frustum)
{
    if (box.isEmpty() || frustum.isEmpty() || frustum.tbFrustum::contains(box) == OUTSIDE)
        return false;
    tbBox bounds;
    bounds.extendAround(frustum);
    return isectBoxBox(box, bounds);
}

bool tbVolume::isectSphereSphere(const tbSphere& a, const tbSphere& b)
{
    if (a.isEmpty() || b.isEmpty())
        return false;
    const float reach = a.getRadius() + b.getRadius();
    return a.getCenter()->sqrDistance(*b.getCenter()) <= reach * reach;
}

bool tbVolume::isectSphereFrust(const tbSphere& sphere, const tbFrustum& frustum)
{
    return frustum.tbFrustum::contains(sphere) != OUTSIDE;
}

bool tbVolume::isectFrustFrust(const tbFrustum& a, const tbFrustum& b)
{
    return !a.isEmpty() && !b.isEmpty() && !separates(a, b) && !separates(b, a);
}

bool tbVolume::isectPlaneBox(const tbPlane& plane, const tbBox& box)
{
    if (box.isEmpty())
        return false;
    tbVec3 nearest;
    box.getCorner(plane.getNegOctant(), nearest);
    return plane.tbPlane::contains(nearest) == INSIDE;
}

bool tbVolume::isectPlaneSphere(const tbPlane& plane, const tbSphere& sphere)
{
    const float radius = sphere.getRadius();
    if (sphere.isEmpty() || !(radius > 0.0f))
        return false;
    const float distance = plane.getNormal()->dot(*sphere.getCenter()) - plane.getOffset();
    return !(distance >= 0.0f && distance > radius);
}

bool tbVolume::isectPlanePlane(const tbPlane& a, const tbPlane& b)
{
    if (a.getNormal()->angleBetween(*b.getNormal()) != 180.0f)
        return true;
    const tbVec3 onB = *b.getNormal() * b.getOffset();
    return a.tbPlane::contains(onB) == INSIDE;
}

bool tbVolume::isectPlaneFrust(const tbPlane& plane, const tbFrustum& frustum)
{
    const tbVec3* corners = frustum.getCorners();
    return !frustum.isEmpty() &&
           std::any_of(corners, corners + tbFrustum::NUM_CORNERS,
                       [&](const tbVec3& corner) { return plane.tbPlane::contains(corner) == INSIDE; });
}

bool tbVolume::isectRayBox(const tbRay& ray, const tbBox& box)
{
    return !box.isEmpty() && ray.intersects(box);
}

bool tbVolume::isectRaySphere(const tbRay& ray, const tbSphere& sphere)
{
    return !sphere.isEmpty() && ray.intersects(sphere);
}

bool tbVolume::isectRayPlane(const tbRay& ray, const tbPlane& plane)
{
    return ray.intersects(plane);
}

// Cuts the ray at each face: what is left lies inside all of them.
bool tbVolume::isectRayFrust(const tbRay& ray, const tbFrustum& frustum)
{
    if (frustum.isEmpty() || ray.getLength() == 0.0f)
        return false;
    float begin = 0.0f;
    float end = ray.isUnbounded() ? std::numeric_limits<float>::infinity() : ray.getLength();
    for (int face = 0; face < tbFrustum::NUM_FACES; ++face)
    {
        const tbPlane& plane = frustum.getFacePlane(face);
        const float room = plane.getOffset() - plane.getNormal()->dot(*ray.getOrigin());
        const float speed = plane.getNormal()->dot(*ray.getDirection());
        if (speed > 0.0f)
            end = std::min(end, room / speed);
        else if (speed < 0.0f)
            begin = std::max(begin, room / speed);
        else if (room < 0.0f)
            return false;
    }
    return !(begin > end);
}
