#include <tamber/platform/tbiHeap.h>

#include <malloc.h>

std::size_t tbiBlockSize(void* block) noexcept
{
    return _msize(block);
}
