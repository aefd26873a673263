#pragma once

#include <tamber/containers/tbList.h>
#include <tamber/kernel/tbMemory.h>

// Bump allocation from large blocks, for short-lived copies that are given up all at once. An arena belongs to one
// thread at a time and is not locked.
class TB_API tbArena : public tbMemory
{
public:
    tbArena();
    /// Blocks of the larger of `size` and the default size, in bytes.
    explicit tbArena(std::size_t size);
    /// Copying takes the block size only.
    tbArena(const tbArena& other);
    tbArena& operator=(const tbArena& other);
    ~tbArena() override;

    /// `size` bytes, rounded up to a multiple of 16; null when memory is out. They live until reset(). A request
    /// that would fill its block to the last byte moves on to the next block, and one above the block size gets a
    /// block of its own size.
    void* malloc(std::size_t size) noexcept;
    /// Gives everything up at once, without running a destructor; the blocks are kept and used again in order.
    void reset() noexcept;
    unsigned int getIndex() const { return index; }

    /// The living arena of that index; null when there is none. Indices are never used again.
    static tbArena* get(int index);
    static void setDefaultSize(int size);

private:
    bool advance(std::size_t size) noexcept;
    void enter(int block) noexcept;

    unsigned int index;
    char* blockEnd = nullptr;
    char* cursor = nullptr;
    std::size_t blockSize;
    int currentBlock = -1;
    tbList blocks{2};
    tbTList<char*> blockEnds; // parallel to the blocks
};
