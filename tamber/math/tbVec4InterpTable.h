#pragma once

#include <tamber/math/tbInterpTable.h>
#include <tamber/math/tbVec4.h>

struct tbVec4Traits : tbLinearTraits<tbVec4>
{
    static constexpr int NUM_FLOATS = 4;

    static tbVec4 neutral() { return tbVec4(0, 0, 0, 0); }
    static float* floats(tbVec4& value) { return &value[0]; }
    static const float* floats(const tbVec4& value) { return reinterpret_cast<const float*>(&value); }
};

// Colours at times.
class tbVec4InterpTable : public tbInterpTable<tbVec4, tbVec4Traits>
{
};
