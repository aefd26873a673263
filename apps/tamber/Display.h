#pragma once

#include <plugins/null/tbNullCounts.h>
#include <tamber/kernel/tbRef.h>

class tbCamera;
class tbScene;
class tbSphere;
class tbStats;
class tbWindow;

// A window and a camera of the null display, which counts what it would draw.
class Display
{
public:
    struct Counts
    {
        long long visited = 0; ///< nodes that the walk entered
        tbNullCounts camera;
    };

    /// Loads the display's module. Throws CommandError when it is not there.
    Display();
    ~Display();
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;

    /// Where the camera stands on its circle around `bounds`, in degrees, looking at the middle.
    void placeCamera(const tbSphere& bounds, float angle);
    /// Draws one frame. The caller holds the scene for query.
    void draw(tbScene& scene);
    /// Of the last frame.
    Counts getCounts() const;

private:
    tbRef<tbWindow> window;
    tbRef<tbCamera> camera;
    tbRef<tbStats> stats;
    tbNullCounter* counter = nullptr;
};
