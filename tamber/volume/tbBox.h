#pragma once

#include <tamber/math/tbVec3.h>
#include <tamber/volume/tbVolume.h>

// A box along the axes.
class TB_API tbBox : public tbVolume
{
public:
    using tbVolume::contains;
    using tbVolume::extendAround;
    using tbVolume::intersects;

    /// Empty.
    tbBox();
    tbBox(const tbVec3& newMin, const tbVec3& newMax);
    tbBox(const tbBox& other);
    /// A copy that lives in an arena. A box owns nothing, so nothing is taken from it.
    tbBox(const tbBox& other, tbArena* arena);
    tbBox& operator=(const tbBox& other);

    const tbVec3* getMin() const { return &minCorner; }
    const tbVec3* getMax() const { return &maxCorner; }
    virtual void setMin(const tbVec3& corner);
    virtual void setMax(const tbVec3& corner);
    /// A component is the maximum where the octant is positive and the minimum where it is negative.
    void getCorner(tbVec3::OCTANT octant, tbVec3& corner) const
    {
        corner.set((octant & 4) != 0 ? minCorner.x : maxCorner.x,
                   (octant & 2) != 0 ? minCorner.y : maxCorner.y,
                   (octant & 1) != 0 ? minCorner.z : maxCorner.z);
    }

    /// this = the box around `source` carried by `m`, whose column 3 is ignored.
    void xform(const tbBox& source, const tbMatrix& m);

    bool operator==(const tbBox& other) const
    {
        return minCorner == other.minCorner && maxCorner == other.maxCorner;
    }
    bool operator!=(const tbBox& other) const { return !(*this == other); }

    void copy(const tbVolume& other) override;
    tbBox* createCopy() const override;
    tbBox* createDisposableCopy(tbArena* arena) const override;
    void xform(const tbMatrix& m) override;
    /// The largest finite numbers, reversed.
    void makeEmpty() override;
    /// Looks at x alone, on purpose: a box made by hand that is reversed along y or z counts as filled.
    bool isEmpty() const override { return maxCorner.x < minCorner.x; }
    CONTAINMENT contains(const tbVec3& point) const override;
    CONTAINMENT contains(const tbRay& ray) const override;
    CONTAINMENT contains(const tbFrustum& frustum) const override;
    /// A sphere that is neither inside nor has its center in the box is tried against the three minimum faces only,
    /// on purpose: one that crosses a maximum face alone counts as outside.
    CONTAINMENT contains(const tbSphere& sphere) const override;
    CONTAINMENT contains(const tbBox& box) const override;
    CONTAINMENT contains(const tbPlane& plane) const override;
    bool intersects(const tbFrustum& frustum) const override;
    bool intersects(const tbSphere& sphere) const override;
    bool intersects(const tbBox& box) const override;
    bool intersects(const tbPlane& plane) const override;
    bool intersects(const tbRay& ray) const override;
    void extendAround(const tbVec3& point) override;
    void extendAround(const tbSphere& sphere) override;
    void extendAround(const tbBox& box) override;
    void getCenter(tbVec3& center) const override;
    void read(tbEntry* entry) override;
    void write(tbEntry* entry) const override;

private:
    tbVec3 minCorner;
    tbVec3 maxCorner;
};
