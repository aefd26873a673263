// The listener walk of tbGroup.
#include "tbGroup.h"

#include <tamber/audio/tbListener.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/trav/tbTravContext.h>

#include "tbiChildren.h"

void tbGroup::apply(tbListener* listener) const
{
    const tbTravContext* context = listener->getTravContext();
    if (tbStats* stats = context->getStats())
        stats->incCount(this);
    tbiForEachChild(this, context->getTravMask(),
                    [listener](const tbGroup* child) { child->apply(listener); });
}
