#pragma once

#include <tamber/kernel/tbMemory.h>

// A set of type numbers that remembers the order in which they were added.
class tbiTypeSet
{
public:
    tbiTypeSet() = default;
    tbiTypeSet(const tbiTypeSet&) = delete;
    tbiTypeSet& operator=(const tbiTypeSet&) = delete;
    ~tbiTypeSet();

    /// Empty, with room for the numbers 0 to `numTypes` - 1. No other number is ever added.
    void resize(int numTypes);
    /// Each number stands in the set once.
    void add(int type)
    {
        if (!inRange(type) || contains(type))
            return;
        words[type / BITS] |= bit(type);
        order[num++] = type;
    }
    void remove(int type);
    bool contains(int type) const { return inRange(type) && (words[type / BITS] & bit(type)) != 0; }
    void clear();

    int getNum() const { return num; }
    int operator[](int i) const { return order[i]; }
    const int* begin() const { return order; }
    const int* end() const { return order + num; }

private:
    static constexpr int BITS = 32;
    static std::uint32_t bit(int type) { return 1u << (type % BITS); }
    bool inRange(int type) const { return type >= 0 && type < capacity; }

    int* order = nullptr;
    std::uint32_t* words = nullptr; // one bit for each type, behind the order in the same block
    int num = 0;
    int capacity = 0;
};
