#pragma once

#include <tamber/kernel/tbMemory.h>

class tbVec3;
class tbVec4;

// A colour of three bytes, packed. Sums and differences wrap at 256 and never saturate, and products with a float
// are cut to an integer whose low 8 bits are kept: callers that step colours rely on both.
class TB_API tbUByteVec3 : public tbAllocated<tbUByteVec3>
{
public:
    std::uint8_t r;
    std::uint8_t g;
    std::uint8_t b;

    /// Leaves the components unset, so that large arrays cost nothing to make.
    tbUByteVec3() = default;
    /// Of each component the low 8 bits.
    tbUByteVec3(int newR, int newG, int newB) { set(newR, newG, newB); }

    /// Of each component the low 8 bits.
    void set(int newR, int newG, int newB)
    {
        r = std::uint8_t(newR);
        g = std::uint8_t(newG);
        b = std::uint8_t(newB);
    }
    void set(const tbUByteVec3& a) { *this = a; }
    /// r in bits 0 to 7, g in bits 8 to 15, b in bits 16 to 23.
    void set(unsigned int packed) { set(int(packed & 255), int(packed >> 8 & 255), int(packed >> 16 & 255)); }
    /// Each float times 255, cut to an integer, low 8 bits: 1.0 gives 255.
    void set(float newR, float newG, float newB);
    void set(const tbVec3& a);
    /// Drops a.
    void set(const tbVec4& a);

    /// Not range checked.
    std::uint8_t& operator[](int i) { return reinterpret_cast<std::uint8_t*>(this)[i]; }
    std::uint8_t operator[](int i) const { return reinterpret_cast<const std::uint8_t*>(this)[i]; }

    void add(const tbUByteVec3& a) { add(*this, a); }
    void add(const tbUByteVec3& p, const tbUByteVec3& q) { set(p.r + q.r, p.g + q.g, p.b + q.b); }
    void sub(const tbUByteVec3& a) { sub(*this, a); }
    void sub(const tbUByteVec3& p, const tbUByteVec3& q) { set(p.r - q.r, p.g - q.g, p.b - q.b); }
    void scale(float s) { scale(s, *this); }
    void scale(float s, const tbUByteVec3& a);
    /// this += s * a
    void addScaled(float s, const tbUByteVec3& a) { addScaled(*this, s, a); }
    /// this = p + s * q
    void addScaled(const tbUByteVec3& p, float s, const tbUByteVec3& q);
    /// this = s * p + t * q, each product cut on its own.
    void combine(float s, const tbUByteVec3& p, float t, const tbUByteVec3& q);

    /// Compares without sign: a component of `a` below `tol` has a lower bound that wraps, and the test fails. This
    /// is meant; callers that compare dark colours pass small tolerances.
    bool almostEqual(const tbUByteVec3& a, unsigned int tol) const;

    bool operator==(const tbUByteVec3& a) const { return r == a.r && g == a.g && b == a.b; }
    bool operator!=(const tbUByteVec3& a) const { return !(*this == a); }
    tbUByteVec3 operator+(const tbUByteVec3& a) const { return tbUByteVec3(*this) += a; }
    tbUByteVec3 operator-(const tbUByteVec3& a) const { return tbUByteVec3(*this) -= a; }
    tbUByteVec3 operator*(float s) const { return tbUByteVec3(*this) *= s; }
    /// Multiplies by 1 / s.
    tbUByteVec3 operator/(float s) const { return tbUByteVec3(*this) *= 1.0f / s; }
    tbUByteVec3& operator+=(const tbUByteVec3& a)
    {
        add(a);
        return *this;
    }
    tbUByteVec3& operator-=(const tbUByteVec3& a)
    {
        sub(a);
        return *this;
    }
    tbUByteVec3& operator*=(float s)
    {
        scale(s);
        return *this;
    }
    tbUByteVec3& operator/=(float s)
    {
        scale(1.0f / s);
        return *this;
    }

    void read(tbEntry* entry);
    void write(tbEntry* entry) const;
};
