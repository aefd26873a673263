#include "tbiNodeLinks.h"

#include <tamber/thread/tbiSpinMutex.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <mutex>

namespace
{

constexpr unsigned NO_SLOT = 0xFFFFFFFF;

// Readers close holes under this one lock: closing moves entries, and each move is told to another node's list.
constinit tbiSpinMutex holesMutex;

std::size_t blockSize(unsigned capacity)
{
    return sizeof(tbiNodeBlock) + std::size_t(capacity) * (sizeof(tbGroup*) + sizeof(unsigned));
}

} // namespace

tbNodeList::~tbNodeList()
{
    tbiNodeLinks::destroy(*this);
}

void tbNodeList::closeHoles() const
{
    tbiNodeLinks::closeHoles(*this);
}

inline bool tbiNodeLinks::inBlock(const tbNodeList& list)
{
    return (list.word.load(std::memory_order_relaxed) & tbNodeList::IN_BLOCK) != 0;
}

inline unsigned tbiNodeLinks::countOf(const tbNodeList& list)
{
    return list.word.load(std::memory_order_relaxed) & tbNodeList::COUNT_MASK;
}

tbGroup** tbiNodeLinks::slotsOf(const tbNodeList& list)
{
    return inBlock(list) ? list.block->slots() : const_cast<tbGroup**>(&list.single);
}

unsigned tbiNodeLinks::firstOf(const tbNodeList& list)
{
    return inBlock(list) ? list.block->first : 0;
}

unsigned tbiNodeLinks::endOf(const tbNodeList& list)
{
    const unsigned count = countOf(list);
    return inBlock(list) ? list.block->first + count + list.block->holes : count;
}

unsigned tbiNodeLinks::findSlot(const tbNodeList& list, const tbGroup* node)
{
    tbGroup** slots = slotsOf(list);
    const unsigned first = firstOf(list);
    for (unsigned slot = endOf(list); slot > first; --slot)
        if (slots[slot - 1] == node)
            return slot - 1;
    return NO_SLOT;
}

inline tbNodeList& tbiNodeLinks::oppositeList(const tbNodeList& list, tbGroup* entry)
{
    const bool ofParents = (list.word.load(std::memory_order_relaxed) & tbNodeList::PARENTS) != 0;
    return ofParents ? entry->children : entry->parents;
}

inline unsigned& tbiNodeLinks::oppositeOf(const tbNodeList& list, unsigned slot)
{
    return inBlock(list) ? list.block->opposites()[slot] : const_cast<unsigned&>(list.opposite);
}

// Tells the node at the other end, too.
inline void tbiNodeLinks::moveEntry(const tbNodeList& list, unsigned from, unsigned to)
{
    tbGroup** slots = list.block->slots();
    unsigned* opposites = list.block->opposites();
    slots[to] = slots[from];
    opposites[to] = opposites[from];
    if (slots[to])
        oppositeOf(oppositeList(list, slots[to]), opposites[to]) = to;
}

inline void tbiNodeLinks::setCount(tbNodeList& list, unsigned count)
{
    const unsigned word = list.word.load(std::memory_order_relaxed);
    list.word.store((word & ~tbNodeList::COUNT_MASK) | count, std::memory_order_relaxed);
}

// Closes all holes and lets the entries begin at `newFirst`, which is not behind the present first slot.
void tbiNodeLinks::compact(const tbNodeList& list, unsigned newFirst)
{
    tbiNodeBlock* block = list.block;
    tbGroup** slots = block->slots();
    const unsigned end = endOf(list);
    unsigned to = newFirst;
    for (unsigned from = block->first; from < end; ++from)
    {
        if (!slots[from])
            continue;
        if (from != to)
            moveEntry(list, from, to);
        ++to;
    }
    block->first = newFirst;
    block->holes = 0;
    block->hint = newFirst;
    list.word.fetch_and(~tbNodeList::HAS_HOLES, std::memory_order_release);
}

void tbiNodeLinks::closeHoles(const tbNodeList& list)
{
    const std::scoped_lock guard(holesMutex);
    if ((list.word.load(std::memory_order_relaxed) & tbNodeList::HAS_HOLES) != 0)
        compact(list, list.block->first);
}

void tbiNodeLinks::destroy(tbNodeList& list)
{
    if (inBlock(list))
        tbMemory::free(list.block);
}

// Moves the entries to a new block with so many free slots at its ends. Slots keep their numbers unless there is to
// be room at the front.
bool tbiNodeLinks::makeRoom(tbNodeList& list, unsigned atFront, unsigned atEnd)
{
    const unsigned end = endOf(list);
    const unsigned capacity = std::max(FIRST_CAPACITY, end + atFront + atEnd);
    auto* block = static_cast<tbiNodeBlock*>(tbMemory::malloc(blockSize(capacity)));
    if (!block)
        return false;
    const bool hadBlock = inBlock(list);
    tbiNodeBlock* old = hadBlock ? list.block : nullptr;
    *block = {capacity, firstOf(list), old ? old->holes : 0, firstOf(list)};
    std::memcpy(static_cast<void*>(block->slots()), slotsOf(list), std::size_t(end) * sizeof(tbGroup*));
    if (end > 0)
        std::memcpy(block->opposites(), &oppositeOf(list, 0), std::size_t(end) * sizeof(unsigned));
    list.block = block;
    list.word.fetch_or(tbNodeList::IN_BLOCK, std::memory_order_relaxed);
    tbMemory::free(old);
    if (atFront > 0)
    {
        for (unsigned slot = end; slot > block->first; --slot)
            moveEntry(list, slot - 1, slot - 1 + atFront);
        block->first += atFront;
    }
    return true;
}

// Makes sure that one more entry can be appended.
bool tbiNodeLinks::reserve(tbNodeList& list)
{
    const unsigned count = countOf(list);
    if (count >= tbNodeList::MAX_ENTRIES)
        return false;
    if (!inBlock(list))
        return count == 0 || makeRoom(list, 0, FIRST_CAPACITY - 1);
    tbiNodeBlock* block = list.block;
    if (endOf(list) < block->capacity)
        return true;
    if (count < block->capacity / 2)
    {
        compact(list, 0);
        return true;
    }
    return makeRoom(list, 0, block->capacity);
}

// Makes sure that `more` entries can be appended.
bool tbiNodeLinks::reserve(tbNodeList& list, unsigned more)
{
    const unsigned count = countOf(list);
    if (more <= 1)
        return more == 0 || reserve(list);
    if (count >= tbNodeList::MAX_ENTRIES || more > tbNodeList::MAX_ENTRIES - count)
        return false;
    if (!inBlock(list))
        return makeRoom(list, 0, more);
    const unsigned capacity = list.block->capacity;
    if (endOf(list) + more <= capacity)
        return true;
    if (count + more < capacity / 2)
    {
        compact(list, 0);
        return true;
    }
    return makeRoom(list, 0, std::max(more, capacity));
}

inline void tbiNodeLinks::put(tbNodeList& list, unsigned slot, tbGroup* node, unsigned opposite)
{
    slotsOf(list)[slot] = node;
    oppositeOf(list, slot) = opposite;
}

// False when there is no room.
bool tbiNodeLinks::findTail(tbNodeList& list, Tail& tail)
{
    const unsigned word = list.word.load(std::memory_order_relaxed);
    if ((word & tbNodeList::IN_BLOCK) != 0)
        return findTailInBlock(list, word, tail);
    tail = {&list.single, &list.opposite, 0, word};
    return (word & tbNodeList::COUNT_MASK) == 0;
}

// Makes room when there is none. False when the list is full or memory is out.
bool tbiNodeLinks::makeTail(tbNodeList& list, Tail& tail)
{
    return findTail(list, tail) || (reserve(list) && findTail(list, tail));
}

// Frees the slot of position `i` for a new entry and counts it.
bool tbiNodeLinks::openGap(tbNodeList& list, unsigned i, unsigned& slot)
{
    const unsigned count = countOf(list);
    if (!reserve(list))
        return false;
    if ((list.word.load(std::memory_order_relaxed) & tbNodeList::HAS_HOLES) != 0)
        compact(list, list.block->first);
    if (i <= count / 2)
    {
        if (list.block->first == 0 && !makeRoom(list, count / 2 + 2, 1))
            return false;
        tbiNodeBlock* block = list.block;
        --block->first;
        slot = block->first + i;
        for (unsigned to = block->first; to < slot; ++to)
            moveEntry(list, to + 1, to);
    }
    else
    {
        slot = firstOf(list) + i;
        for (unsigned to = endOf(list); to > slot; --to)
            moveEntry(list, to - 1, to);
    }
    setCount(list, count + 1);
    return true;
}

// The outer slots of a list are never holes.
void tbiNodeLinks::trimHoles(tbNodeList& list)
{
    tbiNodeBlock* block = list.block;
    tbGroup** slots = block->slots();
    const unsigned count = countOf(list);
    while (block->holes > 0 && !slots[block->first])
    {
        ++block->first;
        --block->holes;
    }
    while (block->holes > 0 && !slots[block->first + count + block->holes - 1])
        --block->holes;
    if (block->holes == 0)
        list.word.fetch_and(~tbNodeList::HAS_HOLES, std::memory_order_relaxed);
}

void tbiNodeLinks::removeSlot(tbNodeList& list, unsigned slot)
{
    const unsigned count = countOf(list) - 1;
    if (!inBlock(list))
    {
        list.single = nullptr;
        setCount(list, 0);
        return;
    }
    tbiNodeBlock* block = list.block;
    if (count == 0)
    {
        tbMemory::free(block);
        list.single = nullptr;
        list.word.fetch_and(tbNodeList::PARENTS, std::memory_order_relaxed);
        return;
    }
    const unsigned last = endOf(list) - 1;
    if (slot - block->first < NEAR_END)
    {
        for (unsigned to = slot; to > block->first; --to)
            moveEntry(list, to - 1, to);
        ++block->first;
        setCount(list, count);
        trimHoles(list);
    }
    else if (last - slot < NEAR_END)
    {
        for (unsigned to = slot; to < last; ++to)
            moveEntry(list, to + 1, to);
        setCount(list, count);
        trimHoles(list);
    }
    else
    {
        block->slots()[slot] = nullptr;
        ++block->holes;
        setCount(list, count);
        list.word.fetch_or(tbNodeList::HAS_HOLES, std::memory_order_relaxed);
        if (block->holes > count)
            compact(list, block->first);
    }
}

void tbiNodeLinks::removeSlotUnordered(tbNodeList& list, unsigned slot)
{
    const unsigned last = endOf(list) - 1;
    if (slot != last)
        moveEntry(list, last, slot);
    removeSlot(list, last);
}

bool tbiNodeLinks::find(const tbGroup* parent, const tbGroup* child, Edge& edge)
{
    if (countOf(parent->children) <= countOf(child->parents))
    {
        edge.inChildren = findSlot(parent->children, child);
        if (edge.inChildren == NO_SLOT)
            return false;
        edge.inParents = oppositeOf(parent->children, edge.inChildren);
        return true;
    }
    edge.inParents = findSlot(child->parents, parent);
    if (edge.inParents == NO_SLOT)
        return false;
    edge.inChildren = oppositeOf(child->parents, edge.inParents);
    return true;
}

bool tbiNodeLinks::contains(const tbGroup* parent, const tbGroup* child)
{
    const bool inChildren = countOf(parent->children) <= countOf(child->parents);
    const auto entries = inChildren ? parent->children.span() : child->parents.span();
    const tbGroup* wanted = inChildren ? child : parent;
    return std::find(entries.begin(), entries.end(), wanted) != entries.end();
}

int tbiNodeLinks::indexOf(const tbGroup* parent, const tbGroup* child)
{
    const auto children = parent->children.span();
    const auto parents = child->parents.span();
    if (children.size() <= parents.size())
    {
        const auto found = std::find(children.begin(), children.end(), child);
        return found == children.end() ? -1 : int(found - children.begin());
    }
    const auto found = std::find(parents.begin(), parents.end(), parent);
    if (found == parents.end())
        return -1;
    const unsigned slot = firstOf(child->parents) + unsigned(found - parents.begin());
    return int(oppositeOf(child->parents, slot) - firstOf(parent->children));
}

// Without a look at the block, which may not be at hand itself: lists that grew by appending are powers of two long.
void tbiNodeLinks::prefetchAppend(const tbGroup* child)
{
    const tbNodeList& list = child->parents;
    const unsigned count = countOf(list);
    if (!inBlock(list))
        return;
    const char* block = reinterpret_cast<const char*>(list.block);
    const char* slots = block + sizeof(tbiNodeBlock);
    const char* opposites = slots + std::bit_ceil(count + 1) * sizeof(tbGroup*);
    __builtin_prefetch(block);
    __builtin_prefetch(slots + count * sizeof(tbGroup*));
    __builtin_prefetch(opposites + count * sizeof(unsigned));
}

bool tbiNodeLinks::appendWithRoom(tbGroup* parent, tbGroup* child)
{
    Tail below;
    Tail above;
    if (!makeTail(parent->children, below) || !makeTail(child->parents, above))
        return false;
    appendAt(parent->children, below, child, above.place);
    appendAt(child->parents, above, parent, below.place);
    return true;
}

bool tbiNodeLinks::insert(tbGroup* parent, int i, tbGroup* child)
{
    if (i == parent->getNumChildren())
        return append(parent, child);
    Tail above;
    unsigned slot = 0;
    if (!makeTail(child->parents, above) || !openGap(parent->children, unsigned(i), slot))
        return false;
    put(parent->children, slot, child, above.place);
    appendAt(child->parents, above, parent, slot);
    return true;
}

void tbiNodeLinks::remove(tbGroup* parent, tbGroup* child, const Edge& edge, bool keepOrder)
{
    removeSlot(parent->children, edge.inChildren);
    if (keepOrder)
        removeSlot(child->parents, edge.inParents);
    else
        removeSlotUnordered(child->parents, edge.inParents);
}

bool tbiNodeLinks::replace(tbGroup* parent, tbGroup* child, tbGroup* node, bool keepOrder)
{
    Edge edge;
    if (!find(parent, child, edge))
        return false;
    Edge present;
    Tail above;
    if (node == parent || find(parent, node, present) || !makeTail(node->parents, above))
    {
        remove(parent, child, edge, keepOrder);
        return false;
    }
    put(parent->children, edge.inChildren, node, above.place);
    appendAt(node->parents, above, parent, edge.inChildren);
    if (keepOrder)
        removeSlot(child->parents, edge.inParents);
    else
        removeSlotUnordered(child->parents, edge.inParents);
    return true;
}

// Goes round from where the last search ended: children that hold what their neighbours hold are found at once.
unsigned tbiNodeLinks::flagsBelow(const tbGroup* parent, unsigned mask)
{
    const tbNodeList& list = parent->children;
    tbGroup** slots = slotsOf(list);
    const unsigned first = firstOf(list);
    const unsigned end = endOf(list);
    unsigned slot = inBlock(list) ? std::clamp(list.block->hint, first, end - 1) : first;
    unsigned found = 0;
    for (unsigned left = end - first; left > 0 && found != mask; --left)
    {
        if (slots[slot])
            found |= slots[slot]->travFlags & mask;
        if (found == mask)
            break;
        if (++slot == end)
            slot = first;
    }
    if (inBlock(list))
        list.block->hint = slot;
    return found;
}
