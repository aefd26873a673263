#include "tbiSharedBlock.h"

#include <cstring>
#include <limits>
#include <new>

tbiSharedBlock* tbiSharedBlock::createEmpty(std::size_t size, tbArena* arena)
{
    if (size > std::numeric_limits<std::size_t>::max() - sizeof(tbiSharedBlock))
        return nullptr;
    const std::size_t whole = sizeof(tbiSharedBlock) + size;
    void* memory = arena ? tbMemory::mallocFrom(arena, whole) : tbMemory::malloc(whole);
    return memory ? ::new (memory) tbiSharedBlock(size) : nullptr;
}

tbiSharedBlock* tbiSharedBlock::create(const void* bytes, std::size_t size, tbArena* arena)
{
    tbiSharedBlock* block = createEmpty(size, arena);
    if (block && size > 0)
        std::memcpy(block->getOwnData(), bytes, size);
    return block;
}

void tbiSharedBlock::unRef()
{
    if (count.fetch_sub(1, std::memory_order_acq_rel) == 1)
        tbMemory::free(this);
}

bool tbiSharedBlock::isEqual(const tbiSharedBlock& other) const
{
    return this == &other || (size == other.size && std::memcmp(getData(), other.getData(), size) == 0);
}
