#include <tamber/math/tbQuat.h>

#include <tamber/kernel/tbSqrt.h>
#include <tamber/math/tbMatrix.h>
#include <tamber/math/tbVec3.h>
#include <tamber/math/tbiTolerance.h>

void tbQuat::invert(const tbQuat& q)
{
    const float k = q.sqrLength();
    set(-q.x / k, -q.y / k, -q.z / k, q.w / k);
}

void tbQuat::setMatrix(const tbMatrix& m)
{
    const float trace = m[0][0] + m[1][1] + m[2][2];
    if (trace >= 0.0f)
    {
        const float s = tbSqrt(trace + 1.0f);
        const float k = 0.5f / s;
        set((m[2][1] - m[1][2]) * k, (m[0][2] - m[2][0]) * k, (m[1][0] - m[0][1]) * k, s * 0.5f);
        return;
    }
    // The largest element of the diagonal, the earlier one of two equals; j and l are the other axes in turn.
    int i = m[0][0] < m[1][1] ? 1 : 0;
    if (m[i][i] < m[2][2])
        i = 2;
    const int j = (i + 1) % 3;
    const int l = (i + 2) % 3;
    const float s = tbSqrt(m[i][i] - (m[j][j] + m[l][l]) + m[3][3]);
    const float k = 0.5f / s;
    tbQuat& q = *this;
    q[i] = s * 0.5f;
    q[j] = (m[j][i] + m[i][j]) * k;
    q[l] = (m[l][i] + m[i][l]) * k;
    w = (m[l][j] - m[j][l]) * k;
}

void tbQuat::getMatrix(tbMatrix& m) const
{
    m.makeIdent();
    m.setQuat(*this);
}

void tbQuat::setHPR(const tbVec3& hpr)
{
    tbMatrix m;
    m.makeHPR(hpr);
    setMatrix(m);
}

void tbQuat::getHPR(tbVec3& hpr) const
{
    tbMatrix m;
    getMatrix(m);
    m.getHPR(hpr);
}

void tbQuat::slerp(float t, const tbQuat& a, const tbQuat& b)
{
    const float alignment = a.dot(b);
    const float c = std::fabs(alignment);
    if (1.0f - c <= tbiTolerance)
    {
        lerp(t, a, b);
        return;
    }
    const double angle = std::acos(double(c));
    const double sine = std::sin(angle);
    const float weightA = float(std::sin((1.0 - double(t)) * angle) / sine);
    const float weightB = float(std::sin(double(t) * angle) / sine);
    combine(weightA, a, alignment < 0.0f ? -weightB : weightB, b);
}

void tbQuat::lerp(float t, const tbQuat& a, const tbQuat& b)
{
    combine(1.0f - t, a, a.dot(b) < 0.0f ? -t : t, b);
}
