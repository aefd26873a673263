#include <tamber/volume/tbVolume.h>

#include <tamber/volume/tbBox.h>
#include <tamber/volume/tbFrustum.h>
#include <tamber/volume/tbPlane.h>
#include <tamber/volume/tbRay.h>
#include <tamber/volume/tbSphere.h>

tbVolume::~tbVolume() = default;

tbVolume& tbVolume::operator=(const tbVolume& other)
{
    if (this != &other)
        copy(other);
    return *this;
}

bool tbVolume::operator==(const tbVolume& other) const
{
    if (type != other.type)
        return false;
    switch (type)
    {
    case PLANE:
        return static_cast<const tbPlane&>(*this) == static_cast<const tbPlane&>(other);
    case BOX:
        return static_cast<const tbBox&>(*this) == static_cast<const tbBox&>(other);
    case SPHERE:
        return static_cast<const tbSphere&>(*this) == static_cast<const tbSphere&>(other);
    case FRUSTUM:
        return static_cast<const tbFrustum&>(*this) == static_cast<const tbFrustum&>(other);
    default:
        return this == &other;
    }
}

tbVolume::CONTAINMENT tbVolume::contains(const tbVolume& volume) const
{
    if (isEmpty() || volume.isEmpty())
        return OUTSIDE;
    switch (volume.type)
    {
    case PLANE:
        return contains(static_cast<const tbPlane&>(volume));
    case BOX:
        return contains(static_cast<const tbBox&>(volume));
    case SPHERE:
        return contains(static_cast<const tbSphere&>(volume));
    case FRUSTUM:
        return contains(static_cast<const tbFrustum&>(volume));
    default:
        return OUTSIDE;
    }
}

bool tbVolume::intersects(const tbVolume& volume) const
{
    if (isEmpty() || volume.isEmpty())
        return false;
    switch (volume.type)
    {
    case PLANE:
        return intersects(static_cast<const tbPlane&>(volume));
    case BOX:
        return intersects(static_cast<const tbBox&>(volume));
    case SPHERE:
        return intersects(static_cast<const tbSphere&>(volume));
    case FRUSTUM:
        return intersects(static_cast<const tbFrustum&>(volume));
    default:
        return false;
    }
}

void tbVolume::extendAround(const tbVec3* points, int count)
{
    for (int i = 0; i < count; ++i)
        extendAround(points[i]);
}

void tbVolume::extendAround(const tbRay& ray)
{
    if (ray.getLength() == 0.0f)
        return;
    tbVec3 ends[2];
    ray.getStartPoint(ends[0]);
    ray.getEndPoint(ends[1]);
    extendAround(ends, 2);
}

void tbVolume::extendAround(const tbFrustum& frustum)
{
    if (!frustum.isEmpty())
        extendAround(frustum.getCorners(), tbFrustum::NUM_CORNERS);
}

void tbVolume::extendAround(const tbPlane&) {}

void tbVolume::extendAround(const tbVolume& volume)
{
    switch (volume.type)
    {
    case BOX:
        extendAround(static_cast<const tbBox&>(volume));
        break;
    case SPHERE:
        extendAround(static_cast<const tbSphere&>(volume));
        break;
    case FRUSTUM:
        extendAround(static_cast<const tbFrustum&>(volume));
        break;
    case PLANE:
        break;
    }
}
