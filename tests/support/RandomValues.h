// Numbers, points and transforms for sweeps: the same in every run.
#pragma once

#include <tamber/math/tbMatrix.h>
#include <tamber/math/tbVec3.h>
#include <tamber/volume/tbBox.h>

#include <cmath>
#include <random>

namespace tbtest
{
class Random
{
public:
    explicit Random(unsigned seed) : engine(seed) {}

    float number(float low, float high)
    {
        const double share = double(engine()) / double(std::mt19937::max());
        return float(double(low) + (double(high) - double(low)) * share);
    }
    /// From 0 to count - 1.
    int index(int count) { return int(engine() % unsigned(count)); }
    tbVec3 point(float range)
    {
        return tbVec3(number(-range, range), number(-range, range), number(-range, range));
    }
    tbBox box(float range)
    {
        tbBox around;
        around.extendAround(point(range));
        around.extendAround(point(range));
        return around;
    }
    /// Evenly over all directions, of length 1.
    tbVec3 direction()
    {
        tbVec3 v;
        float q;
        do
        {
            v = point(1.0f);
            q = v.dot(v);
        } while (q < 0.01f || q > 1.0f);
        return v * float(1.0 / std::sqrt(double(q)));
    }
    /// A rotation and a translation.
    tbMatrix place(float range)
    {
        tbMatrix m;
        m.makeHPR(number(-180, 180), number(-90, 90), number(-180, 180));
        m.setXYZ(point(range));
        return m;
    }

private:
    std::mt19937 engine;
};
} // namespace tbtest
