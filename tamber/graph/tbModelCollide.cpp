// The collider walk of tbModel.
#include "tbModel.h"

#include <tamber/collide/tbCollider.h>
#include <tamber/trav/tbTravContext.h>

#include "tbiMaskScope.h"

void tbModel::apply(tbCollider* collider) const
{
    if (!enabled)
        return;
    tbTravContext* context = collider->getTravContext();
    const tbiMaskScope masked(context, colliderMask.get());
    if ((context->getColliderMask() & collider->getColliderMask()) != 0)
        tbTransform::apply(collider);
}
