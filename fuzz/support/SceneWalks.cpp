#include <fuzz/support/SceneWalks.h>

#include <portable/tbMesh.h>
#include <tamber/graph/tbScene.h>
#include <tamber/render/tbVertexArray.h>
#include <tamber/volume/tbRay.h>

#include <cstring>

namespace tbfuzz
{
SceneWalks::SceneWalks()
    : window(new tbNullWindow),
      camera(new tbNullCamera),
      listener(new tbNullListener),
      collider(new tbCollider),
      traverser(new tbTraverser)
{
    window->open();
    camera->setWindow(window.get());
    camera->setFOV(60, 45);
    camera->setNearFar(0.01f, 1000);
    camera->setXYZHPR(tbVec3(0, -10, 1), tbVec3(5, -3, 0));
    listener->open();
    prepareCollider();
}

void SceneWalks::prepareCollider()
{
    collider->setSaveMask(tbCollider::SAVE_PATH | tbCollider::SAVE_NAMED_PATH | tbCollider::SAVE_MATRIX |
                          tbCollider::SAVE_INVERT_MATRIX);
    collider->setRayHitMode(tbCollider::RAY_HIT_ALL);
    collider->addRay(tbRay(tbVec3(0, -10, 0), tbVec3(0, 10, 0)));
    collider->addRay(tbRay(tbVec3(0.2f, 0.3f, 100), tbVec3(0.1f, 0.2f, -100)));
    collider->setVolumeMode(tbCollider::VOLUME_SPHERE);
    collider->setVolumeHitMode(tbCollider::VOLUME_HIT_ALL);
}

void SceneWalks::collide(tbCollider& stranger)
{
    const unsigned int indices[] = {0, 1, 2};
    const float corners[] = {-1, 0, 0, 3, 0, 0, 1, 2, 0};
    auto* vertices = new tbVertexArray(3, tbVertexArray::VT_POSITION);
    std::memcpy(vertices->getData(), corners, sizeof corners);
    auto* mesh = new tbMesh;
    mesh->set(tbMesh::TRIANGLES, vertices, indices, 3);
    const tbRef<tbScene> scene(new tbScene);
    scene->addChild(mesh);
    scene->update();
    stranger.intersect(scene.get());
    const tbRef<tbGroup> nothing(new tbGroup);
    stranger.intersect(nothing.get());
}

void SceneWalks::run(tbScene& scene)
{
    scene.acquireForMods();
    scene.updateFences();
    scene.update();
    scene.update();
    scene.releaseFromMods();

    scene.acquireForQuery();
    window->beginDraw();
    camera->draw(&scene);
    window->endDraw();
    listener->listen(&scene);
    collider->intersect(&scene);
    traverser->traverse(&scene);
    scene.releaseFromQuery();

    listener->beginListen();
    traverser->reset();
    // Hits hold the nodes that were hit; a walk of nothing lets them go.
    const tbRef<tbGroup> nothing(new tbGroup);
    collider->intersect(nothing.get());
}
} // namespace tbfuzz
