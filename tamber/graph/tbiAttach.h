#pragma once

#include <tamber/graph/tbGroup.h>

#include <utility>

// What is known beforehand of the edges that one parent gets. Lives while they are made; for one thread. What is known
// of an edge goes to the first who makes it: a hook that runs for the edge, or the reading of the next child, may edit
// the same two nodes.
class tbiAttach
{
public:
    struct Known
    {
        /// Neither list has to be searched for the edge.
        bool isNew = false;
        /// All below the child has been told, and nothing has changed since: only the edge is new.
        bool isFresh = false;
        /// The parent's reference on the child has been taken.
        bool isHeld = false;
    };

    explicit tbiAttach(const tbGroup* to) : parent(to), outer(current) { current = this; }
    ~tbiAttach() { current = outer; }
    tbiAttach(const tbiAttach&) = delete;
    tbiAttach& operator=(const tbiAttach&) = delete;

    /// What holds for the next edge.
    void expect(const tbGroup* next, Known knowledge)
    {
        child = next;
        known = knowledge;
    }
    /// Nothing is expected any more. True when nobody has taken what was known.
    bool forget() { return std::exchange(child, nullptr); }

    /// What is known of an edge that is about to be made.
    static Known take(const tbGroup* above, const tbGroup* node)
    {
        tbiAttach* attach = current;
        if (!node || !attach || attach->child != node || attach->parent != above)
            return {};
        attach->child = nullptr;
        return attach->known;
    }

private:
    static inline thread_local constinit tbiAttach* current = nullptr;

    const tbGroup* parent;
    const tbGroup* child = nullptr;
    Known known;
    tbiAttach* outer;
};
