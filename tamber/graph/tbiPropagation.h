#pragma once

#include <tamber/graph/tbGroup.h>

// How flags and notifications travel through the graph. Calls that the graph nests as deep as itself are carried
// out here from a list once they are some levels deep, so that a chain of a hundred thousand nodes needs no deep
// stack; what each node is told, and the flags that result, are those of the plain recursion.
class tbiPropagation
{
public:
    /// parent->dirtyUp(bits) and parent->cleanUp(bits), soon at the latest.
    static void dirtyUp(tbGroup* parent, unsigned bits) { climb(&tbGroup::dirtyUp, parent, bits); }
    static void cleanUp(tbGroup* parent, unsigned bits) { climb(&tbGroup::cleanUp, parent, bits); }

    /// Tells every edge of the subtree of `node`, the deepest first, and last that `node` came under `parent`. A fresh
    /// node's subtree has been told, and nothing has changed there since.
    static void added(tbGroup* node, tbGroup* parent, bool isFresh);
    /// Raises flags on every node from `node` down, each once, and above it. For passes that could not be finished.
    static void raiseAll(tbGroup* node, unsigned bits);
    /// What tbGroup::removedFrom() does: the node's own part, then removedFrom(parent) for every node below it.
    static void removed(tbGroup* node, tbGroup* parent);

    /// The parents that a node without news asks whether they carry its flags: all of them. Only a node that comes
    /// under one parent after another asks the new one alone, or many instances would take a square of their time.
    static std::span<tbGroup* const> parentsToTell(const tbGroup* node)
    {
        return newEdge && newEdge->node == node ? std::span<tbGroup* const>(&newEdge->parent, 1)
                                                : node->getParents();
    }

    /// A new stamp for nodes with several parents, never 0.
    static std::uint32_t newStamp();
    /// Whether this walk comes to a node for the first time. Nodes with one parent need no stamp.
    static bool firstVisit(tbGroup* node, std::uint32_t& stamp);

private:
    using Climb = void (tbGroup::*)(unsigned);
    class Removal;

    static constexpr int MANY_PARENTS = 64;

    // The edge that is being told to a node that asks its new parent alone.
    struct NewEdge
    {
        const tbGroup* node;
        tbGroup* parent;
    };
    static inline thread_local constinit const NewEdge* newEdge = nullptr;

    static void climb(Climb step, tbGroup* parent, unsigned bits);
    static void raiseBelow(tbGroup* node, unsigned bits, std::uint32_t& stamp);
    static void addedWithAll(tbGroup* node, tbGroup* parent);
    static void tellAdded(tbGroup* node, tbGroup* parent);
    static void tellNewEdge(tbGroup* node, tbGroup* parent);
};

// Keeps a node alive. A node that nobody holds belongs to the caller and is left alone.
class tbiKeep
{
public:
    explicit tbiKeep(tbGroup* node) : held(node && node->getRefCount() > 0 ? node : nullptr)
    {
        if (held)
            held->ref();
    }
    ~tbiKeep()
    {
        if (held)
            held->unRef();
    }
    tbiKeep(const tbiKeep&) = delete;
    tbiKeep& operator=(const tbiKeep&) = delete;

private:
    tbGroup* held;
};

// The nodes of a list as they were, kept alive. Nulls are left out.
class tbiNodeSnapshot
{
public:
    explicit tbiNodeSnapshot(std::span<tbGroup* const> from);
    ~tbiNodeSnapshot();
    tbiNodeSnapshot(const tbiNodeSnapshot&) = delete;
    tbiNodeSnapshot& operator=(const tbiNodeSnapshot&) = delete;

    /// False when memory is out: some nodes are missing.
    bool isWhole() const { return whole; }
    tbGroup* const* begin() const { return nodes.begin(); }
    tbGroup* const* end() const { return nodes.end(); }
    int getNum() const { return nodes.getNum(); }
    tbGroup* operator[](int i) const { return nodes[i]; }

private:
    tbTList<tbGroup*> nodes;
    tbTList<tbGroup*> held;
    bool whole = true;
};
