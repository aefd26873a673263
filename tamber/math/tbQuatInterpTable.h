#pragma once

#include <tamber/math/tbInterpTable.h>
#include <tamber/math/tbQuat.h>

struct tbQuatTraits
{
    static constexpr int NUM_FLOATS = 4;

    static tbQuat neutral()
    {
        tbQuat quat;
        quat.set(0, 0, 0, 1);
        return quat;
    }
    static tbQuat blend(const tbQuat& a, const tbQuat& b, float t)
    {
        tbQuat quat;
        quat.slerp(t, a, b);
        return quat;
    }
    static tbQuat slope(const tbQuat& a, const tbQuat&, float) { return a; }
    static tbQuat smooth(const tbQuat& a, const tbQuat&, const tbQuat& b, const tbQuat&, float t, float)
    {
        return blend(a, b, t);
    }
    static float* floats(tbQuat& value) { return &value[0]; }
    static const float* floats(const tbQuat& value) { return reinterpret_cast<const float*>(&value); }
};

// Rotations at times, blended along the shorter arc.
class tbQuatInterpTable : public tbInterpTable<tbQuat, tbQuatTraits>
{
};
