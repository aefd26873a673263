#pragma once

#include <tamber/math/tbMatrix.h>
#include <tamber/math/tbVec4.h>

// Three floats: positions and directions in a right-handed space with Z up. Row vectors: v * m carries v by m.
// A plain value; its components are packed.
class TB_API tbVec3 : public tbAllocated<tbVec3>
{
public:
    /// Signs of the components, P where one is positive or zero, N where it is negative; x first.
    enum OCTANT : int
    {
        OCTANT_PPP = 0,
        OCTANT_PPN = 1,
        OCTANT_PNP = 2,
        OCTANT_PNN = 3,
        OCTANT_NPP = 4,
        OCTANT_NPN = 5,
        OCTANT_NNP = 6,
        OCTANT_NNN = 7
    };

    float x;
    float y;
    float z;

    /// Leaves the components unset, so that large arrays cost nothing to make.
    tbVec3() = default;
    tbVec3(float newX, float newY, float newZ) : x(newX), y(newY), z(newZ) {}

    void set(float newX, float newY, float newZ)
    {
        x = newX;
        y = newY;
        z = newZ;
    }
    /// From three consecutive floats.
    void set(const float* floats) { set(floats[0], floats[1], floats[2]); }
    void set(const tbVec3& a) { *this = a; }
    /// Drops w.
    void set(const tbVec4& a) { set(a.x, a.y, a.z); }
    /// Drops w.
    tbVec3& operator=(const tbVec4& a)
    {
        set(a);
        return *this;
    }

    /// Not range checked.
    float& operator[](int i) { return reinterpret_cast<float*>(this)[i]; }
    float operator[](int i) const { return reinterpret_cast<const float*>(this)[i]; }

    void add(const tbVec3& a) { set(x + a.x, y + a.y, z + a.z); }
    void add(const tbVec3& a, const tbVec3& b) { set(a.x + b.x, a.y + b.y, a.z + b.z); }
    void sub(const tbVec3& a) { set(x - a.x, y - a.y, z - a.z); }
    void sub(const tbVec3& a, const tbVec3& b) { set(a.x - b.x, a.y - b.y, a.z - b.z); }
    void scale(float s) { set(x * s, y * s, z * s); }
    void scale(float s, const tbVec3& a) { set(s * a.x, s * a.y, s * a.z); }
    /// this += s * a
    void addScaled(float s, const tbVec3& a) { set(x + s * a.x, y + s * a.y, z + s * a.z); }
    /// this = a + s * b
    void addScaled(const tbVec3& a, float s, const tbVec3& b)
    {
        set(a.x + s * b.x, a.y + s * b.y, a.z + s * b.z);
    }
    /// this = s * a + t * b
    void combine(float s, const tbVec3& a, float t, const tbVec3& b)
    {
        set(s * a.x + t * b.x, s * a.y + t * b.y, s * a.z + t * b.z);
    }
    void negate(const tbVec3& a) { set(-a.x, -a.y, -a.z); }
    float dot(const tbVec3& a) const { return x * a.x + y * a.y + z * a.z; }
    /// this = a x b
    void cross(const tbVec3& a, const tbVec3& b)
    {
        set(a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x);
    }

    float sqrLength() const { return dot(*this); }
    /// As precise as tbSqrt() is.
    float length() const;
    float sqrDistance(const tbVec3& a) const { return (*this - a).sqrLength(); }
    float distance(const tbVec3& a) const { return (*this - a).length(); }
    /// Brings the length to 1 and returns the length before. A squared length within 1e-6 of 1 leaves the vector as
    /// it is and returns 1; one below 1e-12 makes it zero and returns 0.
    float normalize();
    /// Largest component plus thirds of the others, without a root.
    float approxLength() const;
    /// The same estimate for the distance.
    float approxDist(const tbVec3& a) const;
    /// In degrees, from 0 to 180. Not a number when either vector is zero.
    float angleBetween(const tbVec3& a) const;
    /// The unit normal of a triangle whose corners run counterclockwise as seen from where the normal points.
    void makeNormal(const tbVec3& p0, const tbVec3& p1, const tbVec3& p2);
    /// From three consecutive points.
    void makeNormal(const tbVec3* three) { makeNormal(three[0], three[1], three[2]); }

    /// this = v * m by the upper 3x3 only: a direction.
    void xformVec(const tbVec3& v, const tbMatrix& m)
    {
        const float* e = m.getData();
        set(v.x * e[0] + v.y * e[4] + v.z * e[8], v.x * e[1] + v.y * e[5] + v.z * e[9],
            v.x * e[2] + v.y * e[6] + v.z * e[10]);
    }
    /// this = v * m with the translation, without a division by w: a point.
    void xformPt(const tbVec3& v, const tbMatrix& m)
    {
        const float* e = m.getData();
        set(v.x * e[0] + v.y * e[4] + v.z * e[8] + e[12], v.x * e[1] + v.y * e[5] + v.z * e[9] + e[13],
            v.x * e[2] + v.y * e[6] + v.z * e[10] + e[14]);
    }
    /// this = (v, 1) * m divided by w. A w closer to 0 than 1e-6 counts as +1e-6 whatever its sign: points behind
    /// the eye plane are told apart before they come here.
    void fullXformPt(const tbVec3& v, const tbMatrix& m);

    /// Every component within `tol`, bounds included.
    bool almostEqual(const tbVec3& a, float tol) const
    {
        return x >= a.x - tol && x <= a.x + tol && y >= a.y - tol && y <= a.y + tol && z >= a.z - tol &&
               z <= a.z + tol;
    }
    OCTANT getOctant() const { return OCTANT((x < 0.0f ? 4 : 0) | (y < 0.0f ? 2 : 0) | (z < 0.0f ? 1 : 0)); }

    /// Heading in [-90, 270) and pitch in [-90, 90], in degrees, of this direction. (0, 1, 0) has heading 0.
    void getHP(float& h, float& p) const;
    /// The unit direction of a heading and a pitch in degrees. A pitch past the vertical looks backward. Angles that
    /// are not finite give the zero vector.
    void setHP(float h, float p);
    /// The level unit direction of a heading in degrees.
    void setH(float h);

    bool operator==(const tbVec3& a) const { return x == a.x && y == a.y && z == a.z; }
    bool operator!=(const tbVec3& a) const { return !(*this == a); }
    tbVec3 operator+(const tbVec3& a) const { return tbVec3(x + a.x, y + a.y, z + a.z); }
    tbVec3 operator-(const tbVec3& a) const { return tbVec3(x - a.x, y - a.y, z - a.z); }
    tbVec3 operator-() const { return tbVec3(-x, -y, -z); }
    tbVec3 operator*(float s) const { return tbVec3(x * s, y * s, z * s); }
    /// The dot product.
    float operator*(const tbVec3& a) const { return dot(a); }
    /// As xformPt().
    tbVec3 operator*(const tbMatrix& m) const
    {
        tbVec3 result;
        result.xformPt(*this, m);
        return result;
    }
    /// Multiplies by 1 / s.
    tbVec3 operator/(float s) const { return *this * (1.0f / s); }
    tbVec3& operator+=(const tbVec3& a)
    {
        add(a);
        return *this;
    }
    tbVec3& operator-=(const tbVec3& a)
    {
        sub(a);
        return *this;
    }
    tbVec3& operator*=(float s)
    {
        scale(s);
        return *this;
    }
    tbVec3& operator/=(float s)
    {
        scale(1.0f / s);
        return *this;
    }

    void read(tbEntry* entry);
    void write(tbEntry* entry) const;
};
