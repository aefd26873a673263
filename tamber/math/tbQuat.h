#pragma once

#include <tamber/math/tbVec4.h>

class tbVec3;

// A rotation as a quaternion: vector part x, y, z and scalar part w. The identity is (0, 0, 0, 1). It is the conjugate
// of the customary one for the same turn, so readers of foreign files negate x, y and z.
class TB_API tbQuat : public tbVec4
{
public:
    /// Leaves the components unset.
    tbQuat() = default;
    tbQuat(float newX, float newY, float newZ, float newW) : tbVec4(newX, newY, newZ, newW) {}

    /// this = a * b, the Hamilton product; either may be this.
    void mult(const tbQuat& a, const tbQuat& b)
    {
        set(a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y, a.w * b.y - a.x * b.z + a.y * b.w + a.z * b.x,
            a.w * b.z + a.x * b.y - a.y * b.x + a.z * b.w, a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z);
    }
    tbQuat operator*(const tbQuat& q) const
    {
        tbQuat product;
        product.mult(*this, q);
        return product;
    }
    tbQuat& operator*=(const tbQuat& q)
    {
        mult(*this, q);
        return *this;
    }
    /// Every component times s.
    tbQuat& operator*=(float s)
    {
        scale(s);
        return *this;
    }

    void conjugate(const tbQuat& q) { set(-q.x, -q.y, -q.z, q.w); }
    /// The conjugate divided by the squared length. A zero quaternion gives components that are not numbers.
    void invert(const tbQuat& q);

    /// From the rotation of a matrix, which is not checked: a scaled one gives a quaternion of another length.
    void setMatrix(const tbMatrix& m);
    /// m becomes the rotation.
    void getMatrix(tbMatrix& m) const;
    /// Heading, pitch and roll in degrees.
    void setHPR(const tbVec3& hpr);
    void getHPR(tbVec3& hpr) const;

    /// Turns evenly from a (t = 0) to b (t = 1) along the shorter arc.
    void slerp(float t, const tbQuat& a, const tbQuat& b);
    /// Straight from a to b along the shorter arc. The result is not of unit length.
    void lerp(float t, const tbQuat& a, const tbQuat& b);
};
