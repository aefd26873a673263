#pragma once

#include <tamber/containers/tbArray.h>

// An array whose storage may hold more elements than are in use. The base of typed data arrays (tbTArray).
class TB_API tbGrowableArray : public tbArray
{
public:
    /// Storage for `n` elements, at least one; what was there is kept, new elements are zero. The number in use is
    /// not changed, but never above the storage.
    void grow(int n);
    /// The first used element with the same bytes as `elem`, -1 when there is none.
    int getIndex(const void* elem) const;
    /// Removes the first used element with the same bytes as `elem`. The move that closes the gap is one byte long
    /// for each following element, not one element long, which is meant: data classes rely on what it leaves.
    void removeElem(const void* elem);
    void reset() { used = 0; }
    /// Elements in use, as far as the storage holds them.
    int getNum() const { return used < getCapacity() ? used : getCapacity(); }
    /// Elements that the storage holds.
    int getCapacity() const { return getNumStored(); }
    /// All that the storage holds; afterwards all of it is in use.
    void read(tbEntry* entry);

protected:
    explicit tbGrowableArray(DATA_TYPE type);
    tbGrowableArray(int count, DATA_TYPE type);
    explicit tbGrowableArray(const tbArray& other);
    tbGrowableArray(const tbGrowableArray& other);
    tbGrowableArray& operator=(const tbGrowableArray& other) = default;

    void setUsed(int n) { used = n; }

private:
    int used = 0;
};
