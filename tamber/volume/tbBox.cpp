#include <tamber/volume/tbBox.h>

#include <tamber/io/tbEntry.h>
#include <tamber/volume/tbFrustum.h>
#include <tamber/volume/tbPlane.h>
#include <tamber/volume/tbRay.h>
#include <tamber/volume/tbSphere.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr float LARGEST = std::numeric_limits<float>::max();

} // namespace

tbBox::tbBox() : tbVolume(BOX)
{
    tbBox::makeEmpty();
}

tbBox::tbBox(const tbVec3& newMin, const tbVec3& newMax) : tbVolume(BOX), minCorner(newMin), maxCorner(newMax)
{
}

tbBox::tbBox(const tbBox& other) = default;

tbBox::tbBox(const tbBox& other, tbArena*) : tbBox(other) {}

tbBox& tbBox::operator=(const tbBox& other)
{
    minCorner = other.minCorner;
    maxCorner = other.maxCorner;
    return *this;
}

void tbBox::setMin(const tbVec3& corner)
{
    minCorner = corner;
}

void tbBox::setMax(const tbVec3& corner)
{
    maxCorner = corner;
}

// Each axis of the source moves each axis of the result one way or the other.
void tbBox::xform(const tbBox& source, const tbMatrix& m)
{
    if ((m.getType() & tbMatrix::MATRIX_IDENT) != 0 || source.tbBox::isEmpty())
    {
        *this = source;
        return;
    }
    const tbVec3 sourceMin = source.minCorner; // `source` may be this
    const tbVec3 sourceMax = source.maxCorner;
    m.getXYZ(minCorner);
    m.getXYZ(maxCorner);
    for (int i = 0; i < 3; ++i)
    {
        for (int j = 0; j < 3; ++j)
        {
            const float e = sourceMin[i] * m[i][j];
            const float f = sourceMax[i] * m[i][j];
            minCorner[j] += std::min(e, f);
            maxCorner[j] += std::max(e, f);
        }
    }
}

void tbBox::xform(const tbMatrix& m)
{
    xform(*this, m);
}

void tbBox::copy(const tbVolume& other)
{
    if (other.getType() == BOX)
        *this = static_cast<const tbBox&>(other);
}

tbBox* tbBox::createCopy() const
{
    return new tbBox(*this);
}

tbBox* tbBox::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbBox(*this, arena);
}

void tbBox::makeEmpty()
{
    minCorner.set(LARGEST, LARGEST, LARGEST);
    maxCorner.set(-LARGEST, -LARGEST, -LARGEST);
}

tbVolume::CONTAINMENT tbBox::contains(const tbVec3& point) const
{
    const bool holds = !tbBox::isEmpty() && minCorner.x <= point.x && point.x <= maxCorner.x &&
                       minCorner.y <= point.y && point.y <= maxCorner.y && minCorner.z <= point.z &&
                       point.z <= maxCorner.z;
    return holds ? INSIDE : OUTSIDE;
}

tbVolume::CONTAINMENT tbBox::contains(const tbRay& ray) const
{
    if (tbBox::isEmpty() || ray.getLength() == 0.0f)
        return OUTSIDE;
    tbVec3 end;
    ray.getEndPoint(end);
    if (!ray.isUnbounded() && contains(*ray.getOrigin()) == INSIDE && contains(end) == INSIDE)
        return INSIDE;
    return isectRayBox(ray, *this) ? PARTIAL : OUTSIDE;
}

tbVolume::CONTAINMENT tbBox::contains(const tbFrustum& frustum) const
{
    if (tbBox::isEmpty() || frustum.isEmpty())
        return OUTSIDE;
    const tbVec3* corners = frustum.getCorners();
    if (std::all_of(corners, corners + tbFrustum::NUM_CORNERS,
                    [this](const tbVec3& corner) { return contains(corner) == INSIDE; }))
        return INSIDE;
    return isectBoxFrust(*this, frustum) ? PARTIAL : OUTSIDE;
}

tbVolume::CONTAINMENT tbBox::contains(const tbSphere& sphere) const
{
    if (tbBox::isEmpty() || sphere.isEmpty())
        return OUTSIDE;
    const tbVec3& c = *sphere.getCenter();
    const float r = sphere.getRadius();
    const tbVec3 reach(r, r, r);
    const tbVec3 low = c - reach;
    const tbVec3 high = c + reach;
    if (minCorner.x <= low.x && minCorner.y <= low.y && minCorner.z <= low.z && high.x <= maxCorner.x &&
        high.y <= maxCorner.y && high.z <= maxCorner.z)
        return INSIDE;
    const bool touches = contains(c) == INSIDE || std::fabs(c.x - minCorner.x) < r ||
                         std::fabs(c.y - minCorner.y) < r || std::fabs(c.z - minCorner.z) < r;
    return touches ? PARTIAL : OUTSIDE;
}

tbVolume::CONTAINMENT tbBox::contains(const tbBox& box) const
{
    if (!isectBoxBox(box, *this))
        return OUTSIDE;
    const tbVec3& low = box.minCorner;
    const tbVec3& high = box.maxCorner;
    const bool whole = low.x >= minCorner.x && low.y >= minCorner.y && low.z >= minCorner.z &&
                       high.x <= maxCorner.x && high.y <= maxCorner.y && high.z <= maxCorner.z;
    return whole ? INSIDE : PARTIAL;
}

tbVolume::CONTAINMENT tbBox::contains(const tbPlane& plane) const
{
    return isectPlaneBox(plane, *this) ? PARTIAL : OUTSIDE;
}

bool tbBox::intersects(const tbFrustum& frustum) const
{
    return isectBoxFrust(*this, frustum);
}

bool tbBox::intersects(const tbSphere& sphere) const
{
    return isectBoxSphere(*this, sphere);
}

bool tbBox::intersects(const tbBox& box) const
{
    return isectBoxBox(*this, box);
}

bool tbBox::intersects(const tbPlane& plane) const
{
    return isectPlaneBox(plane, *this);
}

bool tbBox::intersects(const tbRay& ray) const
{
    return isectRayBox(ray, *this);
}

void tbBox::extendAround(const tbVec3& point)
{
    minCorner.set(std::min(minCorner.x, point.x), std::min(minCorner.y, point.y),
                  std::min(minCorner.z, point.z));
    maxCorner.set(std::max(maxCorner.x, point.x), std::max(maxCorner.y, point.y),
                  std::max(maxCorner.z, point.z));
}

void tbBox::extendAround(const tbSphere& sphere)
{
    if (sphere.isEmpty())
        return;
    const tbVec3 reach(sphere.getRadius(), sphere.getRadius(), sphere.getRadius());
    tbBox::extendAround(*sphere.getCenter() - reach);
    tbBox::extendAround(*sphere.getCenter() + reach);
}

void tbBox::extendAround(const tbBox& box)
{
    if (box.tbBox::isEmpty())
        return;
    const tbVec3 high = box.maxCorner; // `box` may be this
    tbBox::extendAround(box.minCorner);
    tbBox::extendAround(high);
}

void tbBox::getCenter(tbVec3& center) const
{
    center.combine(0.5f, minCorner, 0.5f, maxCorner);
}

void tbBox::read(tbEntry* entry)
{
    minCorner.read(entry);
    maxCorner.read(entry);
}

void tbBox::write(tbEntry* entry) const
{
    minCorner.write(entry);
    maxCorner.write(entry);
}
