// The listener walk of tbGroup.
#include "tbGroup.h"

#include <tamber/audio/tbListener.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/trav/tbTravContext.h>

void tbGroup::apply(tbListener* listener) const
{
    const tbTravContext* context = listener->getTravContext();
    if (tbStats* stats = context->getStats())
        stats->incCount(this);
    const unsigned mask = context->getTravMask();
    for (const tbGroup* child : getChildren())
        if (child->anyTravFlags(mask))
            child->apply(listener);
}
