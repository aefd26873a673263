// Four floats at once: one row of a matrix. Sums and products are rounded like those of single floats, so both forms
// below give the same values.
#pragma once

#if defined(__SSE2__)

#include <emmintrin.h>

class tbiFloat4
{
public:
    tbiFloat4(float a, float b, float c, float d) : v(_mm_setr_ps(a, b, c, d)) {}
    static tbiFloat4 load(const float* p) { return tbiFloat4(_mm_loadu_ps(p)); }
    static tbiFloat4 splat(float a) { return tbiFloat4(_mm_set1_ps(a)); }
    void store(float* p) const { _mm_storeu_ps(p, v); }

    tbiFloat4 operator+(tbiFloat4 a) const { return tbiFloat4(_mm_add_ps(v, a.v)); }
    tbiFloat4 operator*(tbiFloat4 a) const { return tbiFloat4(_mm_mul_ps(v, a.v)); }

private:
    explicit tbiFloat4(__m128 a) : v(a) {}

    __m128 v;
};

#else

class tbiFloat4
{
public:
    tbiFloat4(float a, float b, float c, float d) : v{a, b, c, d} {}
    static tbiFloat4 load(const float* p) { return tbiFloat4(p[0], p[1], p[2], p[3]); }
    static tbiFloat4 splat(float a) { return tbiFloat4(a, a, a, a); }
    void store(float* p) const
    {
        for (int i = 0; i < 4; ++i)
            p[i] = v[i];
    }

    tbiFloat4 operator+(tbiFloat4 a) const
    {
        return tbiFloat4(v[0] + a.v[0], v[1] + a.v[1], v[2] + a.v[2], v[3] + a.v[3]);
    }
    tbiFloat4 operator*(tbiFloat4 a) const
    {
        return tbiFloat4(v[0] * a.v[0], v[1] * a.v[1], v[2] * a.v[2], v[3] * a.v[3]);
    }

private:
    float v[4];
};

#endif
