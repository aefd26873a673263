#include "tbiNodeLinks.h"

#include <tamber/thread/tbiSpinMutex.h>

#include <algorithm>
#include <cstring>
#include <mutex>
#include <new>

namespace
{

constexpr unsigned NO_SLOT = 0xFFFFFFFF;

// Readers close holes under this one lock: closing moves entries, and each move is told to another node's list.
constinit tbiSpinMutex holesMutex;

// Of the opposite places before a block.
std::size_t placesSize(unsigned capacity)
{
    const std::size_t size = std::size_t(capacity) * sizeof(unsigned);
    return (size + alignof(tbiNodeBlock) - 1) / alignof(tbiNodeBlock) * alignof(tbiNodeBlock);
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

inline unsigned tbiNodeLinks::endOf(const tbNodeList& list)
{
    return inBlock(list) ? list.tail : countOf(list);
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
    return inBlock(list) ? list.block->opposite(slot) : list.tail;
}

// Tells the node at the other end, too.
inline void tbiNodeLinks::moveEntry(const tbNodeList& list, unsigned from, unsigned to)
{
    tbiNodeBlock* block = list.block;
    tbGroup* node = block->slots()[to] = block->slots()[from];
    const unsigned opposite = block->opposite(to) = block->opposite(from);
    if (node)
        oppositeOf(oppositeList(list, node), opposite) = to;
}

// Of a list in a block. What lies between its ends and is no entry is a hole.
inline void tbiNodeLinks::setExtent(const tbNodeList& list, unsigned count, unsigned end)
{
    const tbiNodeBlock* block = list.block;
    const unsigned room =
        count < tbNodeList::MAX_ENTRIES - MOST_ROOM ? std::min(block->capacity - end, MOST_ROOM) : 0;
    const unsigned holes = end - block->first > count ? tbNodeList::HAS_HOLES : 0;
    const unsigned kind = list.word.load(std::memory_order_relaxed) & tbNodeList::PARENTS;
    list.tail = end;
    list.word.store(kind | tbNodeList::IN_BLOCK | holes | room * tbNodeList::ROOM_ONE | count,
                    std::memory_order_release);
}

// Closes all holes and lets the entries begin at `newFirst`, which is not behind the present first slot.
void tbiNodeLinks::compact(const tbNodeList& list, unsigned newFirst)
{
    tbiNodeBlock* block = list.block;
    tbGroup** slots = block->slots();
    unsigned to = newFirst;
    for (unsigned from = block->first; from < list.tail; ++from)
    {
        if (!slots[from])
            continue;
        if (from != to)
            moveEntry(list, from, to);
        ++to;
    }
    block->first = newFirst;
    block->hint = newFirst;
    setExtent(list, to - newFirst, to);
}

void tbiNodeLinks::closeHoles(const tbNodeList& list)
{
    const std::scoped_lock guard(holesMutex);
    if ((list.word.load(std::memory_order_relaxed) & tbNodeList::HAS_HOLES) != 0)
        compact(list, list.block->first);
}

tbiNodeBlock* tbiNodeLinks::makeBlock(unsigned capacity)
{
    const std::size_t before = placesSize(capacity);
    auto* start = static_cast<char*>(
        tbMemory::malloc(before + sizeof(tbiNodeBlock) + std::size_t(capacity) * sizeof(tbGroup*)));
    return start ? new (start + before) tbiNodeBlock{capacity, 0, 0} : nullptr;
}

void tbiNodeLinks::freeBlock(tbiNodeBlock* block)
{
    if (block)
        tbMemory::free(reinterpret_cast<char*>(block) - placesSize(block->capacity));
}

void tbiNodeLinks::destroy(tbNodeList& list)
{
    if (inBlock(list))
        freeBlock(list.block);
}

// Moves the entries to a new block with so many free slots at its ends. Slots keep their numbers unless there is to
// be room at the front.
bool tbiNodeLinks::makeRoom(tbNodeList& list, unsigned atFront, unsigned atEnd)
{
    const unsigned count = countOf(list);
    const unsigned end = endOf(list);
    tbiNodeBlock* block = makeBlock(std::max(FIRST_CAPACITY, end + atFront + atEnd));
    if (!block)
        return false;
    block->first = block->hint = firstOf(list);
    if (end > 0)
    {
        std::memcpy(static_cast<void*>(block->slots()), slotsOf(list), std::size_t(end) * sizeof(tbGroup*));
        std::memcpy(&block->opposite(end - 1), &oppositeOf(list, end - 1),
                    std::size_t(end) * sizeof(unsigned));
    }
    freeBlock(inBlock(list) ? list.block : nullptr);
    list.block = block;
    if (atFront > 0)
    {
        for (unsigned slot = end; slot > block->first; --slot)
            moveEntry(list, slot - 1, slot - 1 + atFront);
        block->first += atFront;
    }
    setExtent(list, count, end + atFront);
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

// Where there is room.
inline void tbiNodeLinks::appendTo(tbNodeList& list, tbGroup* node, unsigned opposite)
{
    const unsigned count = countOf(list);
    const unsigned end = endOf(list);
    put(list, end, node, opposite);
    if (inBlock(list))
        setExtent(list, count + 1, end + 1);
    else
        list.word.fetch_add(1, std::memory_order_relaxed);
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
        setExtent(list, count + 1, list.tail);
    }
    else
    {
        slot = list.block->first + i;
        for (unsigned to = list.tail; to > slot; --to)
            moveEntry(list, to - 1, to);
        setExtent(list, count + 1, list.tail + 1);
    }
    return true;
}

// The outer slots of a list are never holes.
void tbiNodeLinks::trimHoles(tbNodeList& list, unsigned count, unsigned end)
{
    tbiNodeBlock* block = list.block;
    tbGroup** slots = block->slots();
    while (end - block->first > count && !slots[block->first])
        ++block->first;
    while (end - block->first > count && !slots[end - 1])
        --end;
    setExtent(list, count, end);
}

void tbiNodeLinks::removeSlot(tbNodeList& list, unsigned slot)
{
    const unsigned count = countOf(list) - 1;
    if (count == 0)
    {
        destroy(list);
        list.single = nullptr;
        list.word.fetch_and(tbNodeList::PARENTS, std::memory_order_relaxed);
        return;
    }
    tbiNodeBlock* block = list.block;
    const unsigned end = list.tail;
    if (slot - block->first < NEAR_END)
    {
        for (unsigned to = slot; to > block->first; --to)
            moveEntry(list, to - 1, to);
        ++block->first;
        trimHoles(list, count, end);
    }
    else if (end - slot <= NEAR_END)
    {
        for (unsigned to = slot; to < end - 1; ++to)
            moveEntry(list, to + 1, to);
        trimHoles(list, count, end - 1);
    }
    else
    {
        block->slots()[slot] = nullptr;
        setExtent(list, count, end);
        if (end - block->first > 2 * count)
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

tbGroup* tbiNodeLinks::findLast(const tbGroup* parent, Edge& edge)
{
    edge.inChildren = endOf(parent->children) - 1;
    edge.inParents = oppositeOf(parent->children, edge.inChildren);
    return slotsOf(parent->children)[edge.inChildren];
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

bool tbiNodeLinks::appendAnywhere(tbGroup* parent, tbGroup* child)
{
    if (!reserve(parent->children) || !reserve(child->parents))
        return false;
    const unsigned slotBelow = endOf(parent->children);
    appendTo(parent->children, child, endOf(child->parents));
    appendTo(child->parents, parent, slotBelow);
    ++numMade;
    return true;
}

bool tbiNodeLinks::insert(tbGroup* parent, int i, tbGroup* child)
{
    if (i == parent->getNumChildren())
        return append(parent, child);
    unsigned slot = 0;
    if (!reserve(child->parents) || !openGap(parent->children, unsigned(i), slot))
        return false;
    put(parent->children, slot, child, endOf(child->parents));
    appendTo(child->parents, parent, slot);
    ++numMade;
    ++numMoves;
    return true;
}

void tbiNodeLinks::remove(tbGroup* parent, tbGroup* child, const Edge& edge, bool keepOrder)
{
    // Who reads a list holds its node. Others may be dying, and their lists do not go on.
    if (parent->getRefCount() > 0)
        ++numMoves;
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
    ++numMoves;
    Edge present;
    if (node == parent || find(parent, node, present) || !reserve(node->parents))
    {
        remove(parent, child, edge, keepOrder);
        return false;
    }
    ++numMade;
    put(parent->children, edge.inChildren, node, endOf(node->parents));
    appendTo(node->parents, parent, edge.inChildren);
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
