#pragma once

#include "Samples.h"

class tbGroup;

struct FrameOptions
{
    int frames = 100;
    bool orbit = false; // the camera goes once round the model
    bool spin = false;  // the model turns once on itself
};

struct FrameResults
{
    double firstUpdate = 0.0; // milliseconds until the model was ready for its first frame

    // Milliseconds.
    Samples update;
    Samples bounds;
    Samples cull;

    Samples visited;
    Samples culled;
    Samples drawn;
    Samples triangles;
};

/// Puts the model under a scene and runs the frames. Throws CommandError when there is no display.
FrameResults runFrames(tbGroup& model, const FrameOptions& options);
