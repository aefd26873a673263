#include "tbiProjection.h"

#include <tamber/math/tbMatrix.h>
#include <tamber/volume/tbFrustum.h>

#include <algorithm>
#include <cmath>

namespace
{

constexpr float EVERYTHING = 1.0e18f;
constexpr double DEGREES = 57.29577951308232;

double opening(double low, double high, double distance)
{
    return (std::atan2(high, distance) - std::atan2(low, distance)) * DEGREES;
}

void makeRange(double sum, double difference, float& low, float& high)
{
    low = float((sum - difference) * 0.5);
    high = float((sum + difference) * 0.5);
    if (low > high)
        std::swap(low, high);
}

// The elements that are 0 in both forms of projection.
bool isUnskewed(const float (&m)[4][4])
{
    return m[0][1] == 0.0f && m[0][2] == 0.0f && m[0][3] == 0.0f && m[1][0] == 0.0f && m[1][2] == 0.0f &&
           m[1][3] == 0.0f && m[0][0] != 0.0f && m[1][1] != 0.0f;
}

// Depth d maps to (-d * scale + offset) / d.
bool readPerspective(const float (&m)[4][4], tbiProjection& out)
{
    if (m[2][3] != -1.0f || m[3][3] != 0.0f || m[3][0] != 0.0f || m[3][1] != 0.0f)
        return false;
    const double nearDist = m[3][2] / (m[2][2] - 1.0);
    const double farDist = m[2][2] < -1.0f ? m[3][2] / (m[2][2] + 1.0) : double(EVERYTHING);
    if (!(nearDist > 0.0) || !(farDist > nearDist))
        return false;
    const double width = 2.0 * nearDist / m[0][0];
    const double height = 2.0 * nearDist / m[1][1];
    out.kind = tbiProjection::PERSPECTIVE;
    makeRange(m[2][0] * width, width, out.left, out.right);
    makeRange(m[2][1] * height, height, out.bottom, out.top);
    out.nearDist = float(nearDist);
    out.farDist = float(std::min(farDist, double(EVERYTHING)));
    return true;
}

bool readOrtho(const float (&m)[4][4], tbiProjection& out)
{
    if (m[2][3] != 0.0f || m[3][3] != 1.0f || m[2][0] != 0.0f || m[2][1] != 0.0f || m[2][2] == 0.0f)
        return false;
    const double width = 2.0 / m[0][0];
    const double height = 2.0 / m[1][1];
    const double depth = -2.0 / m[2][2];
    out.kind = tbiProjection::ORTHO;
    makeRange(-m[3][0] * width, width, out.left, out.right);
    makeRange(-m[3][1] * height, height, out.bottom, out.top);
    makeRange(-m[3][2] * depth, depth, out.nearDist, out.farDist);
    return true;
}

} // namespace

tbiProjection tbiProjection::of(const tbMatrix& matrix)
{
    float m[4][4];
    matrix.get(m);
    tbiProjection bounds;
    if (isUnskewed(m) && (readPerspective(m, bounds) || readOrtho(m, bounds)))
        return bounds;
    bounds.left = bounds.bottom = bounds.nearDist = -EVERYTHING;
    bounds.right = bounds.top = bounds.farDist = EVERYTHING;
    return bounds;
}

void tbiProjection::makeFrustum(tbFrustum& frustum) const
{
    if (kind == PERSPECTIVE)
        frustum.makePersp(left, right, bottom, top, nearDist, farDist);
    else
        frustum.makeOrtho(left, right, bottom, top, nearDist, farDist);
}

void tbiProjection::getFOV(float& horizontal, float& vertical) const
{
    horizontal = kind == PERSPECTIVE ? float(opening(left, right, nearDist)) : 0.0f;
    vertical = kind == PERSPECTIVE ? float(opening(bottom, top, nearDist)) : 0.0f;
}
