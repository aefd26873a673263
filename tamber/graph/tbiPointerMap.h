#pragma once

#include <tamber/kernel/tbMemory.h>

#include <algorithm>
#include <bit>

// A hash table from pointers to small numbers, for lists that must know at once what they hold.
class tbiPointerMap
{
public:
    constexpr tbiPointerMap() = default;
    tbiPointerMap(const tbiPointerMap&) = delete;
    tbiPointerMap& operator=(const tbiPointerMap&) = delete;
    ~tbiPointerMap() { tbMemory::free(cells); }

    int getNum() const { return int(used); }
    /// -1 when `key` is not there.
    int find(const void* key) const
    {
        const Cell* cell = capacity > 0 ? &cells[place(key)] : nullptr;
        return cell && cell->key ? cell->value : -1;
    }
    /// Makes room for that many keys. False when memory is out.
    bool reserve(int number)
    {
        const unsigned wanted = std::bit_ceil(std::max(FIRST_CAPACITY, unsigned(number) * 2 + 1));
        return wanted <= capacity || growTo(wanted);
    }
    /// Adds a key that is not null, or gives it another value. False when memory is out.
    bool set(const void* key, int value)
    {
        if (used * 2 >= capacity && !grow())
            return false;
        Cell& cell = cells[place(key)];
        if (!cell.key)
            ++used;
        cell = {key, value};
        return true;
    }
    /// True when `key` was not there before; false as well when memory is out.
    bool addUnique(const void* key)
    {
        if (used * 2 >= capacity && !grow())
            return false;
        Cell& cell = cells[place(key)];
        if (cell.key)
            return false;
        cell = {key, 0};
        ++used;
        return true;
    }
    void remove(const void* key)
    {
        if (find(key) < 0)
            return;
        unsigned gap = place(key);
        cells[gap].key = nullptr;
        --used;
        for (unsigned i = next(gap); cells[i].key; i = next(i))
        {
            const Cell moved = cells[i];
            cells[i].key = nullptr;
            cells[place(moved.key)] = moved;
        }
    }
    void reset()
    {
        for (unsigned i = 0; i < capacity; ++i)
            cells[i].key = nullptr;
        used = 0;
    }

private:
    struct Cell
    {
        const void* key;
        int value;
    };
    static constexpr unsigned FIRST_CAPACITY = 16;

    unsigned next(unsigned i) const { return (i + 1) & (capacity - 1); }
    /// The key's cell, or the empty one where it would go.
    unsigned place(const void* key) const
    {
        const auto bits = std::uint64_t(reinterpret_cast<std::uintptr_t>(key)) * 0x9E3779B97F4A7C15u;
        unsigned i = unsigned(bits >> 32) & (capacity - 1);
        while (cells[i].key && cells[i].key != key)
            i = next(i);
        return i;
    }
    bool grow() { return growTo(capacity == 0 ? FIRST_CAPACITY : capacity * 2); }
    bool growTo(unsigned wanted)
    {
        auto* block = static_cast<Cell*>(tbMemory::calloc(wanted, sizeof(Cell)));
        if (!block)
            return false;
        Cell* old = cells;
        const unsigned oldCapacity = capacity;
        cells = block;
        capacity = wanted;
        for (unsigned i = 0; i < oldCapacity; ++i)
            if (old[i].key)
                cells[place(old[i].key)] = old[i];
        tbMemory::free(old);
        return true;
    }

    Cell* cells = nullptr;
    unsigned capacity = 0; // a power of two
    unsigned used = 0;
};
