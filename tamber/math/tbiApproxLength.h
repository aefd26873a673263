#pragma once

/// Estimate of the length of a vector with the given parts, both 0 or more: the larger plus a third of the smaller.
inline float tbiApproxLength(float a, float b)
{
    constexpr float third = 0.33333334f;
    return a > b ? a + b * third : b + a * third;
}
