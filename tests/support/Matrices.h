// Matrices of one kind, made in an expression.
#pragma once

#include <tamber/math/tbMatrix.h>
#include <tamber/math/tbVec3.h>

namespace tbtest
{
inline tbMatrix identity()
{
    tbMatrix m;
    m.makeIdent();
    return m;
}

inline tbMatrix translation(float x, float y, float z)
{
    tbMatrix m;
    m.makeXYZ(x, y, z);
    return m;
}

inline tbMatrix scaling(float x, float y, float z)
{
    tbMatrix m;
    m.makeScale(x, y, z);
    return m;
}

inline tbMatrix rotation(float angle, const tbVec3& axis)
{
    tbMatrix m;
    m.makeRot(angle, axis);
    return m;
}

inline tbMatrix turn(float h, float p, float r)
{
    tbMatrix m;
    m.makeHPR(h, p, r);
    return m;
}
} // namespace tbtest
