// The collider walk of tbTransform.
#include "tbTransform.h"

#include <tamber/collide/tbCollider.h>
#include <tamber/collide/tbiColliderFrame.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbiScopes.h>

void tbTransform::apply(tbCollider* collider) const
{
    tbTravContext* context = collider->getTravContext();
    collider->updateStats(this);
    const tbVolume::CONTAINMENT known = context->getCullResult();
    const bool tested = context->anyFlags(tbTravContext::COLLIDE_TRANSFORMS) != 0;
    if (tested && known == tbVolume::OUTSIDE)
        return;
    const tbiColliderFrame frame(collider, matrix);
    if (!frame)
        return;
    if (!tested || known == tbVolume::INSIDE)
    {
        tbGroup::apply(collider);
        return;
    }
    const tbiFailedRayScope ownRays(context);
    switch (collider->intersects(this))
    {
    case tbVolume::OUTSIDE:
        break;
    case tbVolume::PARTIAL:
        tbGroup::apply(collider);
        break;
    case tbVolume::INSIDE:
    {
        const tbiCullScope inside(context, tbVolume::INSIDE);
        tbGroup::apply(collider);
        break;
    }
    }
}
