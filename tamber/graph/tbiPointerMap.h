#pragma once

#include <tamber/graph/tbiPointerCells.h>

// A hash table from pointers to small numbers, for lists that must know at once where they hold what.
class tbiPointerMap
{
public:
    int getNum() const { return cells.getNum(); }
    /// -1 when `key` is not there.
    int find(const void* key) const
    {
        const Cell* cell = cells.find(key);
        return cell ? cell->value : -1;
    }
    /// Adds a key that is not null, or gives it another value. False when memory is out.
    bool set(const void* key, int value)
    {
        bool isNew = false;
        Cell* cell = cells.make(key, isNew);
        if (cell)
            cell->value = value;
        return cell != nullptr;
    }
    void remove(const void* key) { cells.remove(key); }
    void reset() { cells.reset(); }

private:
    struct Cell
    {
        const void* key;
        int value;
    };

    tbiPointerCells<Cell> cells;
};
