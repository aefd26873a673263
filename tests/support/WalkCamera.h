// A camera at the origin that sees everything, for tests of what a walk visits.
#pragma once

#include <tamber/display/tbCamera.h>
#include <tamber/graph/tbGroup.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/volume/tbFrustum.h>

namespace tbtest
{
class WalkCamera
{
public:
    WalkCamera() : camera(new Camera) {}

    tbCamera* get() const { return camera.get(); }
    tbCamera* operator->() const { return camera.get(); }
    /// Walks with local-to-rendering matrices; with `culling` set, transforms and fences are tested.
    void walk(tbGroup* root, bool culling = false)
    {
        tbTravContext* context = camera->getTravContext();
        context->reset();
        if (!culling)
            context->removeFlags(tbTravContext::CULL_ALL);
        context->pushMatrix(camera->getWorldToRenderingMatrix());
        root->apply(camera.get());
        context->popMatrix();
    }
    /// The view volume, in rendering space.
    tbFrustum& frustum() { return static_cast<Camera*>(camera.get())->frustum; }

private:
    class Camera : public tbCamera
    {
    public:
        const tbFrustum* getFrustum() const override { return &frustum; }
        void draw(tbGroup*) override {}
        void setFOV(float, float) override {}
        void getFOV(float& horizontal, float& vertical) const override { horizontal = vertical = 0; }
        void applyViewport() override {}
        void clear() override {}
        void loadMatrices() override {}
        void loadModelMatrix(const tbMatrix&) override {}

        tbFrustum frustum;
    };

    tbRef<tbCamera> camera;
};
} // namespace tbtest
