#pragma once

#include <plugins/null/tbNullCamera.h>
#include <plugins/null/tbNullListener.h>
#include <plugins/null/tbNullWindow.h>
#include <tamber/collide/tbCollider.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/trav/tbTraverser.h>

class tbScene;

namespace tbfuzz
{
/// Everything that walks a scene: a camera, a listener, a collider that records all that it can, a traverser.
class SceneWalks
{
public:
    SceneWalks();
    SceneWalks(const SceneWalks&) = delete;
    SceneWalks& operator=(const SceneWalks&) = delete;

    /// Updates the scene and sends all of them through it. Nothing of it stays behind.
    void run(tbScene& scene);
    /// Sends a collider from elsewhere through a scene with something to hit.
    void collide(tbCollider& stranger);

private:
    void prepareCollider();

    tbRef<tbNullWindow> window;
    tbRef<tbNullCamera> camera;
    tbRef<tbNullListener> listener;
    tbRef<tbCollider> collider;
    tbRef<tbTraverser> traverser;
};
} // namespace tbfuzz
