#pragma once

#include <tamber/math/tbInterpTable.h>
#include <tamber/math/tbVec3.h>

struct tbVec3Traits : tbLinearTraits<tbVec3>
{
    static constexpr int NUM_FLOATS = 3;

    static tbVec3 neutral() { return tbVec3(0, 0, 0); }
    static float* floats(tbVec3& value) { return &value[0]; }
    static const float* floats(const tbVec3& value) { return reinterpret_cast<const float*>(&value); }
};

// Positions, directions or scales at times.
class tbVec3InterpTable : public tbInterpTable<tbVec3, tbVec3Traits>
{
};
