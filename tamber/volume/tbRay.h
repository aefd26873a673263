#pragma once

#include <tamber/math/tbVec3.h>

class tbBox;
class tbFrustum;
class tbPlane;
class tbSphere;
class tbVolume;

// A half-line or a segment, for picking and collision. Distances and the length count in units of the direction,
// which is of unit length until the ray is carried by a matrix with a scale.
//
// A negative length means that the ray goes on for ever. A ray of length 0 meets nothing at all.
class TB_API tbRay : public tbAllocated<tbRay>
{
public:
    /// At the origin along +Y with length 0.
    tbRay();
    tbRay(const tbVec3& start, const tbVec3& end) { makeFromPoints(start, end); }
    /// Normalises the direction and keeps the length as given.
    tbRay(const tbVec3& newOrigin, const tbVec3& newDirection, float newLength);
    /// `other` with another length; its direction stays as it is.
    tbRay(const tbRay& other, float newLength);

    /// From `start` to `end`. The length is what tbVec3::normalize() returns: 1 when it is almost 1.
    void makeFromPoints(const tbVec3& start, const tbVec3& end);

    const tbVec3* getOrigin() const { return &origin; }
    const tbVec3* getDirection() const { return &direction; }
    float getLength() const { return length; }
    void setLength(float newLength) { length = newLength; }
    bool isUnbounded() const { return length < 0.0f; }
    void getStartPoint(tbVec3& point) const { point = origin; }
    /// Of an unbounded ray a point some 3.4e36 units away.
    void getEndPoint(tbVec3& point) const;

    /// The direction is not brought back to unit length, on purpose: distances along the ray stay those of the frame
    /// that it comes from.
    void xform(const tbMatrix& m) { xform(*this, m); }
    void xform(const tbRay& source, const tbMatrix& m);

    /// A frustum, and any type but plane, box and sphere, is taken as met without a test, even an empty one, on
    /// purpose: colliders look closer at what they find.
    bool intersects(const tbVolume& volume) const;
    /// With the boundary of the half-space. A ray along the plane does not meet it, even when it lies in it.
    bool intersects(const tbPlane& plane) const;
    /// A sphere behind the origin, on the line of the ray, counts as met, on purpose: rays that begin inside or just
    /// beyond a bound rely on it.
    bool intersects(const tbSphere& sphere) const;
    /// The point where the ray enters is checked against the far side of the box only, on purpose; a ray that
    /// passes a corner closely may count as meeting it.
    bool intersects(const tbBox& box) const;
    bool intersects(const tbFrustum& frustum) const;

    // These return the distance along the ray, or -1.

    /// With a triangle. `hitPoint` is written as soon as the ray meets its plane.
    float intersects(const tbVec3& p0, const tbVec3& p1, const tbVec3& p2, tbVec3& hitPoint) const;
    /// With a quadrilateral, whose plane is that of its first three corners.
    float intersects(const tbVec3& p0, const tbVec3& p1, const tbVec3& p2, const tbVec3& p3,
                     tbVec3& hitPoint) const;
    /// With a line segment, which must come within 1e-6 of the ray.
    float intersects(const tbVec3& p0, const tbVec3& p1, tbVec3& hitPoint) const;

    bool operator==(const tbRay& other) const
    {
        return length == other.length && origin == other.origin && direction == other.direction;
    }
    bool operator!=(const tbRay& other) const { return !(*this == other); }

    void read(tbEntry* entry);
    void write(tbEntry* entry) const;

private:
    float findPlanePoint(const tbVec3& normal, const tbVec3& onPlane, tbVec3& hitPoint) const;

    tbVec3 origin;
    tbVec3 direction;
    float length;
};
