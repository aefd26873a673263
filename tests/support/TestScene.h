// A scene for tests, released at the end of the test, and short ways to fill it.
#pragma once

#include <tamber/graph/tbScene.h>
#include <tamber/graph/tbTransform.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/render/tbStyle.h>
#include <tests/support/TestGeometry.h>

namespace tbtest
{
/// Puts a new node below `parent`, which holds the only reference then, and returns it.
template <class Node>
Node* addNew(tbGroup* parent, Node* node)
{
    parent->addChild(node);
    return node;
}

template <class Object>
Object* named(const char* name, Object* object)
{
    object->setName(name);
    return object;
}

class TestScene
{
public:
    TestScene() : scene(new tbScene) {}

    tbScene* get() const { return scene.get(); }
    operator tbScene*() const { return scene.get(); }
    tbScene* operator->() const { return scene.get(); }

    /// New nodes below `parent`, below the scene when it is null. The graph holds the only reference.
    tbGroup* addGroup(tbGroup* parent = nullptr) { return add(new tbGroup, parent); }
    tbTransform* addTransform(tbGroup* parent, float x, float y, float z)
    {
        tbTransform* node = add(new tbTransform, parent);
        node->setXYZ(x, y, z);
        return node;
    }
    TestGeometry* addGeometry(tbGroup* parent, const tbSphere& bounds)
    {
        return add(new TestGeometry(bounds), parent);
    }
    template <class Trait>
    tbStyle* addStyle(tbGroup* parent, Trait* trait)
    {
        tbStyle* node = add(new tbStyle, parent);
        node->addTrait(trait);
        return node;
    }

    /// Every node below `parent` gets `width` children, `depth` levels deep.
    void addTree(tbGroup* parent, int width, int depth)
    {
        for (int i = 0; depth > 0 && i < width; ++i)
            addTree(addGroup(parent), width, depth - 1);
    }

    /// An edit with a frame update in it.
    void update()
    {
        scene->acquireForMods();
        scene->update();
        scene->releaseFromMods();
    }

private:
    template <class Node>
    Node* add(Node* node, tbGroup* parent)
    {
        return addNew(parent ? parent : scene.get(), node);
    }

    tbRef<tbScene> scene;
};
} // namespace tbtest
