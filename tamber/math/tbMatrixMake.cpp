// Making matrices from translations, scales, rotations, directions and planes.
#include <tamber/math/tbMatrix.h>

#include <tamber/kernel/tbSqrt.h>
#include <tamber/math/tbQuat.h>
#include <tamber/math/tbVec3.h>
#include <tamber/math/tbiTolerance.h>
#include <tamber/volume/tbPlane.h>

#include <algorithm>

namespace
{

constexpr float IDENTITY[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

// As tbVec3::normalize() with the exact root; false, and nothing changed, for what is too short or not a number.
bool makeUnit(tbVec3& v)
{
    const float len = std::hypot(v.x, v.y, v.z);
    if (!(len >= tbiTolerance) || !std::isfinite(len))
        return false;
    v.set(v.x / len, v.y / len, v.z / len);
    return true;
}

// The side of an axis that a direction does not follow.
tbVec3 anySide(const tbVec3& unit)
{
    const tbVec3 axis = std::fabs(unit.x) < 0.9f ? tbVec3(1, 0, 0) : tbVec3(0, 1, 0);
    tbVec3 side;
    side.addScaled(axis, -axis.dot(unit), unit);
    makeUnit(side);
    return side;
}

void setUpperRow(tbMatrix& m, int i, float x, float y, float z)
{
    m[i][0] = x;
    m[i][1] = y;
    m[i][2] = z;
}

void setUpperRow(tbMatrix& m, int i, const tbVec3& v)
{
    setUpperRow(m, i, v.x, v.y, v.z);
}

void getSinCos(float angle, float& sine, float& cosine)
{
    sine = 0.0f;
    cosine = 1.0f;
    if (angle != 0.0f)
        tbGetSinCos(angle, sine, cosine);
}

} // namespace

void tbMatrix::makeIdent()
{
    std::copy_n(IDENTITY, 16, elements);
    type = MATRIX_IDENT;
}

void tbMatrix::makeXYZ(float x, float y, float z)
{
    makeIdent();
    if (!(tbiNearZero(x) && tbiNearZero(y) && tbiNearZero(z)))
        setXYZ(x, y, z);
}

void tbMatrix::makeXYZ(const tbVec3& xyz)
{
    makeXYZ(xyz.x, xyz.y, xyz.z);
}

void tbMatrix::setXYZ(float x, float y, float z)
{
    setUpperRow(*this, 3, x, y, z);
    if (!(tbiNearZero(x) && tbiNearZero(y) && tbiNearZero(z)))
        type = (type & ~unsigned(MATRIX_IDENT)) | MATRIX_XLATE;
    else if ((type &= ~unsigned(MATRIX_XLATE)) == 0)
        type = MATRIX_IDENT;
}

void tbMatrix::setXYZ(const tbVec3& xyz)
{
    setXYZ(xyz.x, xyz.y, xyz.z);
}

void tbMatrix::getXYZ(tbVec3& xyz) const
{
    getXYZ(xyz.x, xyz.y, xyz.z);
}

void tbMatrix::makeScale(float x, float y, float z)
{
    makeIdent();
    if (tbiNearOne(x) && tbiNearOne(y) && tbiNearOne(z))
        return;
    elements[0] = x;
    elements[5] = y;
    elements[10] = z;
    const bool even = tbiNearZero(x - y) && tbiNearZero(y - z) && tbiNearZero(x - z);
    type = even ? MATRIX_UNISCALE : MATRIX_SCALE;
}

void tbMatrix::makeScale(const tbVec3& xyz)
{
    makeScale(xyz.x, xyz.y, xyz.z);
}

void tbMatrix::makeRot(float angle, float x, float y, float z)
{
    makeIdent();
    if (tbiNearZero(angle))
        return;
    const float len = std::hypot(x, y, z);
    x /= len;
    y /= len;
    z /= len;
    float s;
    float c;
    tbGetSinCos(angle, s, c);
    const float t = 1.0f - c;
    setUpperRow(*this, 0, t * x * x + c, t * x * y + s * z, t * x * z - s * y);
    setUpperRow(*this, 1, t * x * y - s * z, t * y * y + c, t * y * z + s * x);
    setUpperRow(*this, 2, t * x * z + s * y, t * y * z - s * x, t * z * z + c);
    type = MATRIX_ROT;
}

void tbMatrix::makeRot(float angle, const tbVec3& axis)
{
    makeRot(angle, axis.x, axis.y, axis.z);
}

void tbMatrix::makeHPR(float h, float p, float r)
{
    makeIdent();
    if (tbiNearZero(h) && tbiNearZero(p) && tbiNearZero(r))
        return;
    float sh, ch, sp, cp, sr, cr;
    getSinCos(h, sh, ch);
    getSinCos(p, sp, cp);
    getSinCos(r, sr, cr);
    setUpperRow(*this, 0, cr * ch - sr * sp * sh, cr * sh + sr * sp * ch, -sr * cp);
    setUpperRow(*this, 1, -cp * sh, cp * ch, sp);
    setUpperRow(*this, 2, sr * ch + cr * sp * sh, sr * sh - cr * sp * ch, cr * cp);
    type = MATRIX_ROT;
}

void tbMatrix::makeHPR(const tbVec3& hpr)
{
    makeHPR(hpr.x, hpr.y, hpr.z);
}

void tbMatrix::setHPR(float h, float p, float r)
{
    tbMatrix turn;
    turn.makeHPR(h, p, r);
    for (int i = 0; i < 3; ++i)
        setUpperRow(*this, i, turn[i][0], turn[i][1], turn[i][2]);
    type &= MATRIX_XLATE | MATRIX_PROJ;
    type |= turn.type & MATRIX_ROT;
    if (type == 0)
        type = MATRIX_IDENT;
}

void tbMatrix::setHPR(const tbVec3& hpr)
{
    setHPR(hpr.x, hpr.y, hpr.z);
}

// Row 1 gives heading and pitch; row 0 with both taken back gives the roll.
void tbMatrix::getHPR(float& h, float& p, float& r) const
{
    const double fx = elements[4];
    const double fy =
        double(elements[5]) + 0.0; // no -0, which would turn what looks straight up or down round
    const double fz = elements[6];
    const double level = std::hypot(fx, fy);
    const double whole = std::hypot(level, fz);
    const double sh = level > 0.0 ? -fx / level : 0.0;
    const double ch = level > 0.0 ? fy / level : 1.0;
    const double sp = whole > 0.0 ? fz / whole : 0.0;
    const double cp = whole > 0.0 ? level / whole : 1.0;
    const double kx = elements[0] * ch + elements[1] * sh;
    const double ky = elements[1] * ch - elements[0] * sh;
    const double kz = elements[2] * cp - ky * sp;
    h = tbiDegrees(-std::atan2(fx, fy));
    p = tbiDegrees(std::atan2(fz, level));
    r = tbiDegrees(-std::atan2(kz, kx));
}

void tbMatrix::getHPR(tbVec3& hpr) const
{
    getHPR(hpr.x, hpr.y, hpr.z);
}

void tbMatrix::setQuat(const tbQuat& q)
{
    if (std::fabs(q.x) <= tbiTolerance && std::fabs(q.y) <= tbiTolerance && std::fabs(q.z) <= tbiTolerance)
    {
        for (int i = 0; i < 3; ++i)
            std::copy_n(IDENTITY + 4 * i, 3, (*this)[i]);
        if ((type &= ~unsigned(MATRIX_ROT)) == 0)
            type = MATRIX_IDENT;
        return;
    }
    tbVec4 u(q);
    u.normalize();
    setUpperRow(*this, 0, 1 - 2 * (u.y * u.y + u.z * u.z), 2 * (u.x * u.y - u.w * u.z),
                2 * (u.x * u.z + u.w * u.y));
    setUpperRow(*this, 1, 2 * (u.x * u.y + u.w * u.z), 1 - 2 * (u.x * u.x + u.z * u.z),
                2 * (u.y * u.z - u.w * u.x));
    setUpperRow(*this, 2, 2 * (u.x * u.z - u.w * u.y), 2 * (u.y * u.z + u.w * u.x),
                1 - 2 * (u.x * u.x + u.y * u.y));
    type = (type & ~unsigned(MATRIX_IDENT)) | MATRIX_ROT;
}

void tbMatrix::getQuat(tbQuat& q) const
{
    q.setMatrix(*this);
}

void tbMatrix::getDirection(tbVec3& direction) const
{
    direction.set((*this)[1]);
}

void tbMatrix::makeAlongDirection(const tbVec3& direction)
{
    makeAlongDirection(direction, tbVec3(0, 0, 1));
}

void tbMatrix::makeAlongDirection(const tbVec3& direction, const tbVec3& up)
{
    tbVec3 ahead(direction);
    tbVec3 wish(up);
    makeIdent();
    if (!makeUnit(ahead))
        return;
    tbVec3 side(0, 0, 0);
    if (makeUnit(wish))
        side.cross(ahead, wish);
    if (!makeUnit(side))
        side = anySide(ahead);
    tbVec3 upward;
    upward.cross(side, ahead);
    setUpperRow(*this, 0, side);
    setUpperRow(*this, 1, ahead);
    setUpperRow(*this, 2, upward);
    const bool turned = !(tbiNearOne(side.x) && tbiNearOne(ahead.y) && tbiNearOne(upward.z));
    type = turned ? MATRIX_ROT : MATRIX_IDENT;
}

// With P the plane as (normal, -offset) and L the light as (x, y, z, 1): v' = (L * P) v - (v * P) L.
void tbMatrix::makeProjection(const tbPlane& plane, const tbVec3& light)
{
    const float p[4] = {plane[0], plane[1], plane[2], -plane[3]};
    const float l[4] = {light.x, light.y, light.z, 1.0f};
    const float height = p[0] * l[0] + p[1] * l[1] + p[2] * l[2] + p[3];
    for (int i = 0; i < 4; ++i)
    {
        for (int j = 0; j < 4; ++j)
            (*this)[i][j] = (i == j ? height : 0.0f) - p[i] * l[j];
    }
    identifyType();
}

// A point p goes to p - 2 (normal * p - offset) normal.
void tbMatrix::makeReflection(const tbMatrix& m, const tbPlane& plane)
{
    tbMatrix mirror;
    mirror.makeIdent();
    for (int i = 0; i < 3; ++i)
    {
        for (int j = 0; j < 3; ++j)
            mirror[i][j] -= 2.0f * plane[i] * plane[j];
        mirror[3][i] = 2.0f * plane[3] * plane[i];
    }
    mirror.type = MATRIX_ROT;
    mirror.setXYZ(mirror[3][0], mirror[3][1], mirror[3][2]);
    mult(m, mirror);
}
