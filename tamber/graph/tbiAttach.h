#pragma once

#include <tamber/graph/tbGroup.h>

// What is known beforehand of the edges that one parent gets: that an edge is new, so that neither list has to be
// searched for it, and that all below the child has been told already. Lives while the edges are made; for one thread.
class tbiAttach
{
public:
    explicit tbiAttach(const tbGroup* to) : parent(to), outer(current) { current = this; }
    ~tbiAttach() { current = outer; }
    tbiAttach(const tbiAttach&) = delete;
    tbiAttach& operator=(const tbiAttach&) = delete;

    /// What holds for the next child, and for no other.
    void set(const tbGroup* next, bool edgeIsNew, bool nodeIsFresh)
    {
        child = next;
        isNew = edgeIsNew;
        isFresh = nodeIsFresh;
    }

    /// Whether `node` is certain to be no child of `above`.
    static bool isNewEdge(const tbGroup* above, const tbGroup* node)
    {
        return applies(above, node) && current->isNew;
    }
    /// Whether an attach of `node` has to tell this one edge only: everything below has just been told, and nothing
    /// has changed since.
    static bool isFreshNode(const tbGroup* above, const tbGroup* node)
    {
        return applies(above, node) && current->isFresh;
    }

private:
    static bool applies(const tbGroup* above, const tbGroup* node)
    {
        return current && current->child == node && current->parent == above;
    }

    static inline thread_local constinit const tbiAttach* current = nullptr;

    const tbGroup* parent;
    const tbGroup* child = nullptr;
    bool isNew = false;
    bool isFresh = false;
    const tbiAttach* outer;
};
