#pragma once

#include <tamber/math/tbVec3.h>
#include <tamber/volume/tbVolume.h>

// A plane and the half-space below it: the points with normal * p <= offset are its inside. It is never empty and
// never grows.
class TB_API tbPlane : public tbVolume
{
public:
    using tbVolume::contains;
    using tbVolume::extendAround;
    using tbVolume::intersects;

    /// Everything below z = 0.
    tbPlane();
    /// As make(); so the next one.
    tbPlane(const tbVec3& newNormal, float newOffset);
    tbPlane(const tbVec3& p0, const tbVec3& p1, const tbVec3& p2);
    tbPlane(const tbPlane& other);
    /// A copy that lives in an arena. A plane owns nothing, so nothing is taken from it.
    tbPlane(const tbPlane& other, tbArena* arena);
    tbPlane& operator=(const tbPlane& other);

    /// Normalises the normal and stores the offset as it is.
    void make(const tbVec3& newNormal, float newOffset);
    /// Through a point.
    void make(const tbVec3& point, const tbVec3& newNormal);
    /// Through three points that run counterclockwise as seen from where the normal points.
    void make(const tbVec3& p0, const tbVec3& p1, const tbVec3& p2);
    /// Through three consecutive points.
    void make(const tbVec3* three) { make(three[0], three[1], three[2]); }

    /// Normalises the normal; the offset stays.
    void setNormal(const tbVec3& newNormal);
    void setNormal(float x, float y, float z) { setNormal(tbVec3(x, y, z)); }
    const tbVec3* getNormal() const { return &normal; }
    void setOffset(float newOffset) { offset = newOffset; }
    float getOffset() const { return offset; }
    /// 0 to 2 are the normal, 3 is the offset. Not range checked.
    float operator[](int i) const { return i == 3 ? offset : normal[i]; }

    /// -(normal * point + offset), on purpose with the offset added: callers keep offsets of the other sign for it.
    float pointDistance(const tbVec3& point) const { return -(normal.dot(point) + offset); }
    /// Octant of the normal. The corner of a box there lies farthest along the normal.
    tbVec3::OCTANT getPosOctant() const { return octant; }
    tbVec3::OCTANT getNegOctant() const { return tbVec3::OCTANT(~octant & 7); }
    /// Where the ray meets the plane; false, and `out` untouched, when it does not. See tbRay::intersects().
    bool findIsectPoint(const tbRay& ray, tbVec3& out) const;

    /// this = `source` carried by `m`. The normal goes through the matrix itself and not through its inverse
    /// transpose, on purpose: the planes of frustums rely on it.
    void xform(const tbPlane& source, const tbMatrix& m);

    bool operator==(const tbPlane& other) const { return normal == other.normal && offset == other.offset; }
    bool operator!=(const tbPlane& other) const { return !(*this == other); }

    void copy(const tbVolume& other) override;
    tbPlane* createCopy() const override;
    tbPlane* createDisposableCopy(tbArena* arena) const override;
    void xform(const tbMatrix& m) override;
    /// Does nothing.
    void makeEmpty() override;
    bool isEmpty() const override { return false; }
    CONTAINMENT contains(const tbVec3& point) const override;
    CONTAINMENT contains(const tbRay& ray) const override;
    CONTAINMENT contains(const tbFrustum& frustum) const override;
    CONTAINMENT contains(const tbSphere& sphere) const override;
    CONTAINMENT contains(const tbBox& box) const override;
    /// INSIDE when the other half-space lies in this one, which takes normals that are the same.
    CONTAINMENT contains(const tbPlane& plane) const override;
    bool intersects(const tbFrustum& frustum) const override;
    bool intersects(const tbSphere& sphere) const override;
    bool intersects(const tbBox& box) const override;
    bool intersects(const tbPlane& plane) const override;
    /// True when the ray meets the boundary.
    bool intersects(const tbRay& ray) const override;
    // None of these does anything.
    void extendAround(const tbVec3& point) override;
    void extendAround(const tbVec3* points, int count) override;
    void extendAround(const tbRay& ray) override;
    void extendAround(const tbFrustum& frustum) override;
    void extendAround(const tbSphere& sphere) override;
    void extendAround(const tbBox& box) override;
    void extendAround(const tbPlane& plane) override;
    void extendAround(const tbVolume& volume) override;
    /// The point of the boundary that is nearest to the origin.
    void getCenter(tbVec3& center) const override;
    void read(tbEntry* entry) override;
    void write(tbEntry* entry) const override;

private:
    tbVec3 normal;
    float offset;
    tbVec3::OCTANT octant;
};
