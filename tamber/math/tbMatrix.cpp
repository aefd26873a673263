#include <tamber/math/tbMatrix.h>

#include <tamber/io/tbEntry.h>
#include <tamber/math/tbiTolerance.h>

#include <algorithm>

namespace
{

constexpr unsigned ALL_TYPES = 63;
// Relative error of a squared row length that drift of rotations explains: long chains of products, and quaternions
// that were normalised by a coarse square root table.
constexpr float LENGTH_DRIFT = 0.01f;

float sqrRowLength(const float* row)
{
    return row[0] * row[0] + row[1] * row[1] + row[2] * row[2];
}

bool near(float a, float b, float tolerance)
{
    return std::fabs(a - b) <= tolerance;
}

bool hasTurn(const tbMatrix& m)
{
    return !(tbiNearZero(m[0][1]) && tbiNearZero(m[0][2]) && tbiNearZero(m[1][0]) && tbiNearZero(m[1][2]) &&
             tbiNearZero(m[2][0]) && tbiNearZero(m[2][1]));
}

bool hasTranslation(const tbMatrix& m)
{
    return !(tbiNearZero(m[3][0]) && tbiNearZero(m[3][1]) && tbiNearZero(m[3][2]));
}

bool hasProjection(const tbMatrix& m)
{
    return !(tbiNearZero(m[0][3]) && tbiNearZero(m[1][3]) && tbiNearZero(m[2][3]) && tbiNearOne(m[3][3]));
}

} // namespace

void tbMatrix::set(const float* sixteen, unsigned int newType)
{
    std::copy_n(sixteen, 16, elements);
    setType(newType);
}

void tbMatrix::setRow(int i, float a, float b, float c, float d, unsigned int newType)
{
    float* row = (*this)[i];
    row[0] = a;
    row[1] = b;
    row[2] = c;
    row[3] = d;
    setType(newType);
}

void tbMatrix::setCol(int j, float a, float b, float c, float d, unsigned int newType)
{
    elements[j] = a;
    elements[4 + j] = b;
    elements[8 + j] = c;
    elements[12 + j] = d;
    setType(newType);
}

void tbMatrix::get(float out[4][4]) const
{
    for (int i = 0; i < 4; ++i)
        std::copy_n((*this)[i], 4, out[i]);
}

void tbMatrix::getRow(int i, float& a, float& b, float& c, float& d) const
{
    const float* row = (*this)[i];
    a = row[0];
    b = row[1];
    c = row[2];
    d = row[3];
}

void tbMatrix::getCol(int j, float& a, float& b, float& c, float& d) const
{
    a = elements[j];
    b = elements[4 + j];
    c = elements[8 + j];
    d = elements[12 + j];
}

// Elements that are not numbers count as holding whatever they could hold.
void tbMatrix::identifyType()
{
    const tbMatrix& m = *this;
    unsigned found = 0;
    if (hasTurn(m))
        found |= MATRIX_ROT;
    if (hasTranslation(m))
        found |= MATRIX_XLATE;
    if (hasProjection(m))
        found |= MATRIX_PROJ;
    const float r0 = sqrRowLength(m[0]);
    const float r1 = sqrRowLength(m[1]);
    const float r2 = sqrRowLength(m[2]);
    if (!(tbiNearOne(r0) && tbiNearOne(r1) && tbiNearOne(r2)))
    {
        const bool even = std::fabs(r0 - r1) < r0 * tbiTolerance && std::fabs(r1 - r2) < r1 * tbiTolerance &&
                          std::fabs(r0 - r2) < r2 * tbiTolerance;
        found |= even ? MATRIX_UNISCALE : MATRIX_SCALE;
    }
    // A mirrored axis shows on the diagonal only.
    if (!(near(m[0][0] / std::sqrt(r0), 1.0f, tbiTolerance) &&
          near(m[1][1] / std::sqrt(r1), 1.0f, tbiTolerance) &&
          near(m[2][2] / std::sqrt(r2), 1.0f, tbiTolerance)))
        found |= MATRIX_ROT;
    type = found != 0 ? found : unsigned(MATRIX_IDENT);
}

// True when no short cut by the type would go wrong. Types may claim more than there is: those of products do.
bool tbMatrix::typeHolds() const
{
    const tbMatrix& m = *this;
    if ((type & MATRIX_IDENT) != 0 && type != MATRIX_IDENT)
        return false;
    if ((type & MATRIX_PROJ) != 0)
        return true;
    if (hasProjection(m) || ((type & MATRIX_XLATE) == 0 && hasTranslation(m)))
        return false;
    if ((type & MATRIX_ROT) == 0 && hasTurn(m))
        return false;
    if ((type & MATRIX_SCALE) != 0)
        return true;
    if ((type & MATRIX_ROT) == 0 && (type & MATRIX_UNISCALE) == 0)
        return tbiNearOne(m[0][0]) && tbiNearOne(m[1][1]) && tbiNearOne(m[2][2]);
    const float r0 = sqrRowLength(m[0]);
    const float expected = (type & MATRIX_UNISCALE) != 0 ? r0 : 1.0f;
    return near(r0, expected, expected * LENGTH_DRIFT) &&
           near(sqrRowLength(m[1]), expected, expected * LENGTH_DRIFT) &&
           near(sqrRowLength(m[2]), expected, expected * LENGTH_DRIFT);
}

void tbMatrix::add(const tbMatrix& a, const tbMatrix& b)
{
    for (int i = 0; i < 16; ++i)
        elements[i] = a.elements[i] + b.elements[i];
    identifyType();
}

void tbMatrix::sub(const tbMatrix& a, const tbMatrix& b)
{
    for (int i = 0; i < 16; ++i)
        elements[i] = a.elements[i] - b.elements[i];
    identifyType();
}

void tbMatrix::transpose()
{
    for (int i = 0; i < 4; ++i)
    {
        for (int j = 0; j < i; ++j)
            std::swap((*this)[i][j], (*this)[j][i]);
    }
    if ((type & (MATRIX_XLATE | MATRIX_PROJ)) != 0)
        identifyType();
}

void tbMatrix::transpose(const tbMatrix& a)
{
    *this = a;
    transpose();
}

bool tbMatrix::operator==(const tbMatrix& a) const
{
    for (int i = 0; i < 16; ++i)
    {
        if (!tbiNearZero(elements[i] - a.elements[i]))
            return false;
    }
    return true;
}

void tbMatrix::read(tbEntry* entry)
{
    const unsigned stored = unsigned(entry->readInt()) & ALL_TYPES;
    entry->readFloats(elements, 16);
    setType(stored);
    if (!typeHolds())
        identifyType();
}

void tbMatrix::write(tbEntry* entry) const
{
    entry->writeInt(std::int32_t(type));
    entry->writeFloats(elements, 16);
}
