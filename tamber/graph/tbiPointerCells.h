#pragma once

#include <tamber/kernel/tbMemory.h>

#include <algorithm>
#include <bit>

// The cells of a hash table whose keys are pointers, at most half of them in use. `Cell` begins with its key; an empty
// one holds zeros.
template <class Cell>
class tbiPointerCells
{
public:
    constexpr tbiPointerCells() = default;
    tbiPointerCells(const tbiPointerCells&) = delete;
    tbiPointerCells& operator=(const tbiPointerCells&) = delete;
    ~tbiPointerCells() { tbMemory::free(cells); }

    int getNum() const { return int(used); }
    /// Makes room for that many keys. False when memory is out.
    bool reserve(int number)
    {
        const unsigned wanted = std::bit_ceil(std::max(FIRST_CAPACITY, unsigned(number) * 2 + 1));
        return wanted <= capacity || growTo(wanted);
    }
    /// The key's cell, null when it is not there.
    const Cell* find(const void* key) const
    {
        const Cell* cell = capacity > 0 ? &cells[place(key)] : nullptr;
        return cell && cell->key ? cell : nullptr;
    }
    /// The cell of a key that is not null; one that was not there is made, and `isNew` tells so. Null when memory is
    /// out.
    Cell* make(const void* key, bool& isNew)
    {
        if (used * 2 >= capacity && !growTo(capacity == 0 ? FIRST_CAPACITY : capacity * 2))
            return nullptr;
        Cell& cell = cells[place(key)];
        isNew = !cell.key;
        if (isNew)
        {
            cell.key = key;
            ++used;
        }
        return &cell;
    }
    void remove(const void* key)
    {
        if (!find(key))
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
