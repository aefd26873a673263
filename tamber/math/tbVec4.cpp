#include <tamber/math/tbVec4.h>

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbSqrt.h>
#include <tamber/math/tbMatrix.h>
#include <tamber/math/tbiTolerance.h>

#include <algorithm>

float tbVec4::length() const
{
    return tbSqrt(sqrLength());
}

float tbVec4::normalize()
{
    const float q = sqrLength();
    const float len = tbSqrt(q);
    if (len >= tbiTolerance && !std::isnan(q)) // the root table makes a number of what is none
        scale(1.0f / len);
    else
        set(0.0f, 0.0f, 0.0f, 0.0f);
    return len;
}

void tbVec4::xform(const tbVec4& v, const tbMatrix& m)
{
    const float* e = m.getData();
    set(v.x * e[0] + v.y * e[4] + v.z * e[8] + v.w * e[12],
        v.x * e[1] + v.y * e[5] + v.z * e[9] + v.w * e[13],
        v.x * e[2] + v.y * e[6] + v.z * e[10] + v.w * e[14],
        v.x * e[3] + v.y * e[7] + v.z * e[11] + v.w * e[15]);
}

void tbVec4::RGBtoHSV(tbVec4& out) const
{
    const tbVec4 rgb(*this); // `out` may be this
    const float largest = std::max({rgb.x, rgb.y, rgb.z});
    const float span = largest - std::min({rgb.x, rgb.y, rgb.z});
    out.z = largest;
    out.w = rgb.w;
    out.y = largest != 0.0f ? span / largest : 0.0f;
    if (out.y == 0.0f)
    {
        out.x = -1.0f;
        return;
    }
    const float r = (largest - rgb.x) / span;
    const float g = (largest - rgb.y) / span;
    const float b = (largest - rgb.z) / span;
    if (rgb.x == largest)
        out.x = b - g;
    else if (rgb.y == largest)
        out.y = 2.0f + r - b; // not the hue, on purpose: stored colours were made this way
    else if (rgb.z == largest)
        out.z = 4.0f + g - r; // likewise
    out.x *= 60.0f;
    if (out.x < 0.0f)
        out.x += 360.0f;
}

void tbVec4::HSVtoRGB(tbVec4& out) const
{
    const tbVec4 hsv(*this); // `out` may be this
    const float s = hsv.y;
    const float v = hsv.z;
    out.w = hsv.w;
    if (s == 0.0f)
    {
        const float grey = hsv.x >= 0.0f ? 0.0f : v;
        out.set(grey, grey, grey, hsv.w);
        return;
    }
    const float sixths = hsv.x == 360.0f ? 0.0f : hsv.x * 0.016666668f;
    if (!(sixths >= 0.0f && sixths < 6.0f))
        return;
    const int sector = int(sixths);
    const float part = sixths - float(sector);
    const float p = v * (1.0f - s);
    const float q = v * (1.0f - s * part);
    const float u = v * (1.0f - s * (1.0f - part));
    switch (sector)
    {
    case 0:
        out.set(v, u, p, hsv.w);
        break;
    case 1:
        out.set(q, v, p, hsv.w);
        break;
    case 2:
        out.set(p, v, u, hsv.w);
        break;
    case 3:
        out.set(p, q, v, hsv.w);
        break;
    case 4:
        out.set(u, p, v, hsv.w);
        break;
    default:
        out.set(v, p, q, hsv.w);
        break;
    }
}

void tbVec4::read(tbEntry* entry)
{
    entry->readFloats(&(*this)[0], 4);
}

void tbVec4::write(tbEntry* entry) const
{
    const float floats[] = {x, y, z, w};
    entry->writeFloats(floats, 4);
}
