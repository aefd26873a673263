// What looks at the town, listens to it and feels for its ground.
#pragma once

#include <plugins/null/tbNullCounts.h>
#include <plugins/null/tbNullSound.h>
#include <tamber/tbKernel.h>

template <class Object>
tbRef<Object> create(const char* className)
{
    return static_cast<Object*>(tbType::createInstance(className));
}

/// Holds the scene for query in all that it does.
class Visitor
{
public:
    explicit Visitor(tbScene& visited)
        : scene(visited),
          window(create<tbWindow>("tbNullWindow")),
          camera(create<tbCamera>("tbNullCamera")),
          listener(create<tbListener>("tbNullListener")),
          feeler(new tbCollider)
    {
        window->open();
        camera->setWindow(window.get());
        camera->setFOV(60.0f, 45.0f);
        camera->setNearFar(0.1f, 2000.0f);
        feeler->setVolumeMode(tbCollider::VOLUME_NONE);
        feeler->addRay(tbRay(tbVec3(0, 0, 0), tbVec3(0, 0, -1), 100.0f));
    }
    ~Visitor() { window->close(); }

    /// From eyes and ears at `place`, in the world.
    void lookAndListen(const tbVec3& place)
    {
        camera->setXYZ(place);
        listener->setXYZ(place);
        scene.acquireForQuery();
        window->beginDraw();
        camera->draw(&scene);
        window->endDraw();
        listener->listen(&scene);
        scene.releaseFromQuery();
    }

    /// The height of what `mask` names below `place`, in the world. False where there is none.
    bool findGround(const tbVec3& place, unsigned mask, float& height)
    {
        feeler->setColliderMask(mask);
        feeler->setXYZ(place);
        scene.acquireForQuery();
        const bool found = feeler->intersect(&scene) == 1;
        scene.releaseFromQuery();
        height = feeler->getRayHit(0)->point[2];
        return found;
    }

    const tbNullCounts& getDrawn() const { return tbNullCounter::of(camera.get())->getCounts(); }
    int getNumHeard() const { return int(tbNullRecorder::of(listener.get())->getNumCommits()); }

private:
    tbScene& scene;
    tbRef<tbWindow> window;
    tbRef<tbCamera> camera;
    tbRef<tbListener> listener;
    tbRef<tbCollider> feeler;
};
