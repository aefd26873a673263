#include <tamber/containers/tbStack.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
void* entry(std::uintptr_t value)
{
    return reinterpret_cast<void*>(value);
}
} // namespace

TEST(tbStack, EveryOperationCountsAsAChangeEvenWhenEmpty)
{
    tbStack stack;
    EXPECT_EQ(stack.pop(), nullptr);
    stack.setTop(entry(1));
    EXPECT_TRUE(stack.isEmpty());
    EXPECT_EQ(stack.getID(), 2);
    stack.push(entry(1));
    stack.setTop(entry(2));
    stack.reset();
    EXPECT_EQ(stack.getID(), 5);
    EXPECT_EQ(stack.getTopIndex(), -1);
    for (int i = 5; i < 0x8000; ++i)
        stack.setTop(nullptr);
    EXPECT_EQ(stack.getID(), -0x8000);
}

TEST(tbStack, DoublesUntilItsIndexCannotCount)
{
    tbStack stack(0);
    int capacity = stack.getCapacity();
    EXPECT_EQ(capacity, 1);
    for (std::uintptr_t i = 1; i <= 40'000; ++i)
    {
        stack.push(entry(i));
        if (stack.getNum() > capacity)
            capacity *= 2;
        ASSERT_EQ(stack.getCapacity(), std::min(capacity, int(tbStack::MAX_ENTRIES)));
    }
    EXPECT_EQ(stack.getNum(), int(tbStack::MAX_ENTRIES));
    EXPECT_EQ(stack.getTop(), entry(tbStack::MAX_ENTRIES));
    EXPECT_EQ(stack.get(0), entry(1));
    const int id = stack.getID();
    stack.push(entry(1));
    EXPECT_EQ(stack.getID(), id);
}

TEST(tbStack, CopiesAreTheirOwn)
{
    tbStack stack(1);
    stack.push(entry(1));
    stack.push(entry(2));
    tbStack copy(stack);
    tbStack assigned(1);
    assigned = stack;
    stack.setTop(entry(3));
    EXPECT_EQ(copy.getTop(), entry(2));
    EXPECT_EQ(copy.getID(), 2);
    EXPECT_EQ(assigned.getNum(), 2);
    EXPECT_EQ(assigned.getID(), 1);
    EXPECT_EQ(assigned.pop(), entry(2));
}
