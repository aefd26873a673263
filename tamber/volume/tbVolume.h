#pragma once

#include <tamber/kernel/tbMemory.h>

class tbBox;
class tbFrustum;
class tbMatrix;
class tbPlane;
class tbRay;
class tbSphere;
class tbVec3;

// A region of space that answers for every other kind: does it contain it, does it touch it, and how does it grow
// around it. Volumes are plain values, not counted objects.
//
// An empty volume and a ray of length 0 are contained nowhere, touch nothing and make nothing grow. Where the exact
// answer would cost too much, a test errs towards PARTIAL and true.
class TB_API tbVolume : public tbAllocated<tbVolume>
{
public:
    enum TYPE : int
    {
        PLANE = 0,
        BOX = 1,
        SPHERE = 2,
        FRUSTUM = 3
    };
    enum CONTAINMENT : int
    {
        OUTSIDE = 0, // no part of the tested thing is in this volume
        PARTIAL = 1, // some of it is, or it could not be told cheaply
        INSIDE = 2   // all of it is
    };

    virtual ~tbVolume();
    /// Takes the values of another volume of the same type; one of another type changes nothing.
    virtual void copy(const tbVolume& other) = 0;
    /// A copy made with `new`, which the caller deletes; null when memory is out.
    virtual tbVolume* createCopy() const = 0;
    /// A copy that lives in `arena` and is never deleted; null when memory is out.
    virtual tbVolume* createDisposableCopy(tbArena* arena) const = 0;
    /// Carries this volume by `m`; an empty one stays empty.
    virtual void xform(const tbMatrix& m) = 0;
    virtual void makeEmpty() = 0;
    virtual bool isEmpty() const = 0;

    virtual CONTAINMENT contains(const tbVec3& point) const = 0;
    virtual CONTAINMENT contains(const tbRay& ray) const = 0;
    virtual CONTAINMENT contains(const tbFrustum& frustum) const = 0;
    virtual CONTAINMENT contains(const tbSphere& sphere) const = 0;
    virtual CONTAINMENT contains(const tbBox& box) const = 0;
    virtual CONTAINMENT contains(const tbPlane& plane) const = 0;
    /// As the overload for the volume's type.
    virtual CONTAINMENT contains(const tbVolume& volume) const;

    virtual bool intersects(const tbFrustum& frustum) const = 0;
    virtual bool intersects(const tbSphere& sphere) const = 0;
    virtual bool intersects(const tbBox& box) const = 0;
    virtual bool intersects(const tbPlane& plane) const = 0;
    virtual bool intersects(const tbRay& ray) const = 0;
    /// As the overload for the volume's type.
    virtual bool intersects(const tbVolume& volume) const;

    virtual void extendAround(const tbVec3& point) = 0;
    virtual void extendAround(const tbVec3* points, int count);
    /// Around the part of the ray from its start to its end point.
    virtual void extendAround(const tbRay& ray);
    virtual void extendAround(const tbFrustum& frustum);
    virtual void extendAround(const tbSphere& sphere) = 0;
    virtual void extendAround(const tbBox& box) = 0;
    /// A plane has no bounds, and nothing happens.
    virtual void extendAround(const tbPlane& plane);
    /// As the overload for the volume's type.
    virtual void extendAround(const tbVolume& volume);

    virtual void getCenter(tbVec3& center) const = 0;
    virtual void read(tbEntry* entry) = 0;
    virtual void write(tbEntry* entry) const = 0;

    TYPE getType() const { return type; }
    /// True when both are of the same type and have the same values.
    bool operator==(const tbVolume& other) const;
    bool operator!=(const tbVolume& other) const { return !(*this == other); }
    /// As copy().
    tbVolume& operator=(const tbVolume& other);

protected:
    explicit tbVolume(TYPE newType) : type(newType) {}
    tbVolume(const tbVolume& other) = default;

    // Each false when an operand is empty. Touching counts.
    static bool isectBoxBox(const tbBox& a, const tbBox& b);
    /// False for a sphere whose radius is not above 0; so in all tests of spheres but that of two.
    static bool isectBoxSphere(const tbBox& box, const tbSphere& sphere);
    /// Errs towards true.
    static bool isectBoxFrust(const tbBox& box, const tbFrustum& frustum);
    static bool isectSphereSphere(const tbSphere& a, const tbSphere& b);
    /// Errs towards true.
    static bool isectSphereFrust(const tbSphere& sphere, const tbFrustum& frustum);
    /// True unless a face of one of them separates the two.
    static bool isectFrustFrust(const tbFrustum& a, const tbFrustum& b);
    // Planes count as the half-spaces that they bound.
    static bool isectPlaneBox(const tbPlane& plane, const tbBox& box);
    static bool isectPlaneSphere(const tbPlane& plane, const tbSphere& sphere);
    static bool isectPlanePlane(const tbPlane& a, const tbPlane& b);
    static bool isectPlaneFrust(const tbPlane& plane, const tbFrustum& frustum);
    // As tbRay tests them; the plane counts as the boundary, and the frustum is really tested.
    static bool isectRayBox(const tbRay& ray, const tbBox& box);
    static bool isectRaySphere(const tbRay& ray, const tbSphere& sphere);
    static bool isectRayPlane(const tbRay& ray, const tbPlane& plane);
    static bool isectRayFrust(const tbRay& ray, const tbFrustum& frustum);

private:
    TYPE type;
};
