#pragma once

#include <tamber/math/tbQuat.h>
#include <tamber/math/tbVec3.h>

class tbMatrix;

// Size, turn and place, which apply in this order.
struct tbiPlacement
{
    tbVec3 translation;
    tbQuat rotation;
    tbVec3 scale; // the last is negative where the placement mirrors

    /// The same as a matrix. One that is skewed gets the placement whose axes are nearest to its own, in their order.
    explicit tbiPlacement(const tbMatrix& matrix);
};
