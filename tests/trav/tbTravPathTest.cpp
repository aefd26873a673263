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

TEST_F(TravPath, OutlivesItsStackAndCanBeEmptied)
{
    tbTravPath path;
    {
        tbTravStack stack(1);
        for (auto& group : groups)
            stack.push(group.get());
        path = tbTravPath(stack);
    }
    EXPECT_TRUE(path.contains(groups[5].get()));
    EXPECT_EQ(path.get(0), groups[0].get());
    EXPECT_EQ(path.get(-1), nullptr);
    EXPECT_EQ(path.get(6), nullptr);
    path = tbTravPath();
    EXPECT_EQ(path.getNum(), 0);
    EXPECT_EQ(path.getID(), 0u);
    EXPECT_FALSE(path.contains(groups[0].get()));
}

// Two orders of the same groups have the same code.
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
        else if (models[which].empty())
        {
            EXPECT_EQ(stacks[which].pop(), nullptr);
            EXPECT_EQ(stacks[which].getID(), 0u);
        }
        else
        {
            EXPECT_EQ(stacks[which].pop(), models[which].back());
            models[which].pop_back();
        }
        paths[which] = stacks[which];
        const bool same = models[0] == models[1];
        ASSERT_EQ(stacks[0] == stacks[1], same);
        ASSERT_EQ(paths[0] == paths[1], same);
        ASSERT_EQ(paths[0] == stacks[1], same);
        ASSERT_EQ(stacks[0] == paths[1], same);
    }
}

} // namespace
