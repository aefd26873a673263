// Approximate equality with a message that names the component: EXPECT_TRUE(tbtest::near(a, b)).
#pragma once

#include <tamber/math/tbMatrix.h>
#include <tamber/math/tbQuat.h>
#include <tamber/math/tbVec2.h>
#include <tamber/math/tbVec3.h>
#include <tamber/math/tbVec4.h>

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace tbtest
{
/// Tolerances are absolute. Components that are not numbers are near to nothing.
inline constexpr float TOLERANCE = 1e-4f;
inline constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();

template <class Vector>
testing::AssertionResult nearComponents(const Vector& a, const Vector& b, int count, float tolerance)
{
    for (int i = 0; i < count; ++i)
        if (!(std::abs(a[i] - b[i]) <= tolerance))
            return testing::AssertionFailure()
                   << "component " << i << ": " << a[i] << " and " << b[i] << " differ by " << a[i] - b[i];
    return testing::AssertionSuccess();
}

/// Of vectors and quaternions. A quaternion and its negative are not near, though they turn alike.
template <class Vector>
testing::AssertionResult near(const Vector& a, const Vector& b, float tolerance = TOLERANCE)
{
    return nearComponents(a, b, sizeof a / sizeof a[0], tolerance);
}

inline testing::AssertionResult near(const tbMatrix& a, const tbMatrix& b, float tolerance = TOLERANCE)
{
    for (int row = 0; row < 4; ++row)
    {
        testing::AssertionResult same = nearComponents(a[row], b[row], 4, tolerance);
        if (!same)
            return same << " in row " << row;
    }
    return testing::AssertionSuccess();
}
} // namespace tbtest
