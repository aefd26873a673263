// Shaping a frustum: planes, corners and edges.
#include <tamber/math/tbiTolerance.h>
#include <tamber/volume/tbBox.h>
#include <tamber/volume/tbFrustum.h>
#include <tamber/volume/tbSphere.h>

#include <algorithm>

namespace
{

// The faces that meet at an edge and a corner on it.
struct EdgeShape
{
    tbFrustum::FACE first;
    tbFrustum::FACE second;
    int corner;
};

constexpr EdgeShape EDGE_SHAPES[tbFrustum::NUM_EDGES] = {
    {tbFrustum::FACE_LEFT, tbFrustum::FACE_TOP, tbFrustum::CORNER_TOP},
    {tbFrustum::FACE_RIGHT, tbFrustum::FACE_TOP, tbFrustum::CORNER_RIGHT | tbFrustum::CORNER_TOP},
    {tbFrustum::FACE_LEFT, tbFrustum::FACE_BOTTOM, 0},
    {tbFrustum::FACE_RIGHT, tbFrustum::FACE_BOTTOM, tbFrustum::CORNER_RIGHT},
    {tbFrustum::FACE_NEAR, tbFrustum::FACE_TOP, tbFrustum::CORNER_TOP},
    {tbFrustum::FACE_NEAR, tbFrustum::FACE_BOTTOM, 0},
    {tbFrustum::FACE_NEAR, tbFrustum::FACE_RIGHT, tbFrustum::CORNER_RIGHT},
    {tbFrustum::FACE_NEAR, tbFrustum::FACE_LEFT, 0},
    {tbFrustum::FACE_FAR, tbFrustum::FACE_TOP, tbFrustum::CORNER_FAR | tbFrustum::CORNER_TOP},
    {tbFrustum::FACE_FAR, tbFrustum::FACE_BOTTOM, tbFrustum::CORNER_FAR},
    {tbFrustum::FACE_FAR, tbFrustum::FACE_RIGHT, tbFrustum::CORNER_FAR | tbFrustum::CORNER_RIGHT},
    {tbFrustum::FACE_FAR, tbFrustum::FACE_LEFT, tbFrustum::CORNER_FAR},
};

struct Cross
{
    Cross(const tbPlane& a, const tbPlane& b)
        : x(double(a[1]) * b[2] - double(a[2]) * b[1]),
          y(double(a[2]) * b[0] - double(a[0]) * b[2]),
          z(double(a[0]) * b[1] - double(a[1]) * b[0])
    {
    }

    double x;
    double y;
    double z;
};

// The point that three planes share; the origin when there is none.
tbVec3 commonPoint(const tbPlane& a, const tbPlane& b, const tbPlane& c)
{
    const Cross bc(b, c);
    const Cross ca(c, a);
    const Cross ab(a, b);
    const double volume = double(a[0]) * bc.x + double(a[1]) * bc.y + double(a[2]) * bc.z;
    if (volume == 0.0)
        return tbVec3(0.0f, 0.0f, 0.0f);
    const double p = a.getOffset() / volume;
    const double q = b.getOffset() / volume;
    const double r = c.getOffset() / volume;
    return tbVec3(float(p * bc.x + q * ca.x + r * ab.x), float(p * bc.y + q * ca.y + r * ab.y),
                  float(p * bc.z + q * ca.z + r * ab.z));
}

} // namespace

void tbFrustum::makePersp(float newLeft, float newRight, float newBottom, float newTop, float newNear,
                          float newFar)
{
    setExtents(newLeft, newRight, newBottom, newTop, newNear, newFar);
    faces[FACE_LEFT].make(tbVec3(-nearDist, left, 0.0f), 0.0f);
    faces[FACE_RIGHT].make(tbVec3(nearDist, -right, 0.0f), 0.0f);
    faces[FACE_BOTTOM].make(tbVec3(0.0f, bottom, -nearDist), 0.0f);
    faces[FACE_TOP].make(tbVec3(0.0f, -top, nearDist), 0.0f);
    setCorners(farDist / nearDist);
    makeEdges();
}

void tbFrustum::makeOrtho(float newLeft, float newRight, float newBottom, float newTop, float newNear,
                          float newFar)
{
    setExtents(newLeft, newRight, newBottom, newTop, newNear, newFar);
    faces[FACE_LEFT].make(tbVec3(-1.0f, 0.0f, 0.0f), -left);
    faces[FACE_RIGHT].make(tbVec3(1.0f, 0.0f, 0.0f), right);
    faces[FACE_BOTTOM].make(tbVec3(0.0f, 0.0f, -1.0f), -bottom);
    faces[FACE_TOP].make(tbVec3(0.0f, 0.0f, 1.0f), top);
    setCorners(1.0f);
    makeEdges();
}

void tbFrustum::makeFOV(float horizontal, float vertical, float newNear, float newFar)
{
    const float x = float(newNear * std::tan(tbiRadians(horizontal) / 2.0));
    const float z = float(newNear * std::tan(tbiRadians(vertical) / 2.0));
    makePersp(-x, x, -z, z, newNear, newFar);
}

void tbFrustum::setExtents(float newLeft, float newRight, float newBottom, float newTop, float newNear,
                           float newFar)
{
    left = newLeft;
    right = newRight;
    bottom = newBottom;
    top = newTop;
    nearDist = newNear;
    farDist = newFar;
    faces[FACE_NEAR].make(tbVec3(0.0f, -1.0f, 0.0f), -nearDist);
    faces[FACE_FAR].make(tbVec3(0.0f, 1.0f, 0.0f), farDist);
}

// The far rectangle is the near one times `farScale`.
void tbFrustum::setCorners(float farScale)
{
    for (int i = 0; i < NUM_CORNERS; ++i)
    {
        const bool isFar = (i & CORNER_FAR) != 0;
        const float scale = isFar ? farScale : 1.0f;
        corners[i].set(((i & CORNER_RIGHT) != 0 ? right : left) * scale, isFar ? farDist : nearDist,
                       ((i & CORNER_TOP) != 0 ? top : bottom) * scale);
    }
}

void tbFrustum::cornersFromFaces()
{
    for (int i = 0; i < NUM_CORNERS; ++i)
    {
        corners[i] = commonPoint(faces[(i & CORNER_FAR) != 0 ? FACE_FAR : FACE_NEAR],
                                 faces[(i & CORNER_RIGHT) != 0 ? FACE_RIGHT : FACE_LEFT],
                                 faces[(i & CORNER_TOP) != 0 ? FACE_TOP : FACE_BOTTOM]);
    }
}

void tbFrustum::makeEdges()
{
    for (int i = 0; i < NUM_EDGES; ++i)
    {
        const EdgeShape& shape = EDGE_SHAPES[i];
        tbVec3 between;
        between.combine(0.5f, *faces[shape.first].getNormal(), 0.5f, *faces[shape.second].getNormal());
        edges[i].make(corners[shape.corner], between);
    }
}

void tbFrustum::enclose(const tbVec3* points, int count, float margin)
{
    if (tbFrustum::isEmpty())
    {
        tbBox bounds;
        bounds.tbVolume::extendAround(points, count);
        const tbVec3& low = *bounds.getMin();
        const tbVec3& high = *bounds.getMax();
        if (count > 0)
            tbFrustum::makeOrtho(low.x - margin, high.x + margin, low.z - margin, high.z + margin,
                                 low.y - margin, high.y + margin);
        return;
    }
    for (tbPlane& face : faces)
    {
        float offset = face.getOffset();
        for (int i = 0; i < count; ++i)
            offset = std::max(offset, face.getNormal()->dot(points[i]) + margin);
        face.setOffset(offset);
    }
    cornersFromFaces();
    makeEdges();
}

void tbFrustum::extendAround(const tbVec3& point)
{
    enclose(&point, 1, 0.0f);
}

void tbFrustum::extendAround(const tbVec3* points, int count)
{
    enclose(points, count, 0.0f);
}

void tbFrustum::extendAround(const tbSphere& sphere)
{
    if (!sphere.isEmpty())
        enclose(sphere.getCenter(), 1, sphere.getRadius());
}

void tbFrustum::extendAround(const tbBox& box)
{
    if (box.isEmpty())
        return;
    tbVec3 points[8];
    for (int i = 0; i < 8; ++i)
        box.getCorner(tbVec3::OCTANT(i), points[i]);
    enclose(points, 8, 0.0f);
}
