// The walks of tbGroup: frame update, bounds, traverser, camera.
#include "tbGroup.h"

#include <tamber/display/tbCamera.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/kernel/tbiMemoryWatch.h>
#include <tamber/thread/tbThread.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbiScopes.h>

#include "tbiChildren.h"
#include "tbiPropagation.h"

namespace
{

// The calling thread's own context, unless a walk of this thread is using it or has left its path there.
tbRef<tbTravContext> contextForBounds()
{
    const tbThread* thread = tbThread::getCurrentThread();
    tbTravContext* context = thread ? thread->getTravContext() : nullptr;
    if (!context || context->getVolume() || context->getGroup())
        return tbRef<tbTravContext>(new tbTravContext);
    context->reset();
    return tbRef<tbTravContext>(context);
}

} // namespace

// Children are found by index: an update may change the graph below its node.
void tbGroup::update(tbTravContext* context)
{
    if (tbStats* stats = context->getStats())
        stats->incCount(this);
    travFlags &= TF_KEPT_BY_UPDATE;
    for (int i = 0; i < getNumChildren(); ++i)
    {
        tbGroup* child = getChild(i);
        if (i + 1 < getNumChildren())
            tbiPrefetch(getChild(i + 1));
        if (child->anyTravFlags(TF_ANY_UPDATE))
            child->update(context);
    }
}

// Nothing is written where nothing is stale: colliders on several threads ask for the bounds of the same geometry.
void tbGroup::updateFences(tbTravContext* context)
{
    if (anyTravFlags(TF_FENCE))
        removeTravFlags(TF_FENCE);
    for (tbGroup* child : getChildren())
        child->updateFences(context);
}

void tbGroup::getBoundingVolume(tbVolume& volume)
{
    const tbRef<tbTravContext> context = contextForBounds();
    if (!context)
        return;
    volume.makeEmpty();
    const tbiMemoryWatch memory;
    const tbiVolumeScope volumeScope(context.get(), &volume);
    if (volumeScope)
        updateFences(context.get());
    if (memory.ranOut())
        tbiPropagation::raiseAll(this, TF_FENCE);
}

tbTraverser::TRAV_STATE tbGroup::apply(tbTraverser* traverser, bool noPreApply)
{
    if (!noPreApply)
        if (const tbTraverser::TRAV_STATE answer = traverser->preApply(this);
            answer != tbTraverser::TRAV_CONTINUE)
            return answer;
    tbTravContext* context = traverser->getTravContext();
    if (tbStats* stats = context->getStats())
        stats->incCount(this);
    tbiGroupScope onPath(context, this);
    if (!onPath)
        return tbTraverser::TRAV_CONTINUE;
    tbTraverser::TRAV_STATE state = traverser->apply(this);
    if (state == tbTraverser::TRAV_CONTINUE)
        for (int i = 0; i < getNumChildren() && state != tbTraverser::TRAV_STOP; ++i)
            state = getChild(i)->apply(traverser, false);
    if (state == tbTraverser::TRAV_STOP)
    {
        onPath.leave();
        return tbTraverser::TRAV_STOP;
    }
    return tbTraverser::TRAV_CONTINUE;
}

void tbGroup::apply(tbCamera* camera) const
{
    const tbTravContext* context = camera->getTravContext();
    if (tbStats* stats = context->getStats())
        stats->incCount(this);
    tbiForEachChild(this, context->getTravMask(), [camera](const tbGroup* child) { child->apply(camera); });
}

void tbGroup::applyDirect(tbCollider*, bool) const {}

void tbGroup::applyDirect(tbListener*, bool) const {}

void tbGroup::applyDirect(tbCamera*, bool) const {}

void tbGroup::updateDirect(tbScene*, bool) {}
