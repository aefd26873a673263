// Products of matrices, with short cuts by their types.
#include <tamber/math/tbMatrix.h>

#include <tamber/math/tbVec3.h>
#include <tamber/math/tbiFloat4.h>
#include <tamber/math/tbiTolerance.h>

namespace
{

enum GROUP : unsigned char
{
    GENERAL,
    IDENT,
    LINEAR, // rotation, with or without a scale
    XLATE,
    AFFINE, // translation with rotation or scale
    SCALE,
    NUM_GROUPS
};

constexpr GROUP GROUPS[32] = {
    GENERAL, IDENT,   LINEAR, GENERAL, XLATE,  GENERAL, AFFINE, GENERAL, // 0
    SCALE,   GENERAL, LINEAR, GENERAL, AFFINE, GENERAL, AFFINE, GENERAL, // 8
    SCALE,   GENERAL, LINEAR, GENERAL, AFFINE, GENERAL, AFFINE, GENERAL, // 16
    SCALE,   GENERAL, LINEAR, GENERAL, AFFINE, GENERAL, AFFINE, GENERAL, // 24
};

constexpr int pairOf(GROUP a, GROUP b)
{
    return a * NUM_GROUPS + b;
}

GROUP groupOf(unsigned type)
{
    return type < 32 ? GROUPS[type] : GENERAL;
}

// The rows of an operand, read before the destination is written: it may be the same matrix.
struct Rows
{
    explicit Rows(const tbMatrix& m)
        : x(tbiFloat4::load(m[0])),
          y(tbiFloat4::load(m[1])),
          z(tbiFloat4::load(m[2])),
          w(tbiFloat4::load(m[3]))
    {
    }

    // The first three elements of a row times these rows, in the order of the full product.
    tbiFloat4 times3(const float* a) const
    {
        return tbiFloat4::splat(a[0]) * x + tbiFloat4::splat(a[1]) * y + tbiFloat4::splat(a[2]) * z;
    }
    tbiFloat4 times4(const float* a) const { return times3(a) + tbiFloat4::splat(a[3]) * w; }

    tbiFloat4 x;
    tbiFloat4 y;
    tbiFloat4 z;
    tbiFloat4 w;
};

void store(tbMatrix& m, tbiFloat4 x, tbiFloat4 y, tbiFloat4 z, tbiFloat4 w)
{
    x.store(m[0]);
    y.store(m[1]);
    z.store(m[2]);
    w.store(m[3]);
}

tbiFloat4 diagonal(const tbMatrix& m)
{
    return tbiFloat4(m[0][0], m[1][1], m[2][2], 1.0f);
}

tbiFloat4 lastRow()
{
    return tbiFloat4(0.0f, 0.0f, 0.0f, 1.0f);
}

} // namespace

void tbMatrix::mult(const tbMatrix& a, const tbMatrix& b)
{
    const GROUP groupA = groupOf(a.type);
    const GROUP groupB = groupOf(b.type);
    if (groupA == IDENT)
    {
        *this = b;
        return;
    }
    if (groupB == IDENT)
    {
        *this = a;
        return;
    }
    const unsigned both = a.type | b.type; // not found anew: it must never claim too little
    switch (pairOf(groupA, groupB))
    {
    case pairOf(LINEAR, LINEAR):
        multLinearByLinear(a, b);
        break;
    case pairOf(LINEAR, AFFINE):
        multLinearByAffine(a, b);
        break;
    case pairOf(LINEAR, SCALE):
        multLinearByScale(a, b);
        break;
    case pairOf(LINEAR, XLATE):
        multLinearByXlate(a, b);
        break;
    case pairOf(AFFINE, LINEAR):
        multAffineByLinear(a, b);
        break;
    case pairOf(AFFINE, AFFINE):
        multAffineByAffine(a, b);
        break;
    case pairOf(AFFINE, SCALE):
        multAffineByScale(a, b);
        break;
    case pairOf(AFFINE, XLATE):
        multAffineByXlate(a, b);
        break;
    case pairOf(SCALE, LINEAR):
        multScaleByLinear(a, b);
        break;
    case pairOf(SCALE, AFFINE):
        multScaleByAffine(a, b);
        break;
    case pairOf(SCALE, SCALE):
        multScaleByScale(a, b);
        break;
    case pairOf(XLATE, LINEAR):
        multXlateByLinear(a, b);
        break;
    case pairOf(XLATE, AFFINE):
        multXlateByAffine(a, b);
        break;
    case pairOf(XLATE, SCALE):
        multXlateByScale(a, b);
        break;
    default:
        multFull(a, b);
        break;
    }
    type = both;
}

void tbMatrix::multFull(const tbMatrix& a, const tbMatrix& b)
{
    const Rows rows(b);
    store(*this, rows.times4(a[0]), rows.times4(a[1]), rows.times4(a[2]), rows.times4(a[3]));
}

void tbMatrix::multLinearByLinear(const tbMatrix& a, const tbMatrix& b)
{
    const Rows rows(b);
    store(*this, rows.times3(a[0]), rows.times3(a[1]), rows.times3(a[2]), lastRow());
}

void tbMatrix::multLinearByAffine(const tbMatrix& a, const tbMatrix& b)
{
    const Rows rows(b);
    store(*this, rows.times3(a[0]), rows.times3(a[1]), rows.times3(a[2]), rows.w);
}

void tbMatrix::multLinearByScale(const tbMatrix& a, const tbMatrix& b)
{
    const Rows rows(a);
    const tbiFloat4 factors = diagonal(b);
    store(*this, rows.x * factors, rows.y * factors, rows.z * factors, lastRow());
}

void tbMatrix::multLinearByXlate(const tbMatrix& a, const tbMatrix& b)
{
    const Rows rows(a);
    store(*this, rows.x, rows.y, rows.z, tbiFloat4::load(b[3]));
}

void tbMatrix::multAffineByLinear(const tbMatrix& a, const tbMatrix& b)
{
    const Rows rows(b);
    store(*this, rows.times3(a[0]), rows.times3(a[1]), rows.times3(a[2]), rows.times3(a[3]) + lastRow());
}

void tbMatrix::multAffineByAffine(const tbMatrix& a, const tbMatrix& b)
{
    const Rows rows(b);
    store(*this, rows.times3(a[0]), rows.times3(a[1]), rows.times3(a[2]), rows.times3(a[3]) + rows.w);
}

void tbMatrix::multAffineByScale(const tbMatrix& a, const tbMatrix& b)
{
    const Rows rows(a);
    const tbiFloat4 factors = diagonal(b);
    store(*this, rows.x * factors, rows.y * factors, rows.z * factors, rows.w * factors);
}

void tbMatrix::multAffineByXlate(const tbMatrix& a, const tbMatrix& b)
{
    const Rows rows(a);
    store(*this, rows.x, rows.y, rows.z, rows.w + tbiFloat4(b[3][0], b[3][1], b[3][2], 0.0f));
}

void tbMatrix::multScaleByLinear(const tbMatrix& a, const tbMatrix& b)
{
    const Rows rows(b);
    store(*this, tbiFloat4::splat(a[0][0]) * rows.x, tbiFloat4::splat(a[1][1]) * rows.y,
          tbiFloat4::splat(a[2][2]) * rows.z, lastRow());
}

void tbMatrix::multScaleByAffine(const tbMatrix& a, const tbMatrix& b)
{
    const Rows rows(b);
    store(*this, tbiFloat4::splat(a[0][0]) * rows.x, tbiFloat4::splat(a[1][1]) * rows.y,
          tbiFloat4::splat(a[2][2]) * rows.z, rows.w);
}

void tbMatrix::multScaleByScale(const tbMatrix& a, const tbMatrix& b)
{
    const float x = a[0][0] * b[0][0];
    const float y = a[1][1] * b[1][1];
    const float z = a[2][2] * b[2][2];
    store(*this, tbiFloat4(x, 0, 0, 0), tbiFloat4(0, y, 0, 0), tbiFloat4(0, 0, z, 0), lastRow());
}

void tbMatrix::multXlateByLinear(const tbMatrix& a, const tbMatrix& b)
{
    const Rows rows(b);
    store(*this, rows.x, rows.y, rows.z, rows.times3(a[3]) + lastRow());
}

void tbMatrix::multXlateByAffine(const tbMatrix& a, const tbMatrix& b)
{
    const Rows rows(b);
    store(*this, rows.x, rows.y, rows.z, rows.times3(a[3]) + rows.w);
}

void tbMatrix::multXlateByScale(const tbMatrix& a, const tbMatrix& b)
{
    const Rows rows(b);
    store(*this, rows.x, rows.y, rows.z, tbiFloat4::load(a[3]) * diagonal(b));
}

void tbMatrix::preTrans(float x, float y, float z)
{
    if (tbiNearZero(x) && tbiNearZero(y) && tbiNearZero(z))
        return;
    const Rows rows(*this);
    const float move[3] = {x, y, z};
    (rows.w + rows.times3(move)).store((*this)[3]);
    type = (type & ~unsigned(MATRIX_IDENT)) | MATRIX_XLATE;
}

void tbMatrix::postTrans(float x, float y, float z)
{
    if (tbiNearZero(x) && tbiNearZero(y) && tbiNearZero(z))
        return;
    const tbiFloat4 move(x, y, z, 0.0f);
    if ((type & MATRIX_PROJ) != 0)
    {
        for (int i = 0; i < 4; ++i)
        {
            float* row = (*this)[i];
            (tbiFloat4::load(row) + move * tbiFloat4::splat(row[3])).store(row);
        }
    }
    else
        (tbiFloat4::load((*this)[3]) + move).store((*this)[3]);
    type = (type & ~unsigned(MATRIX_IDENT)) | MATRIX_XLATE;
}

void tbMatrix::preRot(float angle, float x, float y, float z)
{
    if (std::fabs(angle) <= tbiTolerance)
        return;
    tbMatrix turn;
    turn.makeRot(angle, x, y, z);
    type = (type & ~unsigned(MATRIX_IDENT)) | MATRIX_ROT;
    preMult(turn);
}

void tbMatrix::postRot(float angle, float x, float y, float z)
{
    if (std::fabs(angle) <= tbiTolerance)
        return;
    tbMatrix turn;
    turn.makeRot(angle, x, y, z);
    type = (type & ~unsigned(MATRIX_IDENT)) | MATRIX_ROT;
    postMult(turn);
}

void tbMatrix::preScale(float x, float y, float z)
{
    tbMatrix factors;
    factors.makeScale(x, y, z);
    preMult(factors);
}

void tbMatrix::postScale(float x, float y, float z)
{
    tbMatrix factors;
    factors.makeScale(x, y, z);
    postMult(factors);
}

void tbMatrix::preTrans(const tbVec3& xyz)
{
    preTrans(xyz.x, xyz.y, xyz.z);
}

void tbMatrix::postTrans(const tbVec3& xyz)
{
    postTrans(xyz.x, xyz.y, xyz.z);
}

void tbMatrix::preRot(float angle, const tbVec3& axis)
{
    preRot(angle, axis.x, axis.y, axis.z);
}

void tbMatrix::postRot(float angle, const tbVec3& axis)
{
    postRot(angle, axis.x, axis.y, axis.z);
}

void tbMatrix::preScale(const tbVec3& xyz)
{
    preScale(xyz.x, xyz.y, xyz.z);
}

void tbMatrix::postScale(const tbVec3& xyz)
{
    postScale(xyz.x, xyz.y, xyz.z);
}
