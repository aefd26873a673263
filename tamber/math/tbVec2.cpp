#include <tamber/math/tbVec2.h>

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbSqrt.h>
#include <tamber/math/tbiApproxLength.h>
#include <tamber/math/tbiTolerance.h>

float tbVec2::length() const
{
    return tbSqrt(sqrLength());
}

float tbVec2::normalize()
{
    const float q = sqrLength();
    const float len = tbSqrt(q);
    if (len >= tbiTolerance && !std::isnan(q)) // the root table makes a number of what is none
        scale(1.0f / len);
    else
        set(0.0f, 0.0f);
    return len;
}

float tbVec2::approxLength(const tbVec2&) const
{
    return tbiApproxLength(std::fabs(x), std::fabs(y));
}

float tbVec2::approxDist(const tbVec2& a) const
{
    return (a - *this).approxLength(a);
}

void tbVec2::read(tbEntry* entry)
{
    entry->readFloats(&(*this)[0], 2);
}

void tbVec2::write(tbEntry* entry) const
{
    const float floats[] = {x, y};
    entry->writeFloats(floats, 2);
}
