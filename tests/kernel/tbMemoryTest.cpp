#include <tamber/kernel/tbMemory.h>

#include <tamber/kernel/tbArena.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

TEST(Memory, TotalFollowsEveryBlock)
{
    const std::size_t before = tbMemory::getSize();
    void* p = tbMemory::malloc(100);
    void* q = tbMemory::calloc(10, 10);
    EXPECT_EQ(tbMemory::getSize(), before + tbMemory::getSize(p) + tbMemory::getSize(q));
    p = tbMemory::realloc(p, 100000);
    EXPECT_EQ(tbMemory::getSize(), before + tbMemory::getSize(p) + tbMemory::getSize(q));
    const std::size_t total = tbMemory::getSize();
    EXPECT_EQ(tbMemory::realloc(p, 10), p) << "blocks never shrink";
    EXPECT_EQ(tbMemory::getSize(), total);
    tbMemory::free(p);
    tbMemory::free(q);
    tbMemory::free(nullptr);
    EXPECT_EQ(tbMemory::getSize(), before);
    EXPECT_EQ(tbMemory::getSize(nullptr), 0u);
}

TEST(Memory, ImpossibleRequestsGiveNullAndCountNothing)
{
    const std::size_t before = tbMemory::getSize();
    volatile std::size_t huge = SIZE_MAX / 2 - 64;
    EXPECT_EQ(tbMemory::calloc(huge, 16), nullptr);
    EXPECT_EQ(tbMemory::getSize(), before);
}

TEST(Memory, CompareTellsEqualFromNotEqual)
{
    const char a[] = "abcdefg", b[] = "abcdefX";
    EXPECT_EQ(tbMemory::compare(a, b, 7), 1);
    EXPECT_EQ(tbMemory::compare(b, a, 7), 1);
    EXPECT_EQ(tbMemory::compare(a, b, 6), 0);
    EXPECT_EQ(tbMemory::compare32(a, b, 7), 0); // whole words only
    EXPECT_EQ(tbMemory::compare(nullptr, nullptr, 0), 0);
}

TEST(Arena, FillingABlockToTheLastByteMovesOn)
{
    tbArena arena(8192);
    char* first = static_cast<char*>(arena.malloc(4096));
    char* second = static_cast<char*>(arena.malloc(4096));
    EXPECT_NE(second, first + 4096);
    arena.reset();
    EXPECT_EQ(arena.malloc(16), first);
}

TEST(Arena, BlocksAreReusedInOrderAndRequestsStayAligned)
{
    tbArena arena;
    void* places[3][40];
    for (auto& round : places)
    {
        arena.reset();
        const std::size_t bytes = tbMemory::getSize();
        for (std::size_t i = 0; i < 40; ++i)
        {
            const std::size_t size = i == 7 ? 50000 : i * 37 + 1; // one above the block size
            round[i] = arena.malloc(size);
            ASSERT_NE(round[i], nullptr);
            std::memset(round[i], int(i), size);
            ASSERT_EQ(reinterpret_cast<std::uintptr_t>(round[i]) % (sizeof(void*) * 2), 0u);
        }
        if (&round != &places[0])
        {
            EXPECT_EQ(tbMemory::getSize(), bytes);
        }
    }
    EXPECT_EQ(std::memcmp(places[1], places[2], sizeof places[1]), 0);
}

TEST(Arena, IndicesAreNeverUsedAgain)
{
    auto* arena = new tbArena;
    const int index = int(arena->getIndex());
    EXPECT_EQ(tbArena::get(index), arena);
    delete arena;
    EXPECT_EQ(tbArena::get(index), nullptr);
    EXPECT_EQ(tbArena::get(-1), nullptr);
    EXPECT_EQ(tbArena::get(1 << 20), nullptr);
    const tbArena next;
    EXPECT_EQ(next.getIndex(), unsigned(index) + 1);
}
