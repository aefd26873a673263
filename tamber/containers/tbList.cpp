#include <tamber/containers/tbList.h>

#include <tamber/kernel/tbArena.h>
#include <tamber/kernel/tbiMemoryWatch.h>

unsigned tbListStorage::arenaBits(tbArena* arena) noexcept
{
    constexpr unsigned MAX_INDEX = 0xFFFFFFFFu >> COUNT_BITS;
    // The arena of index 0 makes heap lists too: the word cannot tell it from none.
    return arena && arena->getIndex() <= MAX_INDEX ? arena->getIndex() << COUNT_BITS : 0;
}

tbArena* tbListStorage::arenaOf(unsigned word) noexcept
{
    const unsigned index = word >> COUNT_BITS;
    return index == 0 ? nullptr : tbArena::get(int(index));
}

void* tbListStorage::resize(void* old, int used, int slots, unsigned word) noexcept
{
    if (std::size_t(slots) > SIZE_MAX / 2 / sizeof(void*))
    {
        tbiMemoryWatch::note();
        return nullptr;
    }
    const std::size_t bytes = std::size_t(slots) * sizeof(void*);
    if (word >> COUNT_BITS == 0)
        return tbMemory::realloc(old, bytes);
    tbArena* arena = arenaOf(word);
    void* block = arena ? arena->malloc(bytes) : nullptr;
    if (block && used > 0)
        std::memcpy(block, old, std::size_t(used) * sizeof(void*));
    return block;
}

void tbListStorage::free(void* block, unsigned word) noexcept
{
    if (word >> COUNT_BITS == 0)
        tbMemory::free(block);
}
