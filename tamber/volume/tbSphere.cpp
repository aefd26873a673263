#include <tamber/volume/tbSphere.h>

#include <tamber/io/tbEntry.h>
#include <tamber/volume/tbBox.h>
#include <tamber/volume/tbFrustum.h>
#include <tamber/volume/tbPlane.h>
#include <tamber/volume/tbRay.h>

#include <algorithm>
#include <cmath>

namespace
{

constexpr float EMPTY_RADIUS = -1.0f;
constexpr double CONCENTRIC = 1.0e-6; // of squared distances
constexpr float SCALE_TOLERANCE = 0.0001f;

// In double, so that far apart centers do not overflow.
double sqrDistanceOf(const tbVec3& a, const tbVec3& b)
{
    const double x = double(a.x) - double(b.x);
    const double y = double(a.y) - double(b.y);
    const double z = double(a.z) - double(b.z);
    return x * x + y * y + z * z;
}

double square(double a)
{
    return a * a;
}

} // namespace

tbSphere::tbSphere() : tbVolume(SPHERE), center(0.0f, 0.0f, 0.0f), radius(EMPTY_RADIUS) {}

tbSphere::tbSphere(const tbVec3& newCenter, float newRadius)
    : tbVolume(SPHERE),
      center(newCenter),
      radius(newRadius)
{
}

tbSphere::tbSphere(const tbSphere& other) = default;

tbSphere::tbSphere(const tbSphere& other, tbArena*) : tbSphere(other) {}

tbSphere& tbSphere::operator=(const tbSphere& other)
{
    center = other.center;
    radius = other.radius;
    return *this;
}

void tbSphere::setRadius(float newRadius)
{
    radius = newRadius;
}

void tbSphere::setCenter(const tbVec3& newCenter)
{
    center = newCenter;
}

void tbSphere::xform(const tbSphere& source, const tbMatrix& m)
{
    *this = source;
    tbSphere::xform(m);
}

void tbSphere::xform(const tbMatrix& m)
{
    if ((m.getType() & tbMatrix::MATRIX_IDENT) != 0 || tbSphere::isEmpty())
        return;
    tbVec3 axis;
    axis.xformVec(tbVec3(0.0f, 0.0f, 1.0f), m);
    const float sqrScale = axis.sqrLength();
    if (std::fabs(1.0f - sqrScale) > SCALE_TOLERANCE)
        radius *= std::sqrt(sqrScale);
    center.xformPt(center, m);
}

void tbSphere::copy(const tbVolume& other)
{
    if (other.getType() == SPHERE)
        *this = static_cast<const tbSphere&>(other);
}

tbSphere* tbSphere::createCopy() const
{
    return new tbSphere(*this);
}

tbSphere* tbSphere::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbSphere(*this, arena);
}

void tbSphere::makeEmpty()
{
    radius = EMPTY_RADIUS;
}

tbVolume::CONTAINMENT tbSphere::contains(const tbVec3& point) const
{
    return !tbSphere::isEmpty() && radius * radius >= center.sqrDistance(point) ? INSIDE : OUTSIDE;
}

tbVolume::CONTAINMENT tbSphere::contains(const tbRay& ray) const
{
    if (tbSphere::isEmpty() || ray.getLength() == 0.0f)
        return OUTSIDE;
    tbVec3 end;
    ray.getEndPoint(end);
    const bool holdsStart = contains(*ray.getOrigin()) == INSIDE;
    if (holdsStart && !ray.isUnbounded() && contains(end) == INSIDE)
        return INSIDE;
    return holdsStart || isectRaySphere(ray, *this) ? PARTIAL : OUTSIDE;
}

tbVolume::CONTAINMENT tbSphere::contains(const tbFrustum& frustum) const
{
    if (tbSphere::isEmpty() || frustum.isEmpty())
        return OUTSIDE;
    const tbVec3* corners = frustum.getCorners();
    if (std::all_of(corners, corners + tbFrustum::NUM_CORNERS,
                    [this](const tbVec3& corner) { return contains(corner) == INSIDE; }))
        return INSIDE;
    return isectSphereFrust(*this, frustum) ? PARTIAL : OUTSIDE;
}

tbVolume::CONTAINMENT tbSphere::contains(const tbSphere& sphere) const
{
    if (tbSphere::isEmpty() || sphere.tbSphere::isEmpty())
        return OUTSIDE;
    const float sqrDistance = center.sqrDistance(sphere.center);
    const float spare = radius - sphere.radius;
    const float reach = radius + sphere.radius;
    if (spare >= 0.0f && sqrDistance < spare * spare)
        return INSIDE;
    return sqrDistance <= reach * reach ? PARTIAL : OUTSIDE;
}

tbVolume::CONTAINMENT tbSphere::contains(const tbBox& box) const
{
    if (tbSphere::isEmpty() || box.isEmpty())
        return OUTSIDE;
    const bool holdsMin = contains(*box.getMin()) == INSIDE;
    const bool holdsMax = contains(*box.getMax()) == INSIDE;
    if (holdsMin && holdsMax)
        return INSIDE;
    return holdsMin || holdsMax || isectBoxSphere(box, *this) ? PARTIAL : OUTSIDE;
}

tbVolume::CONTAINMENT tbSphere::contains(const tbPlane& plane) const
{
    return isectPlaneSphere(plane, *this) ? PARTIAL : OUTSIDE;
}

bool tbSphere::intersects(const tbFrustum& frustum) const
{
    return isectSphereFrust(*this, frustum);
}

bool tbSphere::intersects(const tbSphere& sphere) const
{
    return isectSphereSphere(*this, sphere);
}

bool tbSphere::intersects(const tbBox& box) const
{
    return isectBoxSphere(box, *this);
}

bool tbSphere::intersects(const tbPlane& plane) const
{
    return isectPlaneSphere(plane, *this);
}

bool tbSphere::intersects(const tbRay& ray) const
{
    return isectRaySphere(ray, *this);
}

void tbSphere::extendAround(const tbVec3& point)
{
    if (tbSphere::isEmpty())
    {
        center = point;
        radius = 0.0f;
        return;
    }
    const double sqrDistance = sqrDistanceOf(center, point);
    if (!(sqrDistance >= square(radius)) || sqrDistance == 0.0)
        return;
    const double distance = std::sqrt(sqrDistance);
    tbVec3 farPoint;
    farPoint.addScaled(center, float(double(radius) / distance), center - point);
    center.combine(0.5f, point, 0.5f, farPoint);
    radius = float((distance + double(radius)) / 2.0);
}

void tbSphere::extendAround(const tbVec3* points, int count)
{
    if (count <= 0)
        return;
    if (!tbSphere::isEmpty())
    {
        tbVolume::extendAround(points, count);
        return;
    }
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    for (int i = 0; i < count; ++i)
    {
        x += double(points[i].x);
        y += double(points[i].y);
        z += double(points[i].z);
    }
    center.set(float(x / count), float(y / count), float(z / count));
    double largest = 0.0;
    for (int i = 0; i < count; ++i)
        largest = std::max(largest, sqrDistanceOf(center, points[i]));
    radius = float(std::sqrt(largest));
}

void tbSphere::extendAround(const tbSphere& sphere)
{
    if (sphere.tbSphere::isEmpty())
        return;
    if (tbSphere::isEmpty())
    {
        *this = sphere;
        return;
    }
    const double sqrDistance = sqrDistanceOf(center, sphere.center);
    if (!(sqrDistance > CONCENTRIC) || std::isinf(radius))
    {
        radius = std::max(radius, sphere.radius);
        return;
    }
    if (sqrDistance < square(double(radius) - double(sphere.radius)))
    {
        if (sphere.radius > radius)
            *this = sphere;
        return;
    }
    const double distance = std::sqrt(sqrDistance);
    const tbVec3 apart = center - sphere.center;
    tbVec3 end;
    tbVec3 otherEnd;
    end.addScaled(center, float(double(radius) / distance), apart);
    otherEnd.addScaled(sphere.center, float(-double(sphere.radius) / distance), apart);
    center.combine(0.5f, end, 0.5f, otherEnd);
    radius = float((distance + double(radius) + double(sphere.radius)) / 2.0);
}

void tbSphere::extendAround(const tbBox& box)
{
    if (box.isEmpty())
        return;
    if (tbSphere::isEmpty())
    {
        box.getCenter(center);
        radius = float(std::sqrt(sqrDistanceOf(center, *box.getMax())));
        return;
    }
    tbVec3 corners[8]; // x changes fastest, from the minimum to the maximum
    for (int i = 0; i < 8; ++i)
    {
        const int positive = (i & 1) * 4 + (i & 2) + (i >> 2);
        box.getCorner(tbVec3::OCTANT(7 - positive), corners[i]);
    }
    extendAround(corners, 8);
}

void tbSphere::getCenter(tbVec3& out) const
{
    out = center;
}

void tbSphere::read(tbEntry* entry)
{
    center.read(entry);
    radius = entry->readFloat();
}

void tbSphere::write(tbEntry* entry) const
{
    center.write(entry);
    entry->writeFloat(radius);
}
