// The collider walk of tbGroup.
#include "tbGroup.h"

#include <tamber/collide/tbCollider.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbiScopes.h>

// The group stands on the path once for each child that is entered: paths in hits end at the node that was hit.
void tbGroup::apply(tbCollider* collider) const
{
    tbTravContext* context = collider->getTravContext();
    if (tbStats* stats = context->getStats())
        stats->incCount(this);
    const unsigned mask = context->getTravMask();
    for (const tbGroup* child : getChildren())
    {
        if (!child->anyTravFlags(mask))
            continue;
        const tbiGroupScope onPath(context, this);
        child->apply(collider);
    }
}
