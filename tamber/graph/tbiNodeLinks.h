#pragma once

#include <tamber/graph/tbGroup.h>

// The edges of the graph: a child in its parent's list of children and the parent in the child's list of parents,
// each end knowing the place of the other. Edits are for the one thread that edits the graph; they work around
// holes. Queries may run on several threads at once; they close holes first.
class tbiNodeLinks
{
public:
    /// An edge's places in the two lists; they hold until the next edit of either.
    struct Edge
    {
        unsigned inChildren;
        unsigned inParents;
    };

    // Queries. What is searched is the shorter of the two lists.
    static bool contains(const tbGroup* parent, const tbGroup* child);
    static int indexOf(const tbGroup* parent, const tbGroup* child);

    // Edits.
    static bool find(const tbGroup* parent, const tbGroup* child, Edge& edge);
    /// Makes room for more children, or parents, of a node. False when a list is full or memory is out.
    static bool reserveChildren(tbGroup* parent, int more)
    {
        return reserve(parent->children, unsigned(more));
    }
    static bool reserveParents(tbGroup* child, int more) { return reserve(child->parents, unsigned(more)); }
    /// Fetches into the cache what append() touches of a child with many parents.
    static void prefetchAppend(const tbGroup* child);
    /// False when a list is full or memory is out; nothing has changed then.
    static bool append(tbGroup* parent, tbGroup* child)
    {
        return appendInBlocks(parent, child) || appendWithRoom(parent, child);
    }
    /// `i` is within 0..getNumChildren().
    static bool insert(tbGroup* parent, int i, tbGroup* child);
    /// The children keep their order; the child's parents too with `keepOrder`, else the last one moves into the gap.
    static void remove(tbGroup* parent, tbGroup* child, const Edge& edge, bool keepOrder = true);
    /// `node` takes the child's place under the parent. When it cannot, being the parent itself or its child
    /// already, the place is dropped and the result is false.
    static bool replace(tbGroup* parent, tbGroup* child, tbGroup* node, bool keepOrder);
    /// The flags of `mask` that the children of `parent` hold.
    static unsigned flagsBelow(const tbGroup* parent, unsigned mask);

    static void closeHoles(const tbNodeList& list);
    static void destroy(tbNodeList& list);

private:
    static constexpr unsigned NEAR_END =
        16; // removals this close to an end shift entries, others leave a hole
    static constexpr unsigned FIRST_CAPACITY = 4;

    // Where the next entry of a list goes.
    struct Tail
    {
        tbGroup** slot;
        unsigned* opposite;
        unsigned place;
        unsigned word; // of the list as it is
    };

    static bool inBlock(const tbNodeList& list);
    static unsigned countOf(const tbNodeList& list);
    static tbGroup** slotsOf(const tbNodeList& list);
    static unsigned firstOf(const tbNodeList& list);
    static unsigned endOf(const tbNodeList& list);
    static unsigned findSlot(const tbNodeList& list, const tbGroup* node);

    static tbNodeList& oppositeList(const tbNodeList& list, tbGroup* entry);
    static unsigned& oppositeOf(const tbNodeList& list, unsigned slot);
    static void moveEntry(const tbNodeList& list, unsigned from, unsigned to);

    static bool makeRoom(tbNodeList& list, unsigned atFront, unsigned atEnd);
    static void compact(const tbNodeList& list, unsigned newFirst);
    static bool reserve(tbNodeList& list);
    static bool reserve(tbNodeList& list, unsigned more);
    static bool openGap(tbNodeList& list, unsigned i, unsigned& slot);
    static void put(tbNodeList& list, unsigned slot, tbGroup* node, unsigned opposite);
    static bool findTailInBlock(tbNodeList& list, unsigned word, Tail& tail);
    static bool findTail(tbNodeList& list, Tail& tail);
    static bool makeTail(tbNodeList& list, Tail& tail);
    static void appendAt(tbNodeList& list, const Tail& tail, tbGroup* node, unsigned opposite);
    static bool appendInBlocks(tbGroup* parent, tbGroup* child);
    static bool appendWithRoom(tbGroup* parent, tbGroup* child);
    static void setCount(tbNodeList& list, unsigned count);
    static void removeSlot(tbNodeList& list, unsigned slot);
    static void removeSlotUnordered(tbNodeList& list, unsigned slot);
    static void trimHoles(tbNodeList& list);
};

// False when there is no room.
inline bool tbiNodeLinks::findTailInBlock(tbNodeList& list, unsigned word, Tail& tail)
{
    const unsigned count = word & tbNodeList::COUNT_MASK;
    tbiNodeBlock* block = list.block;
    const unsigned end = block->first + count + block->holes;
    tail = {block->slots() + end, block->opposites() + end, end, word};
    return end < block->capacity && count < tbNodeList::MAX_ENTRIES;
}

inline void tbiNodeLinks::appendAt(tbNodeList& list, const Tail& tail, tbGroup* node, unsigned opposite)
{
    *tail.slot = node;
    *tail.opposite = opposite;
    list.word.store(tail.word + 1, std::memory_order_relaxed);
}

// Where both lists are long and have room, as nearly always while many edges are made.
inline bool tbiNodeLinks::appendInBlocks(tbGroup* parent, tbGroup* child)
{
    const unsigned wordBelow = parent->children.word.load(std::memory_order_relaxed);
    const unsigned wordAbove = child->parents.word.load(std::memory_order_relaxed);
    Tail below;
    Tail above;
    if ((wordBelow & wordAbove & tbNodeList::IN_BLOCK) == 0 ||
        !findTailInBlock(parent->children, wordBelow, below) ||
        !findTailInBlock(child->parents, wordAbove, above))
        return false;
    appendAt(parent->children, below, child, above.place);
    appendAt(child->parents, above, parent, below.place);
    return true;
}
