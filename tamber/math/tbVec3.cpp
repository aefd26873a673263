#include <tamber/math/tbVec3.h>

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbSqrt.h>
#include <tamber/math/tbiApproxLength.h>
#include <tamber/math/tbiTolerance.h>

#include <algorithm>

float tbVec3::length() const
{
    return tbSqrt(sqrLength());
}

float tbVec3::normalize()
{
    const float q = sqrLength();
    if (std::fabs(q - 1.0f) < tbiTolerance)
        return 1.0f;
    if (q >= tbiSqrTolerance)
    {
        const float len = tbSqrt(q);
        set(x / len, y / len, z / len);
        return len;
    }
    set(0.0f, 0.0f, 0.0f);
    return 0.0f;
}

float tbVec3::approxLength() const
{
    return tbiApproxLength(tbiApproxLength(std::fabs(x), std::fabs(y)), std::fabs(z));
}

float tbVec3::approxDist(const tbVec3& a) const
{
    return (a - *this).approxLength();
}

float tbVec3::angleBetween(const tbVec3& a) const
{
    const float cosine = dot(a) / (length() * a.length());
    return tbiDegrees(std::acos(double(std::clamp(cosine, -1.0f, 1.0f))));
}

void tbVec3::makeNormal(const tbVec3& p0, const tbVec3& p1, const tbVec3& p2)
{
    cross(p0 - p1, p2 - p1);
    negate(*this);
    normalize();
}

void tbVec3::fullXformPt(const tbVec3& v, const tbMatrix& m)
{
    const float* e = m.getData();
    float w = v.x * e[3] + v.y * e[7] + v.z * e[11] + e[15];
    xformPt(v, m);
    if (w == 1.0f)
        return;
    if (tbiNearZero(w))
        w = tbiTolerance;
    scale(1.0f / w);
}

void tbVec3::getHP(float& h, float& p) const
{
    tbVec3 unit(*this);
    unit.normalize();
    const double ahead = double(unit.y) + 0.0; // no -0, which would turn a half turn round
    const float angle = tbiDegrees(std::atan2(ahead, double(unit.x)));
    h = ahead >= 0.0 ? angle - 90.0f : angle + 270.0f;
    if (h >= 270.0f)
        h = -90.0f;
    p = tbiDegrees(std::asin(double(std::clamp(unit.z, -1.0f, 1.0f))));
}

void tbVec3::setHP(float h, float p)
{
    if (!std::isfinite(h) || !std::isfinite(p))
    {
        set(0.0f, 0.0f, 0.0f);
        return;
    }
    p = std::fmod(p, 360.0f);
    if (p >= 270.0f)
        p -= 360.0f;
    else if (p < -90.0f)
        p += 360.0f;

    const double sine = std::sin(tbiRadians(h));
    const double cosine = std::cos(tbiRadians(h));
    const double rise = std::tan(tbiRadians(p)) * std::hypot(sine, cosine);
    if (std::fabs(p) < 89.99999f)
        set(float(-sine), float(cosine), float(rise));
    else if (std::fabs(p) <= 90.00001f)
        set(0.0f, 0.0f, p >= 0.0f ? 1.0f : -1.0f);
    else // past the vertical
        set(float(sine), float(-cosine), float(-rise));
    normalize();
}

void tbVec3::setH(float h)
{
    set(float(-std::sin(tbiRadians(h))), float(std::cos(tbiRadians(h))), 0.0f);
    normalize();
}

void tbVec3::read(tbEntry* entry)
{
    entry->readFloats(&(*this)[0], 3);
}

void tbVec3::write(tbEntry* entry) const
{
    const float floats[] = {x, y, z};
    entry->writeFloats(floats, 3);
}
