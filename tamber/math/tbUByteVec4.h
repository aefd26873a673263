#pragma once

#include <tamber/kernel/tbMemory.h>

class tbVec3;
class tbVec4;

// A colour of four bytes, packed. Sums and differences wrap at 256 and never saturate, and products with a float are
// cut to an integer whose low 8 bits are kept: callers that step colours rely on both.
class TB_API tbUByteVec4 : public tbAllocated<tbUByteVec4>
{
public:
    std::uint8_t r;
    std::uint8_t g;
    std::uint8_t b;
    std::uint8_t a;

    /// Leaves the components unset, so that large arrays cost nothing to make.
    tbUByteVec4() = default;
    /// Of each component the low 8 bits.
    tbUByteVec4(int newR, int newG, int newB, int newA) { set(newR, newG, newB, newA); }

    /// Of each component the low 8 bits.
    void set(int newR, int newG, int newB, int newA)
    {
        r = std::uint8_t(newR);
        g = std::uint8_t(newG);
        b = std::uint8_t(newB);
        a = std::uint8_t(newA);
    }
    void set(const tbUByteVec4& other) { *this = other; }
    /// r in bits 0 to 7, g in bits 8 to 15, b in bits 16 to 23, a in bits 24 to 31.
    void set(unsigned int packed)
    {
        set(int(packed & 255), int(packed >> 8 & 255), int(packed >> 16 & 255), int(packed >> 24));
    }
    /// Each float times 255, cut to an integer, low 8 bits: 1.0 gives 255.
    void set(float newR, float newG, float newB, float newA);
    /// a becomes 255.
    void set(const tbVec3& color);
    void set(const tbVec4& color);

    /// Not range checked.
    std::uint8_t& operator[](int i) { return reinterpret_cast<std::uint8_t*>(this)[i]; }
    std::uint8_t operator[](int i) const { return reinterpret_cast<const std::uint8_t*>(this)[i]; }

    void add(const tbUByteVec4& p) { add(*this, p); }
    void add(const tbUByteVec4& p, const tbUByteVec4& q) { set(p.r + q.r, p.g + q.g, p.b + q.b, p.a + q.a); }
    void sub(const tbUByteVec4& p) { sub(*this, p); }
    void sub(const tbUByteVec4& p, const tbUByteVec4& q) { set(p.r - q.r, p.g - q.g, p.b - q.b, p.a - q.a); }
    void scale(float s) { scale(s, *this); }
    void scale(float s, const tbUByteVec4& p);
    /// this += s * p
    void addScaled(float s, const tbUByteVec4& p) { addScaled(*this, s, p); }
    /// this = p + s * q
    void addScaled(const tbUByteVec4& p, float s, const tbUByteVec4& q);
    /// this = s * p + t * q, each product cut on its own.
    void combine(float s, const tbUByteVec4& p, float t, const tbUByteVec4& q);

    /// Compares without sign: a component of `p` below `tol` has a lower bound that wraps, and the test fails. This
    /// is meant; callers that compare dark colours pass small tolerances.
    bool almostEqual(const tbUByteVec4& p, unsigned int tol) const;

    bool operator==(const tbUByteVec4& p) const { return r == p.r && g == p.g && b == p.b && a == p.a; }
    bool operator!=(const tbUByteVec4& p) const { return !(*this == p); }
    tbUByteVec4 operator+(const tbUByteVec4& p) const { return tbUByteVec4(*this) += p; }
    tbUByteVec4 operator-(const tbUByteVec4& p) const { return tbUByteVec4(*this) -= p; }
    tbUByteVec4 operator*(float s) const { return tbUByteVec4(*this) *= s; }
    /// Multiplies by 1 / s.
    tbUByteVec4 operator/(float s) const { return tbUByteVec4(*this) *= 1.0f / s; }
    tbUByteVec4& operator+=(const tbUByteVec4& p)
    {
        add(p);
        return *this;
    }
    tbUByteVec4& operator-=(const tbUByteVec4& p)
    {
        sub(p);
        return *this;
    }
    tbUByteVec4& operator*=(float s)
    {
        scale(s);
        return *this;
    }
    tbUByteVec4& operator/=(float s)
    {
        scale(1.0f / s);
        return *this;
    }

    void read(tbEntry* entry);
    void write(tbEntry* entry) const;
};
