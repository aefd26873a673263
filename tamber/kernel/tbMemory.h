#pragma once

#include <tamber/kernel/tbTypes.h>

// All memory of the library passes through these functions. They are safe from any thread and keep the sum of
// the runtime's block sizes of everything that lives.
class TB_API tbMemory
{
public:
    virtual ~tbMemory();

    /// `size` bytes from the heap, null when there are none. The caller frees the block with free().
    static void* malloc(std::size_t size) noexcept;
    /// As malloc(), of `size` rounded down to a multiple of 4: callers pass multiples of 4.
    static void* malloc32(std::size_t size) noexcept;
    /// Zeroed memory for `count` items of `size` bytes, null when the product does not fit or memory is out.
    static void* calloc(std::size_t count, std::size_t size) noexcept;
    /// A block of at least `size` bytes that begins with what `p` held. Blocks never shrink: `p` itself is
    /// returned when it is large enough. Null, and `p` untouched, when memory is out.
    static void* realloc(void* p, std::size_t size) noexcept;
    /// Frees a block of this class; null is ignored.
    static void free(void* p) noexcept;

    /// The runtime's size of a block in bytes, 0 for null.
    static std::size_t getSize(void* p) noexcept;
    /// Bytes held by everything that lives.
    static std::size_t getSize() noexcept;

    /// 0 when the first `n` bytes are equal, otherwise 1; there is no order.
    static int compare(const void* a, const void* b, std::size_t n) noexcept;
    /// As compare(), over the whole 32-bit words in `n` bytes.
    static int compare32(const void* a, const void* b, std::size_t n) noexcept;

    static void initClass() noexcept;

    static void* operator new(std::size_t size) noexcept { return malloc(size); }
    static void* operator new[](std::size_t size) noexcept { return malloc(size); }
    static void* operator new(std::size_t size, tbArena* arena) noexcept { return mallocFrom(arena, size); }
    static void* operator new(std::size_t, void* where) noexcept { return where; }
    static void operator delete(void* p) noexcept { free(p); }
    static void operator delete[](void* p) noexcept { free(p); }
    static void operator delete(void*, tbArena*) noexcept {}
    static void operator delete(void*, void*) noexcept {}

    /// arena->malloc(size), for headers that know the arena by name only.
    static void* mallocFrom(tbArena* arena, std::size_t size) noexcept;
};

// Gives a value type without virtual operations the same `new` and `delete` as the library's objects. `Owner` is
// the deriving class; it keeps the empty bases of nested values apart, so that none of them grows.
template <class Owner>
class tbAllocated
{
public:
    static void* operator new(std::size_t size) noexcept { return tbMemory::malloc(size); }
    static void* operator new[](std::size_t size) noexcept { return tbMemory::malloc(size); }
    static void* operator new(std::size_t size, tbArena* arena) noexcept
    {
        return tbMemory::mallocFrom(arena, size);
    }
    static void* operator new(std::size_t, void* where) noexcept { return where; }
    static void operator delete(void* p) noexcept { tbMemory::free(p); }
    static void operator delete[](void* p) noexcept { tbMemory::free(p); }
    static void operator delete(void*, tbArena*) noexcept {}
    static void operator delete(void*, void*) noexcept {}
};
