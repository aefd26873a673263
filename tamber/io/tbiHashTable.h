#pragma once

#include <tamber/kernel/tbMemory.h>

#include <bit>

// Finds items by a hash of what they are known by. The table does not own the items, and several may share a key:
// the caller looks through those of one hash.
template <class Item>
class tbiHashTable
{
public:
    tbiHashTable() = default;
    tbiHashTable(const tbiHashTable&) = delete;
    tbiHashTable& operator=(const tbiHashTable&) = delete;
    ~tbiHashTable() { clear(); }

    void clear()
    {
        tbMemory::free(slots);
        slots = nullptr;
        mask = 0;
        used = 0;
    }
    /// False when memory is out.
    bool add(std::uint32_t hash, Item* item)
    {
        if ((!slots || used >= mask - mask / 4) && !grow())
            return false;
        put(hash, item);
        ++used;
        return true;
    }
    void remove(std::uint32_t hash, const Item* item)
    {
        if (!slots)
            return;
        std::uint32_t gap = hash & mask;
        while (slots[gap].item != item)
        {
            if (!slots[gap].item)
                return;
            gap = (gap + 1) & mask;
        }
        --used;
        // Items that were pushed past the gap by those before them move back into it.
        for (std::uint32_t i = (gap + 1) & mask; slots[i].item; i = (i + 1) & mask)
        {
            if (((i - slots[i].hash) & mask) >= ((i - gap) & mask))
            {
                slots[gap] = slots[i];
                gap = i;
            }
        }
        slots[gap].item = nullptr;
    }
    /// Calls `visit` with every item of that hash.
    template <class Visit>
    void visitAll(std::uint32_t hash, Visit visit) const
    {
        if (!slots)
            return;
        for (std::uint32_t i = hash & mask; slots[i].item; i = (i + 1) & mask)
            if (slots[i].hash == hash)
                visit(slots[i].item);
    }

private:
    struct Slot
    {
        std::uint32_t hash;
        Item* item;
    };

    void put(std::uint32_t hash, Item* item)
    {
        std::uint32_t i = hash & mask;
        while (slots[i].item)
            i = (i + 1) & mask;
        slots[i] = {hash, item};
    }
    bool grow()
    {
        const std::uint32_t oldSize = slots ? mask + 1 : 0;
        const std::uint32_t size = oldSize ? oldSize * 2 : 16;
        Slot* old = slots;
        Slot* grown = static_cast<Slot*>(tbMemory::calloc(size, sizeof(Slot)));
        if (!grown)
            return false;
        slots = grown;
        mask = size - 1;
        for (std::uint32_t i = 0; i < oldSize; ++i)
            if (old[i].item)
                put(old[i].hash, old[i].item);
        tbMemory::free(old);
        return true;
    }

    Slot* slots = nullptr;
    std::uint32_t mask = 0;
    std::uint32_t used = 0;
};
