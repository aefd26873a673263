#pragma once

#include <tamber/kernel/tbMemory.h>

// Two floats: positions in a plane, texture coordinates. A plain value; its components are packed.
class TB_API tbVec2 : public tbAllocated<tbVec2>
{
public:
    /// Signs of the components, P where one is positive or zero, N where it is negative; x first.
    enum QUADRANT : int
    {
        QUADRANT_PP = 0,
        QUADRANT_PN = 1,
        QUADRANT_NP = 2,
        QUADRANT_NN = 3
    };

    float x;
    float y;

    /// Leaves the components unset, so that large arrays cost nothing to make.
    tbVec2() = default;
    tbVec2(float newX, float newY) : x(newX), y(newY) {}

    void set(float newX, float newY)
    {
        x = newX;
        y = newY;
    }
    /// From two consecutive floats.
    void set(const float* floats) { set(floats[0], floats[1]); }
    void set(const tbVec2& a) { *this = a; }

    /// Not range checked.
    float& operator[](int i) { return reinterpret_cast<float*>(this)[i]; }
    float operator[](int i) const { return reinterpret_cast<const float*>(this)[i]; }

    void add(const tbVec2& a) { set(x + a.x, y + a.y); }
    void add(const tbVec2& a, const tbVec2& b) { set(a.x + b.x, a.y + b.y); }
    void sub(const tbVec2& a) { set(x - a.x, y - a.y); }
    void sub(const tbVec2& a, const tbVec2& b) { set(a.x - b.x, a.y - b.y); }
    void scale(float s) { set(x * s, y * s); }
    void scale(float s, const tbVec2& a) { set(s * a.x, s * a.y); }
    /// this += s * a
    void addScaled(float s, const tbVec2& a) { set(x + s * a.x, y + s * a.y); }
    /// this = a + s * b
    void addScaled(const tbVec2& a, float s, const tbVec2& b) { set(a.x + s * b.x, a.y + s * b.y); }
    /// this = s * a + t * b
    void combine(float s, const tbVec2& a, float t, const tbVec2& b)
    {
        set(s * a.x + t * b.x, s * a.y + t * b.y);
    }
    void negate(const tbVec2& a) { set(-a.x, -a.y); }
    float dot(const tbVec2& a) const { return x * a.x + y * a.y; }

    float sqrLength() const { return dot(*this); }
    /// As precise as tbSqrt() is.
    float length() const;
    float sqrDistance(const tbVec2& a) const { return (*this - a).sqrLength(); }
    float distance(const tbVec2& a) const { return (*this - a).length(); }
    /// Brings the length to 1; a vector shorter than 1e-6 becomes zero. Returns the length before, a tiny one too.
    float normalize();
    /// The larger component plus a third of the smaller, without a root. The argument is ignored: it is part of
    /// the interface, and callers pass what they like.
    float approxLength(const tbVec2& ignored) const;
    /// The same estimate for the distance.
    float approxDist(const tbVec2& a) const;

    /// Every component within `tol`, bounds included.
    bool almostEqual(const tbVec2& a, float tol) const
    {
        return x >= a.x - tol && x <= a.x + tol && y >= a.y - tol && y <= a.y + tol;
    }
    QUADRANT getQuadrant() const { return QUADRANT((x < 0.0f ? 2 : 0) | (y < 0.0f ? 1 : 0)); }

    bool operator==(const tbVec2& a) const { return x == a.x && y == a.y; }
    bool operator!=(const tbVec2& a) const { return !(*this == a); }
    tbVec2 operator+(const tbVec2& a) const { return tbVec2(x + a.x, y + a.y); }
    tbVec2 operator-(const tbVec2& a) const { return tbVec2(x - a.x, y - a.y); }
    tbVec2 operator-() const { return tbVec2(-x, -y); }
    tbVec2 operator*(float s) const { return tbVec2(x * s, y * s); }
    /// Multiplies by 1 / s.
    tbVec2 operator/(float s) const { return *this * (1.0f / s); }
    tbVec2& operator+=(const tbVec2& a)
    {
        add(a);
        return *this;
    }
    tbVec2& operator-=(const tbVec2& a)
    {
        sub(a);
        return *this;
    }
    tbVec2& operator*=(float s)
    {
        scale(s);
        return *this;
    }
    tbVec2& operator/=(float s)
    {
        scale(1.0f / s);
        return *this;
    }

    void read(tbEntry* entry);
    void write(tbEntry* entry) const;
};
