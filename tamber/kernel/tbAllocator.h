#pragma once

#include <tamber/kernel/tbMemory.h>

#include <new>

/// Runs `work`, which may throw for want of memory. False when it did.
template <class Work>
bool tbTryAllocate(Work work) noexcept
{
    try
    {
        work();
        return true;
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }
}

// Lets containers of the standard library take their memory from tbMemory.
template <class T>
struct tbAllocator
{
    using value_type = T;

    tbAllocator() = default;
    template <class Other>
    tbAllocator(const tbAllocator<Other>&) noexcept
    {
    }

    T* allocate(std::size_t n)
    {
        void* block = n <= SIZE_MAX / sizeof(T) ? tbMemory::malloc(n * sizeof(T)) : nullptr;
        if (!block)
            throw std::bad_alloc();
        return static_cast<T*>(block);
    }
    void deallocate(T* block, std::size_t) noexcept { tbMemory::free(block); }

    template <class Other>
    bool operator==(const tbAllocator<Other>&) const noexcept
    {
        return true;
    }
};
