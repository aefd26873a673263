// Inverses of matrices, with short cuts by their types.
#include <tamber/math/tbMatrix.h>

#include <tamber/kernel/tbMessage.h>
#include <tamber/math/tbiTolerance.h>

#include <algorithm>

namespace
{

constexpr float SMALLEST_PIVOT = 1.0e-20f;

// Lower and upper triangular factors of a matrix whose rows were swapped for the largest pivots.
class Factors
{
public:
    explicit Factors(const tbMatrix& m) { m.get(lu); }

    // False when a row holds nothing but zeros.
    bool decompose();
    // Column `column` of the inverse.
    void solve(int column, tbMatrix& inverse) const;

private:
    void pivot(int column);

    float lu[4][4];
    float rowScale[4];
    int swapped[4];
};

bool Factors::decompose()
{
    for (int i = 0; i < 4; ++i)
    {
        float largest = 0.0f;
        for (const float element : lu[i])
            largest = std::max(largest, std::fabs(element));
        if (largest < tbiTolerance)
            return false;
        rowScale[i] = 1.0f / largest;
    }
    for (int j = 0; j < 4; ++j)
    {
        for (int i = 1; i < 4; ++i)
        {
            for (int k = 0; k < std::min(i, j); ++k)
                lu[i][j] -= lu[i][k] * lu[k][j];
        }
        pivot(j);
        if (lu[j][j] == 0.0f)
            lu[j][j] = SMALLEST_PIVOT;
        for (int i = j + 1; i < 4; ++i)
            lu[i][j] /= lu[j][j];
    }
    return true;
}

// Brings the row with the largest scaled element, the later one of two equals, up to the diagonal.
void Factors::pivot(int column)
{
    int best = column;
    float largest = 0.0f;
    for (int i = column; i < 4; ++i)
    {
        const float scaled = rowScale[i] * std::fabs(lu[i][column]);
        if (scaled >= largest)
        {
            largest = scaled;
            best = i;
        }
    }
    if (best != column)
    {
        std::swap(lu[best], lu[column]);
        rowScale[best] = rowScale[column];
    }
    swapped[column] = best;
}

void Factors::solve(int column, tbMatrix& inverse) const
{
    float x[4] = {};
    x[column] = 1.0f;
    for (int i = 0; i < 4; ++i)
    {
        std::swap(x[i], x[swapped[i]]);
        for (int k = 0; k < i; ++k)
            x[i] -= lu[i][k] * x[k];
    }
    for (int i = 3; i >= 0; --i)
    {
        for (int k = i + 1; k < 4; ++k)
            x[i] -= lu[i][k] * x[k];
        x[i] /= lu[i][i];
        inverse[i][column] = x[i];
    }
}

} // namespace

bool tbMatrix::invert(const tbMatrix& a)
{
    switch (a.type)
    {
    case MATRIX_IDENT:
        *this = a;
        return true;
    case MATRIX_ROT:
    case MATRIX_ROT | MATRIX_XLATE:
        invertRot(a, 1.0f);
        return true;
    case MATRIX_XLATE:
        *this = a;
        for (int j = 12; j < 15; ++j)
            elements[j] = 0.0f - elements[j];
        return true;
    case MATRIX_UNISCALE:
    case MATRIX_SCALE:
    case MATRIX_UNISCALE | MATRIX_XLATE:
    case MATRIX_SCALE | MATRIX_XLATE:
    case MATRIX_UNISCALE | MATRIX_SCALE | MATRIX_XLATE:
        invertScale(a);
        return true;
    case MATRIX_ROT | MATRIX_UNISCALE | MATRIX_XLATE:
    {
        const float k = a[0][0] * a[0][0] + a[0][1] * a[0][1] + a[0][2] * a[0][2];
        if (!(k >= tbiTolerance))
            return invertFull(a);
        invertRot(a, 1.0f / k);
        return true;
    }
    default:
        return invertFull(a);
    }
}

// Transposes the upper 3x3, times a factor, and takes the translation back through it.
void tbMatrix::invertRot(const tbMatrix& a, float factor)
{
    const tbMatrix source(a); // `a` may be this
    const bool moved = (source.type & MATRIX_XLATE) != 0;
    makeIdent();
    for (int j = 0; j < 3; ++j)
    {
        float back = 0.0f;
        for (int i = 0; i < 3; ++i)
        {
            const float element = source[j][i] * factor;
            (*this)[i][j] = element;
            if (moved)
                back -= source[3][i] * element;
        }
        (*this)[3][j] = back;
    }
    type = source.type;
}

void tbMatrix::invertScale(const tbMatrix& a)
{
    const tbMatrix source(a); // `a` may be this
    makeIdent();
    for (int i = 0; i < 3; ++i)
    {
        (*this)[i][i] = 1.0f / source[i][i];
        if ((source.type & MATRIX_XLATE) != 0)
            (*this)[3][i] = 0.0f - source[3][i] * (*this)[i][i];
    }
    type = source.type;
}

bool tbMatrix::invertFull(const tbMatrix& a)
{
    Factors factors(a);
    const unsigned sourceType = a.type;
    if (!factors.decompose())
    {
        tbMessage("Singular Matrix.  Undefined results.\n");
        makeIdent();
        return false;
    }
    for (int column = 0; column < 4; ++column)
        factors.solve(column, *this);
    type = sourceType;
    return true;
}
