#include <tamber/math/tbUByteVec4.h>

#include <tamber/io/tbEntry.h>
#include <tamber/math/tbVec3.h>
#include <tamber/math/tbiColorByte.h>

void tbUByteVec4::set(float newR, float newG, float newB, float newA)
{
    set(tbiColorByte(newR), tbiColorByte(newG), tbiColorByte(newB), tbiColorByte(newA));
}

void tbUByteVec4::set(const tbVec3& color)
{
    set(tbiColorByte(color.x), tbiColorByte(color.y), tbiColorByte(color.z), 255);
}

void tbUByteVec4::set(const tbVec4& color)
{
    set(color.x, color.y, color.z, color.w);
}

void tbUByteVec4::scale(float s, const tbUByteVec4& p)
{
    set(tbiLowByte(s * p.r), tbiLowByte(s * p.g), tbiLowByte(s * p.b), tbiLowByte(s * p.a));
}

void tbUByteVec4::addScaled(const tbUByteVec4& p, float s, const tbUByteVec4& q)
{
    set(p.r + tbiLowByte(s * q.r), p.g + tbiLowByte(s * q.g), p.b + tbiLowByte(s * q.b),
        p.a + tbiLowByte(s * q.a));
}

void tbUByteVec4::combine(float s, const tbUByteVec4& p, float t, const tbUByteVec4& q)
{
    set(tbiLowByte(s * p.r) + tbiLowByte(t * q.r), tbiLowByte(s * p.g) + tbiLowByte(t * q.g),
        tbiLowByte(s * p.b) + tbiLowByte(t * q.b), tbiLowByte(s * p.a) + tbiLowByte(t * q.a));
}

bool tbUByteVec4::almostEqual(const tbUByteVec4& p, unsigned int tol) const
{
    return tbiNearByte(r, p.r, tol) && tbiNearByte(g, p.g, tol) && tbiNearByte(b, p.b, tol) &&
           tbiNearByte(a, p.a, tol);
}

void tbUByteVec4::read(tbEntry* entry)
{
    entry->readChunk(this, 4);
}

void tbUByteVec4::write(tbEntry* entry) const
{
    entry->writeChunk(this, 4);
}
