#include <tamber/thread/tbQueue.h>

#include <tamber/kernel/tbRef.h>
#include <tests/support/Threads.h>

#include <gtest/gtest.h>

#include <array>
#include <deque>
#include <random>

TEST(Queue, NothingIsTakenFromAnEmptyOneAndNullIsRefused)
{
    const tbRef<tbQueue> queue = new tbQueue(sizeof(int), 4);
    int item = 77;
    EXPECT_FALSE(queue->sample(&item));
    EXPECT_FALSE(queue->get(&item));
    EXPECT_EQ(item, 77);
    EXPECT_TRUE(queue->put(&item));
    EXPECT_FALSE(queue->put(nullptr));
    EXPECT_FALSE(queue->get(nullptr));
    EXPECT_FALSE(queue->sample(nullptr));
    queue->reset();
    EXPECT_EQ(queue->getCount(), 0);
}

TEST(Queue, SizesBelowOneCountAsOne)
{
    const tbRef<tbQueue> queue = new tbQueue(0, -3);
    EXPECT_EQ(queue->getItemSize(), 1);
    EXPECT_EQ(queue->getLength(), 1);
    EXPECT_EQ(queue->getMode(), tbQueue::OVERWRITE);
    const char letters[] = "ab";
    EXPECT_TRUE(queue->put(&letters[0]));
    EXPECT_TRUE(queue->put(&letters[1]));
    char last = 0;
    EXPECT_TRUE(queue->get(&last));
    EXPECT_EQ(last, 'b');
}

TEST(Queue, BehavesAsADequeInAllModes)
{
    using Item = std::array<unsigned, 3>;
    std::mt19937 random(5);
    for (int run = 0; run < 60; ++run)
    {
        int slots = 1 + int(random() % 9);
        auto mode = tbQueue::MODE(run % 3);
        tbRef<tbQueue> queue = new tbQueue(sizeof(Item), slots);
        queue->setMode(mode);
        std::deque<Item> expected;
        for (int step = 0; step < 400; ++step)
        {
            if (step % 100 == 99)
                queue->setMode(mode = tbQueue::MODE(random() % 3));
            const Item item = {unsigned(random()), unsigned(step), unsigned(run)};
            if (random() % 5 < 3)
            {
                const int count = int(expected.size());
                if (mode == tbQueue::GROW && count >= slots - 1)
                    slots *= 2;
                const bool fits = mode != tbQueue::NO_OVERWRITE || count < slots - 1;
                ASSERT_EQ(queue->put(&item), fits);
                if (fits)
                    expected.push_back(item);
                if (int(expected.size()) > slots)
                    expected.pop_front();
            }
            else
            {
                Item oldest{}, got{};
                ASSERT_EQ(queue->sample(&oldest), !expected.empty());
                ASSERT_EQ(queue->get(&got), !expected.empty());
                if (!expected.empty())
                {
                    ASSERT_EQ(oldest, expected.front());
                    ASSERT_EQ(got, expected.front());
                    expected.pop_front();
                }
            }
            ASSERT_EQ(queue->getCount(), int(expected.size()));
            ASSERT_EQ(queue->getLength(), slots);
        }
        const tbRef<tbQueue> copy = static_cast<tbQueue*>(queue->createCopy()), assigned = new tbQueue(1, 1);
        *assigned = *queue;
        EXPECT_EQ(assigned->getMode(), mode);
        for (const Item& item : expected)
        {
            for (tbQueue* other : {copy.get(), assigned.get()})
            {
                Item got{};
                ASSERT_TRUE(other->get(&got));
                ASSERT_EQ(got, item);
            }
        }
    }
}

TEST(Queue, LosesNothingBetweenThreads)
{
    constexpr int NUM_ITEMS = 4000;
    const tbRef<tbQueue> queue = new tbQueue(sizeof(int), 2);
    queue->setMode(tbQueue::GROW);
    const auto writers = tbtest::startThreads(3,
                                              [&](int t)
                                              {
                                                  for (int i = 0; i < NUM_ITEMS; ++i)
                                                  {
                                                      const int item = t * NUM_ITEMS + i;
                                                      queue->put(&item);
                                                  }
                                              });
    std::array<int, 3> next{};
    int received = 0;
    EXPECT_TRUE(tbtest::comesTrue(
        [&]
        {
            for (int item = 0; queue->get(&item); ++received)
                EXPECT_EQ(item % NUM_ITEMS, next[std::size_t(item / NUM_ITEMS)]++);
            return received == 3 * NUM_ITEMS;
        }));
}
