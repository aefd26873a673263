#pragma once

#include <cmath>
#include <cstdint>

/// Low 8 bits of a float that is cut to an integer; 0 for what is not a number. Beyond 2^31 all floats are multiples
/// of 256.
inline int tbiLowByte(float value)
{
    return std::fabs(value) < 2147483648.0f ? std::int32_t(value) & 255 : 0;
}

/// Low 8 bits of a component that is a float from 0 to 1.
inline int tbiColorByte(float component)
{
    return tbiLowByte(component * 255.0f);
}

/// Compares without sign: the bounds wrap.
inline bool tbiNearByte(unsigned int value, unsigned int expected, unsigned int tol)
{
    return value >= expected - tol && value <= expected + tol;
}
