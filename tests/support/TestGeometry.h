// Geometry for tests that need something to bound, to cull and to count, without a module that draws.
#pragma once

#include <tamber/render/tbGeometry.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/volume/tbSphere.h>
#include <tamber/volume/tbVolume.h>

namespace tbtest
{
/// A sphere without vertices. It belongs to tbGeometry's class and is left out of deep copies.
class TestGeometry : public tbGeometry
{
public:
    TestGeometry() = default;
    explicit TestGeometry(const tbSphere& bounds) : sphere(bounds) {}

    const tbVertexArray* getVertexArray() const override { return nullptr; }
    int getNumPrimitives() const override { return 1; }
    int getNumIndices() const override { return 0; }
    const unsigned int* getIndices() const override { return nullptr; }
    void draw(tbCamera*) const override { ++numDrawn; }
    void getBoundingVolume(tbVolume& volume) override
    {
        volume.makeEmpty();
        volume.extendAround(sphere);
    }
    void updateFences(tbTravContext* context) override
    {
        tbGeometry::updateFences(context);
        tbVolume* volume = context->getVolume();
        if (!volume)
            return;
        tbSphere placed;
        placed.xform(sphere, context->getMatrix());
        volume->extendAround(placed);
    }

    mutable int numDrawn = 0;

private:
    tbSphere sphere;
};
} // namespace tbtest
