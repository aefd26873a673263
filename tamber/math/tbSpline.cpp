#include <tamber/math/tbSpline.h>

#include <tamber/io/tbEntry.h>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int STEPS_PER_SEGMENT = 64;
constexpr int MOST_STEPS = 1 << 20; // of a curve, where it has no more segments

// In how many lines a segment is measured.
int stepsPerSegment(int numSegments)
{
    return std::clamp(MOST_STEPS / std::max(numSegments, 1), 1, STEPS_PER_SEGMENT);
}

tbVec3 zero()
{
    return tbVec3(0, 0, 0);
}

} // namespace

tbSpline::tbSpline(const tbSpline& other) : tbAllocated<tbSpline>(), type(other.type)
{
    *this = other;
}

tbSpline& tbSpline::operator=(const tbSpline& other)
{
    type = other.type;
    closed = other.closed;
    if (!tbTryAllocate([&] { points = other.points; }))
        points.clear();
    changed();
    return *this;
}

void tbSpline::setType(TYPE splineType)
{
    type = splineType;
    changed();
}

void tbSpline::setClosed(bool on)
{
    closed = on;
    changed();
}

void tbSpline::addPoint(const tbVec3& point)
{
    tbTryAllocate([&] { points.push_back(point); });
    changed();
}

void tbSpline::setPoint(int i, const tbVec3& point)
{
    points[std::size_t(i)] = point;
    changed();
}

void tbSpline::removeAllPoints()
{
    points.clear();
    changed();
}

int tbSpline::getNumSegments() const
{
    const int perPoint = type == HERMITE ? 2 : type == BEZIER ? 3 : 1;
    if (closed)
        return getNumPoints() >= 2 * perPoint ? getNumPoints() / perPoint : 0;
    const int ends = type == HERMITE ? 2 : 1;
    return std::max((getNumPoints() - ends) / perPoint, 0);
}

// Point `i`, counted round a closed curve and cut to the ends of an open one.
const tbVec3& tbSpline::wrapped(int i) const
{
    const int perPoint = type == HERMITE ? 2 : type == BEZIER ? 3 : 1;
    const int n = closed ? getNumSegments() * perPoint : getNumPoints();
    i = closed ? (i % n + n) % n : std::clamp(i, 0, n - 1);
    return points[std::size_t(i)];
}

tbSpline::Cubic tbSpline::segment(int i) const
{
    if (type == BEZIER)
    {
        const tbVec3 &a = wrapped(3 * i), &b = wrapped(3 * i + 1), &c = wrapped(3 * i + 2),
                     &d = wrapped(3 * i + 3);
        return {a, (b - a) * 3.0f, (a - b * 2.0f + c) * 3.0f, d - a + (b - c) * 3.0f};
    }
    const int step = type == HERMITE ? 2 : 1;
    const tbVec3 &a = wrapped(step * i), &b = wrapped(step * (i + 1));
    if (type != HERMITE && type != CATMULL_ROM)
        return {a, b - a, zero(), zero()};
    const tbVec3 slopeA = type == HERMITE ? wrapped(2 * i + 1) : (b - wrapped(i - 1)) * 0.5f;
    const tbVec3 slopeB = type == HERMITE ? wrapped(2 * i + 3) : (wrapped(i + 2) - a) * 0.5f;
    return {a, slopeA, (b - a) * 3.0f - slopeA * 2.0f - slopeB, (a - b) * 2.0f + slopeA + slopeB};
}

// The segment that a parameter lies in; the parameter becomes the place inside it, 0 to 1.
int tbSpline::locate(float& parameter) const
{
    const int n = getNumSegments();
    const float cut = std::isnan(parameter) ? 0.0f : std::clamp(parameter, 0.0f, float(n));
    const int i = std::min(int(cut), n - 1);
    parameter = cut - float(i);
    return i;
}

tbVec3 tbSpline::getPosition(float parameter) const
{
    if (getNumSegments() == 0)
        return points.empty() ? zero() : points.front();
    const Cubic cubic = segment(locate(parameter));
    return cubic.p + (cubic.q + (cubic.r + cubic.s * parameter) * parameter) * parameter;
}

tbVec3 tbSpline::getTangent(float parameter) const
{
    if (getNumSegments() == 0)
        return zero();
    const Cubic cubic = segment(locate(parameter));
    return cubic.q + (cubic.r * 2.0f + cubic.s * (3.0f * parameter)) * parameter;
}

void tbSpline::measure() const
{
    const int perSegment = stepsPerSegment(getNumSegments());
    const int steps = getNumSegments() * perSegment;
    if (!lengths.empty() || steps == 0)
        return;
    if (!tbTryAllocate([&] { lengths.reserve(std::size_t(steps) + 1); }))
        return;
    lengths.push_back(0.0f);
    tbVec3 last = getPosition(0.0f);
    double length = 0;
    for (int i = 1; i <= steps; ++i)
    {
        const tbVec3 next = getPosition(float(i) / float(perSegment));
        const tbVec3 step = next - last;
        length += std::sqrt(double(step.sqrLength()));
        lengths.push_back(float(length));
        last = next;
    }
}

float tbSpline::getLength() const
{
    measure();
    return lengths.empty() ? 0.0f : lengths.back();
}

float tbSpline::getParameterAtLength(float distance) const
{
    measure();
    if (lengths.empty() || !(distance > 0.0f))
        return 0.0f;
    const auto behind = std::upper_bound(lengths.begin(), lengths.end(), distance);
    if (behind == lengths.end())
        return float(getNumSegments());
    const float before = *(behind - 1);
    const float inStep = *behind > before ? (distance - before) / (*behind - before) : 0.0f;
    return (float(behind - lengths.begin() - 1) + inStep) / float(stepsPerSegment(getNumSegments()));
}

void tbSpline::write(tbEntry* entry) const
{
    entry->writeInt(type);
    entry->writeInt(closed ? 1 : 0);
    entry->writeInt(getNumPoints());
    for (const tbVec3& point : points)
        point.write(entry);
}

bool tbSpline::read(tbEntry* entry)
{
    type = TYPE(entry->readInt());
    closed = entry->readInt() != 0;
    const int n = entry->readCount(3 * int(sizeof(float)));
    if (!tbTryAllocate([&] { points.assign(std::size_t(n), zero()); }))
        entry->fail("memory is out");
    for (tbVec3& point : points)
        point.read(entry);
    changed();
    return !entry->hasFailed();
}
