#pragma once

#include <tamber/kernel/tbBase.h>

// What an object of the null display has been asked to do.
struct tbNullCounts
{
    std::int64_t walks = 0;        ///< graphs drawn
    std::int64_t geometries = 0;   ///< geometries drawn
    std::int64_t primitives = 0;   ///< points, lines and triangles of theirs
    std::int64_t triangles = 0;    ///< those of geometries whose primitives have three vertices
    std::int64_t vertices = 0;     ///< vertices of their arrays
    std::int64_t visualTraits = 0; ///< traits applied to the camera
    std::int64_t sphereTests = 0;  ///< bounding spheres tested against the frustum
    std::int64_t culled = 0;       ///< those found outside, each with the subtree that it bounds
    std::int64_t matrices = 0;     ///< matrices loaded and multiplied
    std::int64_t viewports = 0;    ///< viewports set
    std::int64_t clears = 0;       ///< clears, once for each camera that clears
    std::int64_t swaps = 0;        ///< frames shown
};

// How programs read the counts: they need this header, and no link to the module.
class tbNullCounter
{
public:
    virtual const tbNullCounts& getCounts() const = 0;
    virtual void resetCounts() = 0;

    /// The counts of a camera or window of the null display; null for any other object.
    static tbNullCounter* of(tbBase* object) { return dynamic_cast<tbNullCounter*>(object); }

protected:
    ~tbNullCounter() = default;
};
