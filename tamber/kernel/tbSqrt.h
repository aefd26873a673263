#pragma once

#include <tamber/kernel/tbTypes.h>

enum TBSQRT_METHOD : int
{
    TBSQRT_TABLE_256 = 0,
    TBSQRT_TABLE_1K = 1,
    TBSQRT_TABLE_4K = 2,
    TBSQRT_TABLE_16K = 3,
    TBSQRT_EXACT = 4
};

/// Chooses how tbSqrt() works; the table is rebuilt when its size changes. Set up on the application thread before
/// other threads start.
TB_API void tbSetSqrtMethod(TBSQRT_METHOD method);
TB_API TBSQRT_METHOD tbGetSqrtMethod();

/// The square root of x, as precise as the method's table. Negative numbers are not checked: without the exact
/// method their result is whatever their bits give.
TB_API float tbSqrt(float x);

/// Sine and cosine of an angle in degrees.
TB_API void tbGetSinCos(float degrees, float& sine, float& cosine);
