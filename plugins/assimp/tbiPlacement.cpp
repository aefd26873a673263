#include "tbiPlacement.h"

#include <tamber/math/tbMatrix.h>

#include <array>
#include <cmath>

namespace
{
using Axis = std::array<double, 3>;

double dot(const Axis& a, const Axis& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Axis cross(const Axis& a, const Axis& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

/// `axis` of length 1; `otherwise` for one that is next to nothing beside `size`.
Axis normalized(const Axis& axis, double size, const Axis& otherwise)
{
    constexpr double SMALLEST = 1e-6;
    const double length = std::sqrt(dot(axis, axis));
    return length > SMALLEST * size ? Axis{axis[0] / length, axis[1] / length, axis[2] / length} : otherwise;
}

/// One of length 1 at a right angle to `axis`, which has length 1.
Axis besides(const Axis& axis)
{
    const Axis other = std::fabs(axis[0]) < 0.5 ? Axis{1, 0, 0} : Axis{0, 1, 0};
    return normalized(cross(axis, other), 0, other);
}
} // namespace

tbiPlacement::tbiPlacement(const tbMatrix& matrix)
{
    matrix.getXYZ(translation);
    std::array<Axis, 3> rows;
    for (int i = 0; i < 3; ++i)
        rows[std::size_t(i)] = {matrix[i][0], matrix[i][1], matrix[i][2]};

    std::array<Axis, 3> axes;
    const Axis either = normalized(rows[1], 0, normalized(rows[2], 0, {1, 0, 0}));
    axes[0] = normalized(rows[0], 0, normalized(cross(rows[1], rows[2]), 0, besides(either)));
    const double along = dot(rows[1], axes[0]);
    const Axis across = {rows[1][0] - along * axes[0][0], rows[1][1] - along * axes[0][1],
                         rows[1][2] - along * axes[0][2]};
    const Axis free = normalized(cross(rows[2], axes[0]), 0, besides(axes[0]));
    axes[1] = normalized(across, std::sqrt(dot(rows[1], rows[1])), free);
    axes[2] = cross(axes[0], axes[1]);

    tbMatrix turn = tbMatrix::identity();
    for (int i = 0; i < 3; ++i)
    {
        const Axis& axis = axes[std::size_t(i)];
        scale[i] = float(dot(rows[std::size_t(i)], axis)) + 0.0f; // without the sign of nothing
        turn.setRow(i, float(axis[0]), float(axis[1]), float(axis[2]), 0, tbMatrix::MATRIX_ROT);
    }
    rotation.setMatrix(turn);
}
