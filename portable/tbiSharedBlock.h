#pragma once

#include <tamber/kernel/tbMemory.h>

#include <atomic>

// Bytes that do not change any more and that copies of an object share. Counted by hand, so that short-lived copies
// in an arena, whose destructors never run, can hold a block of their own there.
class tbiSharedBlock
{
public:
    /// A block with count 1 that holds a copy of `size` bytes, from `arena` or, when it is null, from the heap.
    /// Null when memory is out.
    static tbiSharedBlock* create(const void* bytes, std::size_t size, tbArena* arena = nullptr);
    /// The same for bytes that its maker puts there before anybody shares it.
    static tbiSharedBlock* createEmpty(std::size_t size, tbArena* arena = nullptr);
    void* getOwnData() { return this + 1; }

    void ref() { count.fetch_add(1, std::memory_order_relaxed); }
    void unRef();
    const void* getData() const { return this + 1; }
    std::size_t getSize() const { return size; }
    bool isEqual(const tbiSharedBlock& other) const;

private:
    explicit tbiSharedBlock(std::size_t bytes) : size(bytes) {}

    std::size_t size;
    std::atomic<int> count{1};
};
