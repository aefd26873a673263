#pragma once

#include <tamber/kernel/tbMemory.h>

class tbMatrix;

// Four floats: homogeneous points, colours (r, g, b, a, or h, s, v, a), quaternions. A plain value; its components
// are packed.
class TB_API tbVec4 : public tbAllocated<tbVec4>
{
public:
    float x;
    float y;
    float z;
    float w;

    /// Leaves the components unset, so that large arrays cost nothing to make.
    tbVec4() = default;
    tbVec4(float newX, float newY, float newZ, float newW) : x(newX), y(newY), z(newZ), w(newW) {}

    void set(float newX, float newY, float newZ, float newW)
    {
        x = newX;
        y = newY;
        z = newZ;
        w = newW;
    }
    /// From four consecutive floats.
    void set(const float* floats) { set(floats[0], floats[1], floats[2], floats[3]); }
    void set(const tbVec4& a) { *this = a; }

    /// Not range checked.
    float& operator[](int i) { return reinterpret_cast<float*>(this)[i]; }
    float operator[](int i) const { return reinterpret_cast<const float*>(this)[i]; }

    void add(const tbVec4& a) { set(x + a.x, y + a.y, z + a.z, w + a.w); }
    void add(const tbVec4& a, const tbVec4& b) { set(a.x + b.x, a.y + b.y, a.z + b.z, a.w + b.w); }
    void sub(const tbVec4& a) { set(x - a.x, y - a.y, z - a.z, w - a.w); }
    void sub(const tbVec4& a, const tbVec4& b) { set(a.x - b.x, a.y - b.y, a.z - b.z, a.w - b.w); }
    void scale(float s) { set(x * s, y * s, z * s, w * s); }
    void scale(float s, const tbVec4& a) { set(s * a.x, s * a.y, s * a.z, s * a.w); }
    /// this += s * a
    void addScaled(float s, const tbVec4& a) { set(x + s * a.x, y + s * a.y, z + s * a.z, w + s * a.w); }
    /// this = a + s * b
    void addScaled(const tbVec4& a, float s, const tbVec4& b)
    {
        set(a.x + s * b.x, a.y + s * b.y, a.z + s * b.z, a.w + s * b.w);
    }
    /// this = s * a + t * b
    void combine(float s, const tbVec4& a, float t, const tbVec4& b)
    {
        set(s * a.x + t * b.x, s * a.y + t * b.y, s * a.z + t * b.z, s * a.w + t * b.w);
    }
    float dot(const tbVec4& a) const { return x * a.x + y * a.y + z * a.z + w * a.w; }

    float sqrLength() const { return dot(*this); }
    /// As precise as tbSqrt() is.
    float length() const;
    float sqrDistance(const tbVec4& a) const { return (*this - a).sqrLength(); }
    float distance(const tbVec4& a) const { return (*this - a).length(); }
    /// Brings the length to 1; a vector shorter than 1e-6 becomes zero. Returns the length before, a tiny one too.
    float normalize();

    /// Every component within `tol`, bounds included.
    bool almostEqual(const tbVec4& a, float tol) const
    {
        return x >= a.x - tol && x <= a.x + tol && y >= a.y - tol && y <= a.y + tol && z >= a.z - tol &&
               z <= a.z + tol && w >= a.w - tol && w <= a.w + tol;
    }

    /// this = v * m, all sixteen elements.
    void xform(const tbVec4& v, const tbMatrix& m);

    /// Converts this colour (r, g, b, a) to out = (h, s, v, a): hue in degrees, -1 for greys. When red is not the
    /// largest component the hue does not arrive in out.x: the value for green lands in the saturation and that for
    /// blue in the value, and out.x is what it was times 60. This is meant: stored colours were made this way.
    void RGBtoHSV(tbVec4& out) const;
    /// Converts this colour (h, s, v, a) to out = (r, g, b, a). Without saturation a hue of 0 or more gives black,
    /// a negative one the grey v. A hue outside [0, 360] leaves r, g and b of `out` as they are.
    void HSVtoRGB(tbVec4& out) const;

    bool operator==(const tbVec4& a) const { return x == a.x && y == a.y && z == a.z && w == a.w; }
    bool operator!=(const tbVec4& a) const { return !(*this == a); }
    tbVec4 operator+(const tbVec4& a) const { return tbVec4(x + a.x, y + a.y, z + a.z, w + a.w); }
    tbVec4 operator-(const tbVec4& a) const { return tbVec4(x - a.x, y - a.y, z - a.z, w - a.w); }
    tbVec4 operator-() const { return tbVec4(-x, -y, -z, -w); }
    tbVec4 operator*(float s) const { return tbVec4(x * s, y * s, z * s, w * s); }
    /// As xform().
    tbVec4 operator*(const tbMatrix& m) const
    {
        tbVec4 result;
        result.xform(*this, m);
        return result;
    }
    /// Multiplies by 1 / s.
    tbVec4 operator/(float s) const { return *this * (1.0f / s); }
    tbVec4& operator+=(const tbVec4& a)
    {
        add(a);
        return *this;
    }
    tbVec4& operator-=(const tbVec4& a)
    {
        sub(a);
        return *this;
    }
    tbVec4& operator*=(float s)
    {
        scale(s);
        return *this;
    }
    tbVec4& operator/=(float s)
    {
        scale(1.0f / s);
        return *this;
    }

    void read(tbEntry* entry);
    void write(tbEntry* entry) const;
};
