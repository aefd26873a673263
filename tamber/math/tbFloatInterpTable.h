#pragma once

#include <tamber/math/tbInterpTable.h>

struct tbFloatTraits : tbLinearTraits<float>
{
    static constexpr int NUM_FLOATS = 1;

    static float neutral() { return 0.0f; }
    static float* floats(float& value) { return &value; }
    static const float* floats(const float& value) { return &value; }
};

// Numbers at times.
class tbFloatInterpTable : public tbInterpTable<float, tbFloatTraits>
{
};
