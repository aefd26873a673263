#include <tamber/kernel/tbArena.h>

#include <tamber/containers/tbiStatic.h>
#include <tamber/kernel/tbiKernelLists.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/thread/tbiLockGuard.h>

#include <algorithm>
#include <atomic>

namespace
{

constinit tbiStatic<tbTList<tbArena*>> livingArenas;
constinit tbiStatic<tbTList<tbArena*>> arenasByIndex; // null where an arena was destroyed
constinit std::atomic<std::size_t> defaultBlockSize{8192};
constinit unsigned nextIndex = 0;

constexpr std::size_t ALIGNMENT = 16;

} // namespace

tbArena::tbArena() : tbArena(defaultBlockSize) {}

tbArena::tbArena(std::size_t size) : blockSize(std::max(size, defaultBlockSize.load()))
{
    {
        tbiLockGuard guard(tbiLocks::memory);
        livingArenas->add(this);
        index = nextIndex++;
        // Null for those before that there was no memory to enter.
        bool hasRoom = true;
        while (hasRoom && arenasByIndex->getNum() <= int(index))
            hasRoom = arenasByIndex->add(arenasByIndex->getNum() == int(index) ? this : nullptr) >= 0;
    }
    advance(0);
    blocks.setSize(16);
}

tbArena::tbArena(const tbArena& other) : tbArena(other.blockSize) {}

tbArena& tbArena::operator=(const tbArena& other)
{
    blockSize = other.blockSize;
    return *this;
}

tbArena::~tbArena()
{
    {
        tbiLockGuard guard(tbiLocks::memory);
        if (arenasByIndex->indexInRange(int(index)))
            (*arenasByIndex)[int(index)] = nullptr;
        livingArenas->checkRemove(this);
    }
    for (void* block : blocks)
        tbMemory::free(block);
}

void* tbArena::malloc(std::size_t size) noexcept
{
    if (size > SIZE_MAX - 2 * ALIGNMENT)
        return nullptr;
    size = (size + ALIGNMENT - 1) & ~(ALIGNMENT - 1);
    // An allocation that would exactly fill the block moves on as well.
    if (size >= std::size_t(blockEnd - cursor) && !advance(size))
        return nullptr;
    void* result = cursor;
    cursor += size;
    return result;
}

void tbArena::reset() noexcept
{
    if (blocks.getNum() > 0)
        enter(0);
}

// Moves to the next block that holds `size` bytes, made now when there is none.
bool tbArena::advance(std::size_t size) noexcept
{
    for (int i = currentBlock + 1; i < blocks.getNum(); ++i)
    {
        if (size <= std::size_t(blockEnds[i] - static_cast<char*>(blocks[i])))
        {
            enter(i);
            return true;
        }
    }
    const std::size_t bytes = std::max(size, blockSize);
    char* block = static_cast<char*>(tbMemory::malloc(bytes));
    if (!block)
        return false;
    if (blocks.add(block) < 0 || blockEnds.add(block + bytes) < 0)
    {
        blocks.checkRemove(block);
        tbMemory::free(block);
        return false;
    }
    enter(blocks.getNum() - 1);
    return true;
}

void tbArena::enter(int block) noexcept
{
    currentBlock = block;
    cursor = static_cast<char*>(blocks[block]);
    blockEnd = blockEnds[block];
}

tbArena* tbArena::get(int arenaIndex)
{
    tbiLockGuard guard(tbiLocks::memory);
    return arenasByIndex->indexInRange(arenaIndex) ? (*arenasByIndex)[arenaIndex] : nullptr;
}

void tbArena::setDefaultSize(int size)
{
    defaultBlockSize = std::size_t(std::max(size, 0));
}

void tbiReleaseArenaLists()
{
    livingArenas->setSize(0);
    arenasByIndex->setSize(0);
}
