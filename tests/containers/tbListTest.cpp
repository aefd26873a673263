#include <tamber/containers/tbList.h>

#include <tamber/kernel/tbArena.h>
#include <tests/support/RandomValues.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace
{

int* item(std::size_t i)
{
    static int items[64];
    return &items[i % 64];
}

} // namespace

TEST(List, FollowsAReferenceThroughRandomEdits)
{
    tbArena unused, arena; // the arena of index 0 makes heap lists
    for (tbArena* where : {static_cast<tbArena*>(nullptr), &arena})
    {
        tbTList<int*> list(0, where);
        std::vector<int*> reference;
        tbtest::Random random(1);
        auto next = [&](std::size_t n) { return std::size_t(random.index(int(n))); };
        for (int step = 0; step < 3000; ++step)
        {
            int* p = item(next(64));
            const std::size_t i = next(reference.size() + 1);
            switch (next(7))
            {
            case 0:
            case 1:
                list.add(p);
                reference.push_back(p);
                break;
            case 2:
                list.insert(int(i), p);
                reference.insert(reference.begin() + std::ptrdiff_t(i), p);
                break;
            case 3:
                ASSERT_EQ(list.checkRemoveIndex(int(i)), i < reference.size());
                if (i < reference.size())
                {
                    reference[i] = reference.back();
                    reference.pop_back();
                }
                break;
            case 4:
                ASSERT_EQ(list.checkRemoveOrderedIndex(int(i)), i < reference.size());
                if (i < reference.size())
                    reference.erase(reference.begin() + std::ptrdiff_t(i));
                break;
            case 5:
            {
                const auto last = std::find(reference.rbegin(), reference.rend(), p);
                ASSERT_EQ(list.getIndex(p), int(reference.rend() - last) - 1);
                ASSERT_EQ(list.checkReplace(p, item(0)), last != reference.rend());
                if (last != reference.rend())
                    *last = item(0);
                break;
            }
            default:
                list.set(int(i), p);
                if (i == reference.size())
                    reference.push_back(p);
                else
                    reference[i] = p;
            }
            ASSERT_TRUE(std::equal(list.begin(), list.end(), reference.begin(), reference.end())) << step;
        }
        EXPECT_EQ(list.isArenaList(), where != nullptr);
        EXPECT_EQ(list.getArena(), where);
    }
}

TEST(List, InsertBeyondTheEndLeavesAGapAndReplacingWhatIsAbsentNothing)
{
    tbTList<int*> list;
    list.replace(item(5), item(2));
    EXPECT_EQ(list.getNum(), 0);
    list.insert(5, item(1));
    EXPECT_EQ(list.getNum(), 6);
    list.replace(item(5), item(2));
    EXPECT_EQ(list[5], item(1));
    EXPECT_FALSE(list.checkRemoveIndex(-1));
    EXPECT_FALSE(list.checkRemoveIndex(6));
    EXPECT_EQ(list.getNum(), 6);
}

TEST(List, CountNeverRunsIntoTheArenasBits)
{
    constexpr int MOST = (1 << 22) - 1;
    tbTList<int*> list(MOST + 1);
    list.set(MOST - 1, item(1));
    ASSERT_EQ(list.getNum(), MOST);
    list.set(MOST, item(2));
    list.insert(MOST, item(2));
    EXPECT_EQ(list.add(item(2)), -1);
    EXPECT_EQ(list.getNum(), MOST);
    EXPECT_FALSE(list.isArenaList());
}

TEST(List, DoublesItsSlotsAndSetSizeGivesThemBack)
{
    const std::size_t before = tbMemory::getSize();
    tbTList<int*> list;
    for (const int slots : {2, 2, 4, 4, 8, 8})
    {
        list.add(item(std::size_t(slots)));
        EXPECT_EQ(list.getCapacity(), slots);
    }
    EXPECT_GT(tbMemory::getSize(), before);
    for (const int size : {4, 0})
    {
        list.setSize(size);
        EXPECT_EQ(list.getNum(), size);
        EXPECT_EQ(list.getCapacity(), size);
    }
    EXPECT_EQ(tbMemory::getSize(), before);
    EXPECT_EQ(list.add(item(3)), 0);
}

TEST(List, AssignmentKeepsTheTargetsStorage)
{
    tbArena unused, arena;
    tbTList<int*> heap(3), placed(0, &arena);
    for (std::size_t i = 0; i < 5; ++i)
        heap.add(item(i));
    placed = heap;
    EXPECT_TRUE(placed.isArenaList());
    EXPECT_TRUE(placed == heap);
    EXPECT_FALSE(placed.addUnique(item(2)));
    EXPECT_TRUE(placed.addUnique(item(9)));
    EXPECT_FALSE(placed == heap);
}
