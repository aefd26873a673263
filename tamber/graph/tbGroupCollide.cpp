// The collider walk of tbGroup.
#include "tbGroup.h"

#include <tamber/collide/tbCollider.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbiScopes.h>

#include "tbiChildren.h"

// The group stands on the path once for each child that is entered: paths in hits end at the node that was hit.
void tbGroup::apply(tbCollider* collider) const
{
    tbTravContext* context = collider->getTravContext();
    if (tbStats* stats = context->getStats())
        stats->incCount(this);
    tbiForEachChild(this, context->getTravMask(),
                    [this, context, collider](const tbGroup* child)
                    {
                        const tbiGroupScope onPath(context, this);
                        child->apply(collider);
                    });
}
