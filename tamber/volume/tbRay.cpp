#include <tamber/volume/tbRay.h>

#include <tamber/io/tbEntry.h>
#include <tamber/volume/tbBox.h>
#include <tamber/volume/tbFrustum.h>
#include <tamber/volume/tbPlane.h>
#include <tamber/volume/tbSphere.h>

#include <bit>
#include <cmath>

namespace
{

constexpr float MISS = -1.0f;
// Minus the length that stands for an endless ray.
constexpr float ENDLESS = std::bit_cast<float>(0xFC23D709u);
constexpr float SQR_MEETING_DISTANCE = 1.0e-12f;

double dotOf(const tbVec3& a, const tbVec3& b)
{
    return double(a.x) * double(b.x) + double(a.y) * double(b.y) + double(a.z) * double(b.z);
}

// The two axes that are kept when triangles are looked at along the largest component of their normal.
struct Projection
{
    explicit Projection(const tbVec3& normal)
    {
        const float x = std::fabs(normal.x);
        const float y = std::fabs(normal.y);
        const float z = std::fabs(normal.z);
        if (y >= x && y >= z)
            v = 2;
        else if (z >= x && z >= y)
            v = 1;
        else
        {
            u = 1;
            v = 2;
        }
    }

    // True when `point`, which lies in the plane of the triangle, is inside it or on its edges.
    bool isInside(const tbVec3& point, const tbVec3& p0, const tbVec3& p1, const tbVec3& p2) const
    {
        const float u0 = point[u] - p0[u];
        const float v0 = point[v] - p0[v];
        const float u1 = p1[u] - p0[u];
        const float v1 = p1[v] - p0[v];
        const float u2 = p2[u] - p0[u];
        const float v2 = p2[v] - p0[v];
        float alpha;
        float beta;
        if (u1 == 0.0f)
        {
            beta = u0 / u2;
            alpha = (v0 - beta * v2) / v1;
        }
        else
        {
            beta = (v0 * u1 - u0 * v1) / (v2 * u1 - u2 * v1);
            alpha = (u0 - beta * u2) / u1;
        }
        return beta >= 0.0f && beta <= 1.0f && alpha >= 0.0f && alpha + beta <= 1.0f;
    }

    int u = 0;
    int v = 0;
};

} // namespace

tbRay::tbRay() : origin(0.0f, 0.0f, 0.0f), direction(0.0f, 1.0f, 0.0f), length(0.0f) {}

tbRay::tbRay(const tbVec3& newOrigin, const tbVec3& newDirection, float newLength)
    : origin(newOrigin),
      direction(newDirection),
      length(newLength)
{
    direction.normalize();
}

tbRay::tbRay(const tbRay& other, float newLength)
    : origin(other.origin),
      direction(other.direction),
      length(newLength)
{
}

void tbRay::makeFromPoints(const tbVec3& start, const tbVec3& end)
{
    direction.sub(end, start);
    origin = start;
    length = direction.normalize();
}

void tbRay::getEndPoint(tbVec3& point) const
{
    point.addScaled(origin, isUnbounded() ? -ENDLESS : length, direction);
}

void tbRay::xform(const tbRay& source, const tbMatrix& m)
{
    origin.xformPt(source.origin, m);
    direction.xformVec(source.direction, m);
    length = source.length;
}

bool tbRay::intersects(const tbVolume& volume) const
{
    switch (volume.getType())
    {
    case tbVolume::PLANE:
        return intersects(static_cast<const tbPlane&>(volume));
    case tbVolume::BOX:
        return intersects(static_cast<const tbBox&>(volume));
    case tbVolume::SPHERE:
        return intersects(static_cast<const tbSphere&>(volume));
    default:
        return length != 0.0f;
    }
}

bool tbRay::intersects(const tbPlane& plane) const
{
    tbVec3 point;
    return plane.findIsectPoint(*this, point);
}

// In double: the square of a distance minus another loses what matters of spheres that are far away.
bool tbRay::intersects(const tbSphere& sphere) const
{
    if (length == 0.0f || sphere.isEmpty())
        return false;
    const tbVec3 away = *sphere.getCenter() - origin;
    const double sqrSpeed = dotOf(direction, direction); // 1 unless a scale carried the ray
    const double sqrRadius = double(sphere.getRadius()) * double(sphere.getRadius());
    if (!(sqrSpeed > 0.0))
        return dotOf(away, away) <= sqrRadius;
    const double along = dotOf(direction, away) / sqrSpeed;
    const double discriminant = (sqrRadius - dotOf(away, away)) / sqrSpeed + along * along;
    if (discriminant < 0.0)
        return false;
    const double entry = along - std::sqrt(discriminant);
    return isUnbounded() || !(entry > double(length));
}

bool tbRay::intersects(const tbBox& box) const
{
    if (length == 0.0f || box.isEmpty())
        return false;
    enum SIDE
    {
        LOW,
        MIDDLE,
        HIGH
    };
    const tbVec3& low = *box.getMin();
    const tbVec3& high = *box.getMax();
    SIDE sides[3];
    tbVec3 candidate;
    for (int i = 0; i < 3; ++i)
    {
        sides[i] = origin[i] > high[i] ? HIGH : origin[i] < low[i] ? LOW : MIDDLE;
        candidate[i] = sides[i] == HIGH ? high[i] : low[i];
    }
    if (sides[0] == MIDDLE && sides[1] == MIDDLE && sides[2] == MIDDLE)
        return true;

    tbVec3 times;
    int axis = 0;
    for (int i = 0; i < 3; ++i)
    {
        const bool crosses = sides[i] != MIDDLE && direction[i] != 0.0f;
        times[i] = crosses ? (candidate[i] - origin[i]) / direction[i] : -1.0f;
        if (times[i] > times[axis])
            axis = i;
    }
    if (!(times[axis] >= 0.0f))
        return false;

    tbVec3 hit;
    hit.addScaled(origin, times[axis], direction);
    hit[axis] = candidate[axis];
    for (int i = 0; i < 3; ++i)
    {
        // One side only, on purpose: colliders look closer at what they find.
        if (i != axis && ((sides[i] == HIGH && hit[i] < low[i]) || (sides[i] == LOW && hit[i] > high[i])))
            return false;
    }
    const tbVec3 reach = direction * length;
    return isUnbounded() || !(reach.sqrLength() < hit.sqrDistance(origin));
}

bool tbRay::intersects(const tbFrustum&) const
{
    return length != 0.0f;
}

// Where the ray meets the plane of a triangle, or -1.
float tbRay::findPlanePoint(const tbVec3& normal, const tbVec3& onPlane, tbVec3& hitPoint) const
{
    const float speed = direction.dot(normal);
    if (length == 0.0f || speed == 0.0f)
        return MISS;
    const float t = -(normal.dot(origin) - normal.dot(onPlane)) / speed;
    if (!(t > 0.0f && (isUnbounded() || t <= length)))
        return MISS;
    hitPoint.addScaled(origin, t, direction);
    return t;
}

float tbRay::intersects(const tbVec3& p0, const tbVec3& p1, const tbVec3& p2, tbVec3& hitPoint) const
{
    tbVec3 normal;
    tbVec3 point;
    normal.makeNormal(p0, p1, p2);
    const float t = findPlanePoint(normal, p0, point);
    if (!(t > 0.0f))
        return MISS;
    const bool inside = Projection(normal).isInside(point, p0, p1, p2);
    hitPoint = point; // may be a corner
    return inside ? t : MISS;
}

float tbRay::intersects(const tbVec3& p0, const tbVec3& p1, const tbVec3& p2, const tbVec3& p3,
                        tbVec3& hitPoint) const
{
    tbVec3 normal;
    tbVec3 point;
    normal.makeNormal(p0, p1, p2);
    const float t = findPlanePoint(normal, p0, point);
    if (!(t > 0.0f))
        return MISS;
    const Projection projection(normal);
    const bool inside = projection.isInside(point, p0, p1, p2) || projection.isInside(point, p0, p2, p3);
    hitPoint = point; // may be a corner
    return inside ? t : MISS;
}

// Each of the two lies in a plane that holds the common perpendicular as well; where each meets the plane of the other
// they are nearest.
float tbRay::intersects(const tbVec3& p0, const tbVec3& p1, tbVec3& hitPoint) const
{
    if (length == 0.0f)
        return MISS;
    const tbRay segment(p0, p1);
    tbVec3 perpendicular;
    tbVec3 ownNormal;
    tbVec3 segmentNormal;
    perpendicular.cross(direction, segment.direction);
    perpendicular.normalize();
    ownNormal.cross(direction, perpendicular);
    segmentNormal.cross(segment.direction, perpendicular);
    tbPlane ownPlane;
    tbPlane segmentPlane;
    ownPlane.make(origin, ownNormal);
    segmentPlane.make(p0, segmentNormal);
    tbVec3 onRay;
    tbVec3 onSegment;
    if (!segmentPlane.findIsectPoint(*this, onRay) || !ownPlane.findIsectPoint(segment, onSegment) ||
        !(onRay.sqrDistance(onSegment) <= SQR_MEETING_DISTANCE))
        return MISS;
    hitPoint = onRay;
    return std::sqrt(onRay.sqrDistance(origin));
}

void tbRay::read(tbEntry* entry)
{
    origin.read(entry);
    direction.read(entry);
    length = entry->readFloat();
}

void tbRay::write(tbEntry* entry) const
{
    origin.write(entry);
    direction.write(entry);
    entry->writeFloat(length);
}
