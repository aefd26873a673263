// The walks of tbTransform: frame update, bounds, traverser, listener, camera.
#include "tbTransform.h"

#include <tamber/audio/tbListener.h>
#include <tamber/display/tbCamera.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbiScopes.h>
#include <tamber/volume/tbFrustum.h>

void tbTransform::update(tbTravContext* context)
{
    if (const tbiMatrixScope placed(context, matrix); placed)
        tbGroup::update(context);
}

// The sphere is rebuilt only when something below has changed; what is above gets it in its own coordinates.
void tbTransform::updateFences(tbTravContext* context)
{
    tbVolume* above = context->getVolume();
    if (anyTravFlags(TF_FENCE))
    {
        volume.makeEmpty();
        const tbiVolumeScope bounds(context, &volume);
        const tbiIdentScope ownFrame(context);
        if (bounds && ownFrame)
            tbGroup::updateFences(context);
    }
    if (!above || volume.isEmpty())
        return;
    if (isIdentity())
    {
        above->extendAround(volume);
        return;
    }
    const tbiMatrixScope placed(context, matrix);
    if (!placed)
        return;
    tbSphere sphere(volume);
    sphere.xform(context->getMatrix());
    above->extendAround(sphere);
}

tbTraverser::TRAV_STATE tbTransform::apply(tbTraverser* traverser, bool noPreApply)
{
    if (!noPreApply)
        if (const tbTraverser::TRAV_STATE answer = traverser->preApply(this);
            answer != tbTraverser::TRAV_CONTINUE)
            return answer;
    tbiFrameScope frame(traverser->getTravContext(), matrix);
    if (!frame)
        return tbTraverser::TRAV_CONTINUE;
    const tbTraverser::TRAV_STATE state = tbGroup::apply(traverser, true);
    if (state == tbTraverser::TRAV_STOP)
        frame.leave();
    return state;
}

void tbTransform::apply(tbListener* listener) const
{
    if (const tbiMatrixScope placed(listener->getTravContext(), matrix); placed)
        tbGroup::apply(listener);
}

void tbTransform::apply(tbCamera* camera) const
{
    tbTravContext* context = camera->getTravContext();
    const tbVolume::CONTAINMENT known = context->getCullResult();
    if (!context->anyFlags(tbTravContext::CULL_TRANSFORMS) || known == tbVolume::INSIDE)
    {
        if (const tbiMatrixScope placed(context, matrix); placed)
            tbGroup::apply(camera);
        return;
    }
    if (known != tbVolume::PARTIAL)
        return;
    const tbiMatrixScope placed(context, matrix);
    if (!placed)
        return;
    tbSphere sphere(volume);
    sphere.xform(context->getMatrix());
    switch (camera->getFrustum()->contains(sphere))
    {
    case tbVolume::OUTSIDE:
        break;
    case tbVolume::PARTIAL:
        tbGroup::apply(camera);
        break;
    case tbVolume::INSIDE:
    {
        const tbiCullScope inside(context, tbVolume::INSIDE);
        tbGroup::apply(camera);
        break;
    }
    }
}
