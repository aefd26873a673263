#pragma once

#include <tamber/graph/tbiPointerCells.h>

// A set of pointers, for lists that must know at once what they hold.
class tbiPointerSet
{
public:
    int getNum() const { return cells.getNum(); }
    /// Makes room for that many. False when memory is out.
    bool reserve(int number) { return cells.reserve(number); }
    bool contains(const void* key) const { return cells.find(key); }
    /// True when `key`, which is not null, was not there before; false as well when memory is out.
    bool addUnique(const void* key)
    {
        bool isNew = false;
        return cells.make(key, isNew) && isNew;
    }
    void reset() { cells.reset(); }

private:
    struct Cell
    {
        const void* key;
    };

    tbiPointerCells<Cell> cells;
};
