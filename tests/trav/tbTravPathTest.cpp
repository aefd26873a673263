#include <tamber/trav/tbTravPath.h>

#include <tamber/graph/tbGroup.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/trav/tbTravStack.h>

#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace
{
class TravPath : public testing::Test
{
protected:
    TravPath()
    {
        for (auto& group : groups)
            group = new tbGroup;
    }

    tbRef<tbGroup> groups[6];
};

TEST_F(TravPath, StackHasNoCodeWhenEverythingWasPopped)
{
    tbTravStack stack(1);
    stack.push(groups[0].get());
    EXPECT_NE(stack.getID(), 0u);
    stack.push(groups[1].get());
    EXPECT_EQ(stack.pop(), groups[1].get());
    EXPECT_EQ(stack.pop(), groups[0].get());
    EXPECT_EQ(stack.getID(), 0u);
    EXPECT_EQ(stack.pop(), nullptr);
    EXPECT_EQ(stack.getID(), 0u);
}

TEST_F(TravPath, StoredPathEqualsItsStackUntilTheWalkGoesOn)
{
    tbTravStack stack(1);
    for (auto& group : groups)
        stack.push(group.get());
    const tbTravPath path(stack);
    EXPECT_TRUE(path == stack);
    EXPECT_TRUE(stack == path);
    stack.pop();
    EXPECT_FALSE(path == stack);
    EXPECT_TRUE(path.contains(groups[5].get()));
    EXPECT_EQ(path.get(0), groups[0].get());
    EXPECT_EQ(path.get(-1), nullptr);
    EXPECT_EQ(path.get(6), nullptr);
}

// Two orders of the same groups have the same code.
TEST_F(TravPath, OrderMatters)
{
    tbTravStack down(2);
    tbTravStack up(2);
    for (int i = 0; i < 6; ++i)
    {
        down.push(groups[i].get());
        up.push(groups[5 - i].get());
    }
    EXPECT_EQ(down.getID(), up.getID());
    EXPECT_FALSE(down == up);
    EXPECT_FALSE(tbTravPath(down) == tbTravPath(up));
}

TEST_F(TravPath, ComparesLikeTheGroupsOnIt)
{
    std::mt19937 random(7);
    tbTravStack stacks[2] = {tbTravStack(1), tbTravStack(1)};
    std::vector<const tbGroup*> models[2];
    tbTravPath paths[2];
    for (int step = 0; step < 4000; ++step)
    {
        const std::size_t which = random() % 2;
        if (random() % 2 == 0 && models[which].size() < 4)
        {
            models[which].push_back(groups[random() % 2].get());
            stacks[which].push(models[which].back());
        }
        else if (!models[which].empty())
        {
            EXPECT_EQ(stacks[which].pop(), models[which].back());
            models[which].pop_back();
        }
        paths[which] = stacks[which];
        const bool same = models[0] == models[1];
        ASSERT_EQ(stacks[0] == stacks[1], same);
        ASSERT_EQ(paths[0] == paths[1], same);
        ASSERT_EQ(paths[0] == stacks[1], same);
    }
}

TEST_F(TravPath, CopiesOutliveTheWalk)
{
    tbTravPath copy;
    {
        tbTravStack stack(1);
        stack.push(groups[0].get());
        stack.push(groups[1].get());
        const tbTravPath path(stack);
        copy = path;
        EXPECT_TRUE(copy == stack);
    }
    EXPECT_EQ(copy.getNum(), 2);
    EXPECT_EQ(copy.get(1), groups[1].get());
    copy = tbTravPath();
    EXPECT_EQ(copy.getNum(), 0);
    EXPECT_EQ(copy.getID(), 0u);
    EXPECT_FALSE(copy.contains(groups[0].get()));
}
} // namespace
