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

    /// How many edges this thread has made since it began, and how often it has moved the others in the list of a node
    /// that somebody holds: who saw all of them made, and none moved, knows what there is.
    static unsigned getNumMade() { return numMade; }
    static unsigned getNumMoves() { return numMoves; }

    // Queries. What is searched is the shorter of the two lists.
    static bool contains(const tbGroup* parent, const tbGroup* child);
    static int indexOf(const tbGroup* parent, const tbGroup* child);
    /// Whether the last edge to `child` came from `parent`. The child has a parent.
    static bool isLastParent(const tbGroup* parent, const tbGroup* child);

    // Edits.
    static bool find(const tbGroup* parent, const tbGroup* child, Edge& edge);
    /// The last child of a parent that has some, and the edge to it, without a search.
    static tbGroup* findLast(const tbGroup* parent, Edge& edge);
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
        return appendInBlocks(parent, child) || appendAnywhere(parent, child);
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

    static constexpr unsigned MOST_ROOM = tbNodeList::ROOM_MASK / tbNodeList::ROOM_ONE;

    static inline thread_local constinit unsigned numMade = 0;
    static inline thread_local constinit unsigned numMoves = 0;

    static bool inBlock(const tbNodeList& list);
    static unsigned countOf(const tbNodeList& list);
    static tbGroup** slotsOf(const tbNodeList& list);
    static unsigned firstOf(const tbNodeList& list);
    static unsigned endOf(const tbNodeList& list);
    static unsigned findSlot(const tbNodeList& list, const tbGroup* node);

    static tbNodeList& oppositeList(const tbNodeList& list, tbGroup* entry);
    static unsigned& oppositeOf(const tbNodeList& list, unsigned slot);
    static void moveEntry(const tbNodeList& list, unsigned from, unsigned to);

    static tbiNodeBlock* makeBlock(unsigned capacity);
    static void freeBlock(tbiNodeBlock* block);
    static bool makeRoom(tbNodeList& list, unsigned atFront, unsigned atEnd);
    static void compact(const tbNodeList& list, unsigned newFirst);
    static bool reserve(tbNodeList& list);
    static bool reserve(tbNodeList& list, unsigned more);
    static bool openGap(tbNodeList& list, unsigned i, unsigned& slot);
    static void put(tbNodeList& list, unsigned slot, tbGroup* node, unsigned opposite);
    static void setExtent(const tbNodeList& list, unsigned count, unsigned end);
    static bool appendInBlocks(tbGroup* parent, tbGroup* child);
    static bool appendAnywhere(tbGroup* parent, tbGroup* child);
    static void putLast(tbNodeList& list, unsigned word, tbGroup* node, unsigned opposite);
    static void appendTo(tbNodeList& list, tbGroup* node, unsigned opposite);
    static void removeSlot(tbNodeList& list, unsigned slot);
    static void removeSlotUnordered(tbNodeList& list, unsigned slot);
    static void trimHoles(tbNodeList& list, unsigned count, unsigned end);
};

inline void tbiNodeLinks::prefetchAppend(const tbGroup* child)
{
    const tbNodeList& list = child->parents;
    if ((list.word.load(std::memory_order_relaxed) & tbNodeList::IN_BLOCK) == 0)
        return;
    __builtin_prefetch(list.block->slots() + list.tail);
    __builtin_prefetch(&list.block->opposite(list.tail));
}

inline bool tbiNodeLinks::isLastParent(const tbGroup* parent, const tbGroup* child)
{
    const tbNodeList& list = child->parents;
    const bool inBlock = (list.word.load(std::memory_order_relaxed) & tbNodeList::IN_BLOCK) != 0;
    return (inBlock ? list.block->slots()[list.tail - 1] : list.single) == parent;
}

inline void tbiNodeLinks::putLast(tbNodeList& list, unsigned word, tbGroup* node, unsigned opposite)
{
    const unsigned slot = list.tail;
    list.block->slots()[slot] = node;
    list.block->opposite(slot) = opposite;
    list.tail = slot + 1;
    list.word.store(word + 1 - tbNodeList::ROOM_ONE, std::memory_order_relaxed);
}

// Where both lists are known to have room, as nearly always while many edges are made.
inline bool tbiNodeLinks::appendInBlocks(tbGroup* parent, tbGroup* child)
{
    tbNodeList& below = parent->children;
    tbNodeList& above = child->parents;
    const unsigned wordBelow = below.word.load(std::memory_order_relaxed);
    const unsigned wordAbove = above.word.load(std::memory_order_relaxed);
    if ((wordBelow & tbNodeList::ROOM_MASK) == 0 || (wordAbove & tbNodeList::ROOM_MASK) == 0)
        return false;
    const unsigned slotBelow = below.tail;
    putLast(below, wordBelow, child, above.tail);
    putLast(above, wordAbove, parent, slotBelow);
    ++numMade;
    return true;
}
