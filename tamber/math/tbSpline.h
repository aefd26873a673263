#pragma once

#include <tamber/kernel/tbAllocator.h>
#include <tamber/math/tbVec3.h>

#include <vector>

class tbEntry;

// A curve through space. Its parameter runs from 0 to getNumSegments(), one unit per segment. A plain value.
class TB_API tbSpline : public tbAllocated<tbSpline>
{
public:
    /// What the points mean.
    enum TYPE : std::int32_t
    {
        LINEAR = 0,      // straight from point to point
        CATMULL_ROM = 1, // smooth through every point
        HERMITE = 2,     // pairs: a point and the tangent there
        BEZIER = 3       // a point, two controls, the next point, two controls, ...
    };

    explicit tbSpline(TYPE splineType = CATMULL_ROM) : type(splineType) {}
    /// Without points when memory is out.
    tbSpline(const tbSpline& other);
    tbSpline& operator=(const tbSpline& other);

    void setType(TYPE splineType);
    TYPE getType() const { return type; }
    /// A closed curve goes on from its last point to its first.
    void setClosed(bool on);
    bool isClosed() const { return closed; }

    /// Nothing is added when memory is out.
    void addPoint(const tbVec3& point);
    /// Not range checked.
    void setPoint(int i, const tbVec3& point);
    const tbVec3& getPoint(int i) const { return points[std::size_t(i)]; }
    int getNumPoints() const { return int(points.size()); }
    void removeAllPoints();
    /// 0 while there are too few points for one.
    int getNumSegments() const;

    /// The place at a parameter, which is cut to the curve. Without a segment the first point, or the origin.
    tbVec3 getPosition(float parameter) const;
    /// Change of place per unit of parameter; zero without a segment.
    tbVec3 getTangent(float parameter) const;

    /// Length of the whole curve, measured along steps that are short against its bends.
    float getLength() const;
    /// The place, and the parameter, at a distance along the curve from its start; cut to the curve.
    tbVec3 getPositionAtLength(float distance) const { return getPosition(getParameterAtLength(distance)); }
    float getParameterAtLength(float distance) const;

    void write(tbEntry* entry) const;
    /// False when the entry does not hold a whole spline.
    bool read(tbEntry* entry);

private:
    // One segment as a cubic: p + t * (q + t * (r + t * s)).
    struct Cubic
    {
        tbVec3 p, q, r, s;
    };

    Cubic segment(int i) const;
    int locate(float& parameter) const;
    const tbVec3& wrapped(int i) const;
    void measure() const;
    void changed() { lengths.clear(); }

    TYPE type;
    bool closed = false;
    std::vector<tbVec3, tbAllocator<tbVec3>> points;
    mutable std::vector<float, tbAllocator<float>>
        lengths; // from the start to each step, empty until measured
};
