#pragma once

#include <tamber/math/tbVec3.h>
#include <tamber/volume/tbVolume.h>

// A sphere. It is empty exactly when its radius is -1; a radius of 0 is a point.
class TB_API tbSphere : public tbVolume
{
public:
    using tbVolume::contains;
    using tbVolume::extendAround;
    using tbVolume::intersects;

    /// Empty, with its center at the origin.
    tbSphere();
    tbSphere(const tbVec3& newCenter, float newRadius);
    tbSphere(const tbSphere& other);
    /// A copy that lives in an arena. A sphere owns nothing, so nothing is taken from it.
    tbSphere(const tbSphere& other, tbArena* arena);
    tbSphere& operator=(const tbSphere& other);

    const tbVec3* getCenter() const { return &center; }
    float getRadius() const { return radius; }
    virtual void setRadius(float newRadius);
    virtual void setCenter(const tbVec3& newCenter);

    /// this = `source` carried by `m`. The scale along Z stands for all axes, on purpose: bounds of unevenly scaled
    /// models rely on it.
    void xform(const tbSphere& source, const tbMatrix& m);

    bool operator==(const tbSphere& other) const { return center == other.center && radius == other.radius; }
    bool operator!=(const tbSphere& other) const { return !(*this == other); }
    /// Radii only.
    bool operator<=(const tbSphere& other) const { return radius <= other.radius; }
    /// Radii only.
    bool operator>=(const tbSphere& other) const { return radius >= other.radius; }

    void copy(const tbVolume& other) override;
    tbSphere* createCopy() const override;
    tbSphere* createDisposableCopy(tbArena* arena) const override;
    void xform(const tbMatrix& m) override;
    void makeEmpty() override;
    bool isEmpty() const override { return radius == -1.0f; }
    CONTAINMENT contains(const tbVec3& point) const override;
    CONTAINMENT contains(const tbRay& ray) const override;
    CONTAINMENT contains(const tbFrustum& frustum) const override;
    CONTAINMENT contains(const tbSphere& sphere) const override;
    /// Asks for the lowest and the highest corner only, on purpose: a box counts as inside when both are.
    CONTAINMENT contains(const tbBox& box) const override;
    CONTAINMENT contains(const tbPlane& plane) const override;
    bool intersects(const tbFrustum& frustum) const override;
    bool intersects(const tbSphere& sphere) const override;
    bool intersects(const tbBox& box) const override;
    bool intersects(const tbPlane& plane) const override;
    bool intersects(const tbRay& ray) const override;
    void extendAround(const tbVec3& point) override;
    /// An empty sphere takes the mean of the points as its center; one that is not is extended around each in turn.
    void extendAround(const tbVec3* points, int count) override;
    void extendAround(const tbSphere& sphere) override;
    void extendAround(const tbBox& box) override;
    void getCenter(tbVec3& out) const override;
    void read(tbEntry* entry) override;
    void write(tbEntry* entry) const override;

private:
    tbVec3 center;
    float radius;
};

static_assert(sizeof(tbSphere) <= 32, "graphs hold one sphere for each node");
