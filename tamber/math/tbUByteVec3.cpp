#include <tamber/math/tbUByteVec3.h>

#include <tamber/io/tbEntry.h>
#include <tamber/math/tbVec3.h>
#include <tamber/math/tbiColorByte.h>

void tbUByteVec3::set(float newR, float newG, float newB)
{
    set(tbiColorByte(newR), tbiColorByte(newG), tbiColorByte(newB));
}

void tbUByteVec3::set(const tbVec3& a)
{
    set(a.x, a.y, a.z);
}

void tbUByteVec3::set(const tbVec4& a)
{
    set(a.x, a.y, a.z);
}

void tbUByteVec3::scale(float s, const tbUByteVec3& a)
{
    set(tbiLowByte(s * a.r), tbiLowByte(s * a.g), tbiLowByte(s * a.b));
}

void tbUByteVec3::addScaled(const tbUByteVec3& p, float s, const tbUByteVec3& q)
{
    set(p.r + tbiLowByte(s * q.r), p.g + tbiLowByte(s * q.g), p.b + tbiLowByte(s * q.b));
}

void tbUByteVec3::combine(float s, const tbUByteVec3& p, float t, const tbUByteVec3& q)
{
    set(tbiLowByte(s * p.r) + tbiLowByte(t * q.r), tbiLowByte(s * p.g) + tbiLowByte(t * q.g),
        tbiLowByte(s * p.b) + tbiLowByte(t * q.b));
}

bool tbUByteVec3::almostEqual(const tbUByteVec3& a, unsigned int tol) const
{
    return tbiNearByte(r, a.r, tol) && tbiNearByte(g, a.g, tol) && tbiNearByte(b, a.b, tol);
}

void tbUByteVec3::read(tbEntry* entry)
{
    entry->readChunk(this, 3);
}

void tbUByteVec3::write(tbEntry* entry) const
{
    entry->writeChunk(this, 3);
}
