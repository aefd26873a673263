#pragma once

#include <tamber/graph/tbGroup.h>

/// Fetches what a walk reads of a node into the cache while the node before it is visited.
inline void tbiPrefetch(const tbGroup* node)
{
    const char* start = reinterpret_cast<const char*>(node);
    __builtin_prefetch(start);
    __builtin_prefetch(start + 64);
}

/// Calls `visit` with every child whose travel flags share a bit with `mask`. Nobody edits the list meanwhile.
template <class Visit>
void tbiForEachChild(const tbGroup* group, unsigned mask, Visit visit)
{
    const auto children = group->getChildren();
    for (std::size_t i = 0; i < children.size(); ++i)
    {
        if (i + 1 < children.size())
            tbiPrefetch(children[i + 1]);
        if (children[i]->anyTravFlags(mask))
            visit(children[i]);
    }
}
