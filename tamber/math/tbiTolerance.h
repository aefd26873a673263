// Tolerances and factors that the math of the library shares.
#pragma once

#include <cmath>

inline constexpr float tbiTolerance = 1.0e-6f;
/// Of squared lengths.
inline constexpr float tbiSqrTolerance = 1.0e-12f;
inline constexpr float tbiToDegrees = 57.29578f;
inline constexpr float tbiToRadians = 0.017453292f;

/// False for what is not a number, as the next one.
inline bool tbiNearZero(float a)
{
    return std::fabs(a) < tbiTolerance;
}

inline bool tbiNearOne(float a)
{
    return std::fabs(a - 1.0f) < tbiTolerance;
}

/// Radians, in double, of an angle in degrees.
inline double tbiRadians(float degrees)
{
    return double(degrees) * double(tbiToRadians);
}

/// Degrees of an angle in radians. Never -0.
inline float tbiDegrees(double radians)
{
    return float(radians * double(tbiToDegrees)) + 0.0f;
}
