#include "FrameLoop.h"

#include "Display.h"
#include "Progress.h"

#include <tamber/graph/tbScene.h>
#include <tamber/graph/tbTransform.h>

#include <chrono>

namespace
{
class Stopwatch
{
public:
    /// Milliseconds since the last call, or since the watch was made.
    double lap()
    {
        const auto now = std::chrono::steady_clock::now();
        const std::chrono::duration<double, std::milli> passed = now - start;
        start = now;
        return passed.count();
    }

private:
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

// Brackets an edit of the scene.
class Edit
{
public:
    explicit Edit(tbScene& edited) : scene(edited) { scene.acquireForMods(); }
    ~Edit() { scene.releaseFromMods(); }
    Edit(const Edit&) = delete;
    Edit& operator=(const Edit&) = delete;

private:
    tbScene& scene;
};

// Brackets a walk.
class Query
{
public:
    explicit Query(tbScene& walked) : scene(walked) { scene.acquireForQuery(); }
    ~Query() { scene.releaseFromQuery(); }
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;

private:
    tbScene& scene;
};

/// The three steps of the scene's frame update one by one, so that the bounds pass is timed on its own: the update
/// finds instances split and bounds renewed.
void updateScene(tbScene& scene, FrameResults& results)
{
    const Edit edit(scene);
    Stopwatch watch;
    if (scene.anyTravFlags(tbGroup::TF_SHARED))
        scene.updateSharedInstances();
    const double split = watch.lap();
    scene.updateFences();
    results.bounds.add(watch.lap());
    scene.update();
    results.update.add(split + watch.lap());
}

void drawScene(tbScene& scene, Display& display, FrameResults& results)
{
    const Query query(scene);
    Stopwatch watch;
    display.draw(scene);
    results.cull.add(watch.lap());
    const Display::Counts counts = display.getCounts();
    results.visited.add(double(counts.visited));
    results.culled.add(double(counts.camera.culled));
    results.drawn.add(double(counts.camera.geometries));
    results.triangles.add(double(counts.camera.triangles));
}
} // namespace

FrameResults runFrames(tbGroup& model, const FrameOptions& options)
{
    Display display;
    FrameResults results;
    const tbRef<tbScene> scene = new tbScene;
    const tbRef<tbTransform> turntable = new tbTransform;
    turntable->addChild(&model);
    scene->addChild(turntable.get());
    {
        const Edit edit(*scene);
        Stopwatch watch;
        scene->update();
        results.firstUpdate = watch.lap();
    }
    const tbSphere bounds = *scene->getVolume();

    Progress progress("running frames");
    for (int i = 0; i < options.frames; ++i)
    {
        const float angle = 360.0f * float(i) / float(options.frames);
        {
            const Edit edit(*scene);
            display.placeCamera(bounds, options.orbit ? angle : 0.0f);
            if (options.spin)
                turntable->setHPR(angle, 0.0f, 0.0f);
        }
        updateScene(*scene, results);
        drawScene(*scene, display, results);
        progress.setDone(double(i + 1) / double(options.frames));
    }
    return results;
}
