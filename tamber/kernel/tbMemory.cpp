#include <tamber/kernel/tbMemory.h>

#include <tamber/kernel/tbArena.h>
#include <tamber/kernel/tbiMemoryWatch.h>
#include <tamber/platform/tbiHeap.h>

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace
{

// One atomic word gives the byte total what a lock would give it.
constinit std::atomic<std::size_t> bytesInUse{0};
constinit std::atomic<bool> initialized{false};

void* counted(void* block) noexcept
{
    if (block)
        bytesInUse.fetch_add(tbiBlockSize(block), std::memory_order_relaxed);
    else
        tbiMemoryWatch::note();
    return block;
}

} // namespace

tbMemory::~tbMemory() = default;

void tbMemory::initClass() noexcept
{
    initialized.store(true, std::memory_order_relaxed);
}

void* tbMemory::malloc(std::size_t size) noexcept
{
    return counted(std::malloc(size));
}

// Rounds down, not up: callers pass sizes that are multiples of 4 already.
void* tbMemory::malloc32(std::size_t size) noexcept
{
    return malloc(size & ~std::size_t{3});
}

void* tbMemory::calloc(std::size_t count, std::size_t size) noexcept
{
    if (size != 0 && count > SIZE_MAX / size)
        return counted(nullptr);
    return counted(std::calloc(count, size));
}

void* tbMemory::realloc(void* p, std::size_t size) noexcept
{
    const std::size_t before = getSize(p);
    if (p && before >= size)
        return p;
    void* grown = std::realloc(p, size);
    if (!grown)
        return counted(nullptr);
    bytesInUse.fetch_add(tbiBlockSize(grown) - before, std::memory_order_relaxed);
    return grown;
}

void tbMemory::free(void* p) noexcept
{
    if (!p)
        return;
    bytesInUse.fetch_sub(tbiBlockSize(p), std::memory_order_relaxed);
    std::free(p);
}

std::size_t tbMemory::getSize(void* p) noexcept
{
    return p ? tbiBlockSize(p) : 0;
}

std::size_t tbMemory::getSize() noexcept
{
    return bytesInUse.load(std::memory_order_relaxed);
}

int tbMemory::compare(const void* a, const void* b, std::size_t n) noexcept
{
    return n != 0 && std::memcmp(a, b, n) != 0 ? 1 : 0;
}

int tbMemory::compare32(const void* a, const void* b, std::size_t n) noexcept
{
    return compare(a, b, n & ~std::size_t{3});
}

void* tbMemory::mallocFrom(tbArena* arena, std::size_t size) noexcept
{
    return arena->malloc(size);
}
