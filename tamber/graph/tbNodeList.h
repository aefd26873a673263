#pragma once

#include <tamber/kernel/tbMemory.h>

#include <atomic>
#include <span>

class tbGroup;
struct tbiNodeBlock;

// The ordered list behind a node's children and parents. One entry lives in the list itself; more live in a block.
// Every entry knows at which place of the other node's opposite list this node stands, so that an edge found from
// one end is found at the other end as well.
//
// A removal far from both ends leaves a hole, and the next reader closes all holes at once: edits in any order cost
// a constant time each, and walks pass over a contiguous run of nodes. Readers on several threads may meet in the
// same list; edits are serialised by the caller.
class TB_API tbNodeList
{
public:
    static constexpr unsigned MAX_ENTRIES = 4'194'303;

    enum KIND : unsigned
    {
        CHILDREN = 0,
        PARENTS = 0x20000000
    };

    explicit tbNodeList(KIND kind) noexcept : single(nullptr), word(kind) {}
    tbNodeList(const tbNodeList&) = delete;
    tbNodeList& operator=(const tbNodeList&) = delete;
    ~tbNodeList();

    int getNum() const noexcept { return int(word.load(std::memory_order_relaxed) & COUNT_MASK); }
    /// Not range checked.
    tbGroup* operator[](int i) const { return entries()[i]; }
    /// Valid until the next edit of the list.
    std::span<tbGroup* const> span() const { return {entries(), std::size_t(getNum())}; }

private:
    friend class tbiNodeLinks;

    static constexpr unsigned COUNT_MASK = 0x3FFFFF;
    static constexpr unsigned ROOM_ONE = 0x400000; // one entry more can be appended
    static constexpr unsigned ROOM_MASK = 0x1FC00000;
    static constexpr unsigned IN_BLOCK = 0x80000000;
    static constexpr unsigned HAS_HOLES = 0x40000000;

    tbGroup* const* entries() const
    {
        const unsigned w = word.load(std::memory_order_acquire);
        if ((w & HAS_HOLES) != 0) [[unlikely]]
            closeHoles();
        return (w & IN_BLOCK) != 0 ? blockEntries() : &single;
    }
    inline tbGroup* const* blockEntries() const;
    /// Safe on several threads at once.
    void closeHoles() const;

    union
    {
        tbGroup* single;
        tbiNodeBlock* block;
    };
    mutable std::atomic<unsigned>
        word; // count, room at the end as far as it is known, kind, IN_BLOCK, HAS_HOLES
    mutable unsigned tail =
        0; // in a block the slot behind the last entry, else the single entry's opposite place
};

// Where a list's entries are when there is more than one: the slots from `first` up to the list's end are in use, the
// outer two never holes. The slots' opposite places lie before the block, the first one nearest, so that an append
// does not have to know how long the block is.
struct alignas(tbGroup*) tbiNodeBlock
{
    unsigned capacity;
    unsigned first;
    unsigned hint; // slot at which the last search for travel flags ended

    tbGroup** slots() { return reinterpret_cast<tbGroup**>(this + 1); }
    unsigned& opposite(unsigned slot) { return *(reinterpret_cast<unsigned*>(this) - 1 - slot); }
};

inline tbGroup* const* tbNodeList::blockEntries() const
{
    return block->slots() + block->first;
}
