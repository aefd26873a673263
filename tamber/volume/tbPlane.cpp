#include <tamber/volume/tbPlane.h>

#include <tamber/io/tbEntry.h>
#include <tamber/volume/tbBox.h>
#include <tamber/volume/tbFrustum.h>
#include <tamber/volume/tbRay.h>
#include <tamber/volume/tbSphere.h>

#include <algorithm>
#include <cmath>

namespace
{

constexpr float PARALLEL = 1.0e-6f;

} // namespace

tbPlane::tbPlane() : tbVolume(PLANE), normal(0.0f, 0.0f, 1.0f), offset(0.0f), octant(tbVec3::OCTANT_PPP) {}

tbPlane::tbPlane(const tbVec3& newNormal, float newOffset) : tbVolume(PLANE)
{
    make(newNormal, newOffset);
}

tbPlane::tbPlane(const tbVec3& p0, const tbVec3& p1, const tbVec3& p2) : tbVolume(PLANE)
{
    make(p0, p1, p2);
}

tbPlane::tbPlane(const tbPlane& other) = default;

tbPlane::tbPlane(const tbPlane& other, tbArena*) : tbPlane(other) {}

tbPlane& tbPlane::operator=(const tbPlane& other)
{
    normal = other.normal;
    offset = other.offset;
    octant = other.octant;
    return *this;
}

void tbPlane::make(const tbVec3& newNormal, float newOffset)
{
    setNormal(newNormal);
    offset = newOffset;
}

void tbPlane::make(const tbVec3& point, const tbVec3& newNormal)
{
    const tbVec3 through(point); // may be the normal of this
    setNormal(newNormal);
    offset = normal.dot(through);
}

void tbPlane::make(const tbVec3& p0, const tbVec3& p1, const tbVec3& p2)
{
    tbVec3 front;
    front.makeNormal(p0, p1, p2);
    make(p0, front);
}

void tbPlane::setNormal(const tbVec3& newNormal)
{
    normal = newNormal;
    normal.normalize();
    octant = normal.getOctant();
}

bool tbPlane::findIsectPoint(const tbRay& ray, tbVec3& out) const
{
    if (ray.getLength() == 0.0f)
        return false;
    const float speed = ray.getDirection()->dot(normal);
    if (!(std::fabs(speed) >= PARALLEL))
        return false;
    const float t = -(normal.dot(*ray.getOrigin()) - offset) / speed;
    if (!(t >= 0.0f) || (!ray.isUnbounded() && !(t <= ray.getLength())))
        return false;
    out.addScaled(*ray.getOrigin(), t, *ray.getDirection());
    return true;
}

void tbPlane::xform(const tbPlane& source, const tbMatrix& m)
{
    if ((m.getType() & tbMatrix::MATRIX_IDENT) != 0)
    {
        *this = source;
        return;
    }
    tbVec3 point;
    tbVec3 carried;
    point.xformPt(source.normal * source.offset, m);
    carried.xformVec(source.normal, m);
    make(point, carried);
}

void tbPlane::xform(const tbMatrix& m)
{
    xform(*this, m);
}

void tbPlane::copy(const tbVolume& other)
{
    if (other.getType() == PLANE)
        *this = static_cast<const tbPlane&>(other);
}

tbPlane* tbPlane::createCopy() const
{
    return new tbPlane(*this);
}

tbPlane* tbPlane::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbPlane(*this, arena);
}

void tbPlane::makeEmpty() {}

tbVolume::CONTAINMENT tbPlane::contains(const tbVec3& point) const
{
    return normal.dot(point) <= offset ? INSIDE : OUTSIDE;
}

tbVolume::CONTAINMENT tbPlane::contains(const tbRay& ray) const
{
    if (ray.getLength() == 0.0f)
        return OUTSIDE;
    const bool holdsStart = contains(*ray.getOrigin()) == INSIDE;
    bool holdsEnd;
    if (ray.isUnbounded())
    {
        const float speed = normal.dot(*ray.getDirection());
        holdsEnd = speed < 0.0f || (speed == 0.0f && holdsStart);
    }
    else
    {
        tbVec3 end;
        ray.getEndPoint(end);
        holdsEnd = contains(end) == INSIDE;
    }
    if (holdsStart != holdsEnd)
        return PARTIAL;
    return holdsStart ? INSIDE : OUTSIDE;
}

tbVolume::CONTAINMENT tbPlane::contains(const tbFrustum& frustum) const
{
    if (frustum.isEmpty())
        return OUTSIDE;
    const tbVec3* corners = frustum.getCorners();
    const auto inside = std::count_if(corners, corners + tbFrustum::NUM_CORNERS,
                                      [this](const tbVec3& corner) { return contains(corner) == INSIDE; });
    if (inside == tbFrustum::NUM_CORNERS)
        return INSIDE;
    return inside > 0 ? PARTIAL : OUTSIDE;
}

tbVolume::CONTAINMENT tbPlane::contains(const tbSphere& sphere) const
{
    const float radius = sphere.getRadius();
    if (sphere.isEmpty() || !(radius > 0.0f))
        return OUTSIDE;
    const float distance = normal.dot(*sphere.getCenter()) - offset;
    if (distance <= -radius)
        return INSIDE;
    return std::fabs(distance) <= radius ? PARTIAL : OUTSIDE;
}

tbVolume::CONTAINMENT tbPlane::contains(const tbBox& box) const
{
    if (box.isEmpty())
        return OUTSIDE;
    tbVec3 corner;
    box.getCorner(getPosOctant(), corner);
    if (contains(corner) == INSIDE)
        return INSIDE;
    box.getCorner(getNegOctant(), corner);
    return contains(corner) == INSIDE ? PARTIAL : OUTSIDE;
}

tbVolume::CONTAINMENT tbPlane::contains(const tbPlane& plane) const
{
    if (plane.normal == normal && plane.offset <= offset)
        return INSIDE;
    return isectPlanePlane(*this, plane) ? PARTIAL : OUTSIDE;
}

bool tbPlane::intersects(const tbFrustum& frustum) const
{
    return isectPlaneFrust(*this, frustum);
}

bool tbPlane::intersects(const tbSphere& sphere) const
{
    return isectPlaneSphere(*this, sphere);
}

bool tbPlane::intersects(const tbBox& box) const
{
    return isectPlaneBox(*this, box);
}

bool tbPlane::intersects(const tbPlane& plane) const
{
    return isectPlanePlane(*this, plane);
}

bool tbPlane::intersects(const tbRay& ray) const
{
    return isectRayPlane(ray, *this);
}

void tbPlane::extendAround(const tbVec3&) {}

void tbPlane::extendAround(const tbVec3*, int) {}

void tbPlane::extendAround(const tbRay&) {}

void tbPlane::extendAround(const tbFrustum&) {}

void tbPlane::extendAround(const tbSphere&) {}

void tbPlane::extendAround(const tbBox&) {}

void tbPlane::extendAround(const tbPlane&) {}

void tbPlane::extendAround(const tbVolume&) {}

void tbPlane::getCenter(tbVec3& center) const
{
    center.scale(offset, normal);
}

void tbPlane::read(tbEntry* entry)
{
    normal.read(entry);
    offset = entry->readFloat();
    entry->readInt(); // the octant, which the normal tells as well
    octant = normal.getOctant();
}

void tbPlane::write(tbEntry* entry) const
{
    normal.write(entry);
    entry->writeFloat(offset);
    entry->writeInt(octant);
}
