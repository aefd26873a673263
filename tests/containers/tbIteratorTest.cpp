#include <tamber/containers/tbIterator.h>

#include <tamber/io/tbFile.h>
#include <tests/support/FileBuilder.h>
#include <tests/support/TempFile.h>
#include <tests/support/Threads.h>

#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <limits>
#include <vector>

namespace
{

std::vector<int> frames(tbIterator& iterator, int count)
{
    std::vector<int> shown;
    for (int i = 0; i < count; ++i)
        shown.push_back(iterator.update());
    return shown;
}

tbIterator byFrames(int items, int framesPerItem, tbIterator::CYCLE cycle)
{
    tbIterator iterator;
    iterator.setMode(tbIterator::MODE_FRAMES);
    iterator.setNumItems(items);
    iterator.setItemFrameCount(framesPerItem);
    iterator.setCycle(cycle);
    return iterator;
}

} // namespace

TEST(Iterator, WrapsStopsOrTurnsRoundAtTheEnds)
{
    const struct
    {
        int items;
        tbIterator::CYCLE cycle;
        std::vector<int> shown;
    } cases[] = {{3, tbIterator::CYCLE_WRAP, {0, 1, 2, 0, 1, 2, 0}},
                 {3, tbIterator::CYCLE_REVERSE, {0, 1, 2, 1, 0, 1, 2, 1}},
                 {1, tbIterator::CYCLE_REVERSE, {0, 0, 0, 0}},
                 {2, tbIterator::CYCLE_STOP, {0, -1}},
                 {2, tbIterator::CYCLE(7), {0, -1}}};
    for (const auto& c : cases)
    {
        tbIterator iterator = byFrames(c.items, 1, c.cycle);
        EXPECT_EQ(frames(iterator, int(c.shown.size())), c.shown) << c.items << ' ' << c.cycle;
    }
}

TEST(Iterator, ShowsEachItemForItsFramesInEitherDirection)
{
    tbIterator iterator = byFrames(3, 1, tbIterator::CYCLE_WRAP);
    iterator.setItemFrameCount(1, 3);
    EXPECT_EQ(frames(iterator, 6), (std::vector<int>{0, 1, 1, 1, 2, 0}));
    iterator.setDirection(tbIterator::BACKWARD);
    iterator.reset();
    EXPECT_EQ(frames(iterator, 6), (std::vector<int>{2, 1, 1, 1, 0, 2}));
    iterator.setItemFrameCount(0, 0); // passed over
    iterator.reset();
    EXPECT_EQ(frames(iterator, 5), (std::vector<int>{2, 1, 1, 1, 2}));
    iterator.setItemFrameCount(0, INT_MIN + 1); // the frames that it gives back are more than can be counted
    iterator.setItemFrameCount(2, -1);
    for (const int shown : frames(iterator, 12))
        EXPECT_TRUE(shown >= 0 && shown < 3) << shown;
    iterator.setSelectedItem(INT_MIN); // there is none before
    for (const int shown : frames(iterator, 4))
        EXPECT_TRUE(shown >= 0 && shown < 3) << shown;
}

TEST(Iterator, GoesAsFarAsIsDueWhenItemsTakeFewerFramesThanBefore)
{
    for (const auto& [cycle, shown] : {std::pair(tbIterator::CYCLE_WRAP, std::vector<int>{2, 0, 1}),
                                       {tbIterator::CYCLE_REVERSE, std::vector<int>{1, 0, 1}}})
    {
        tbIterator iterator = byFrames(3, 100, cycle);
        frames(iterator, 11);
        iterator.setItemFrameCount(1);
        EXPECT_EQ(frames(iterator, 3), shown);
    }
}

TEST(Iterator, TotalsAreSharedAndKeptWhenTheNumberChanges)
{
    tbIterator iterator = byFrames(3, 1, tbIterator::CYCLE_WRAP);
    iterator.setFrameCount(10);
    EXPECT_EQ(iterator.getItemFrameCount(2), 3);
    iterator.setNumItems(5);
    EXPECT_EQ(iterator.getItemFrameCount(4), 2);
    iterator.setNumItems(0);
    EXPECT_EQ(iterator.getItemFrameCount(4), 2);
    EXPECT_EQ(iterator.getItemFrameCount(5), 0);
    EXPECT_EQ(iterator.getItemFrameCount(-1), 0);
    EXPECT_EQ(iterator.update(), -1);
}

TEST(Iterator, GoesOnByTheClock)
{
    using Seconds = std::chrono::duration<double>;
    constexpr double ITEM_TIME = 0.2;
    tbIterator iterator;
    iterator.setNumItems(3);
    iterator.setItemTime(float(ITEM_TIME));
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(iterator.update(), 0);
    const auto begun = std::chrono::steady_clock::now();
    int shown = 0;
    for (const int wait : {0, 250, 200})
    {
        tbtest::sleep(wait);
        const Seconds least = std::chrono::steady_clock::now() - begun;
        shown = iterator.update();
        const Seconds most = std::chrono::steady_clock::now() - before; // a busy machine stalls at any line
        const int first = int(least.count() / ITEM_TIME - 0.01);
        const int last = int(most.count() / ITEM_TIME + 0.01);
        EXPECT_TRUE(last - first >= 2 || shown == first % 3 || shown == last % 3)
            << shown << " after " << least.count();
    }
    iterator.pause();
    tbtest::sleep(int(ITEM_TIME * 1000) + 10);
    EXPECT_EQ(iterator.update(), shown);
}

TEST(Iterator, TimesOfAnyKindEndEveryUpdate)
{
    for (const float time : {0.0f, -1.0f, 1e-30f, std::numeric_limits<float>::quiet_NaN(),
                             std::numeric_limits<float>::infinity()})
    {
        for (const tbIterator::CYCLE cycle : {tbIterator::CYCLE_WRAP, tbIterator::CYCLE_REVERSE})
        {
            tbIterator iterator;
            iterator.setCycle(cycle);
            iterator.setNumItems(4);
            iterator.setItemTime(time);
            iterator.update();
            tbtest::sleep(1);
            const int shown = iterator.update();
            EXPECT_TRUE(shown >= 0 && shown < 4) << time;
        }
    }
    tbIterator still = byFrames(4, 0, tbIterator::CYCLE_WRAP);
    for (const int shown : frames(still, 5))
        EXPECT_TRUE(shown >= 0 && shown < 4);
}

TEST(Iterator, CopiesHaveArraysOfTheirOwn)
{
    tbIterator first = byFrames(3, 2, tbIterator::CYCLE_WRAP);
    tbIterator second(first);
    second.setItemFrameCount(0, 9);
    EXPECT_EQ(first.getItemFrameCount(0), 2);
    EXPECT_EQ(second.getItemFrameCount(0), 9);
    second = tbIterator();
    EXPECT_EQ(second.getItemFrameCount(0), 0);
}

TEST(Iterator, ReadsNoItemThatItHasNotButTheEnd)
{
    constexpr int OWN = -1; // as many items as it has values for
    const struct
    {
        int item, values, items, wanted;
        int itemRead, itemsRead;
    } cases[] = {{0, 3, 3, OWN, 0, 3},        {2, 3, 3, OWN, 2, 3},     {3, 3, 3, OWN, 3, 3},
                 {-1, 3, 3, OWN, -1, 3},      {-2, 3, 3, OWN, -1, 3},   {INT_MIN, 3, 3, OWN, -1, 3},
                 {2, 3, 4, OWN, 2, 3},        {2, 3, 2, OWN, 2, 2},     {0, 3, -1, OWN, -1, 0},
                 {0, 0, INT_MAX, OWN, -1, 0}, {1, 3, INT_MAX, 2, 1, 2}, {2, 3, 3, 2, 2, 2},
                 {4, 3, 3, 5, 4, 5},          {0, 3, 3, 0, -1, 0}};
    for (const auto& c : cases)
        for (const int cycle : {tbIterator::CYCLE_STOP, tbIterator::CYCLE_WRAP})
        {
            SCOPED_TRACE(testing::Message() << "case " << &c - cases << ", cycle " << cycle);
            const bool ends = cycle == tbIterator::CYCLE_WRAP && c.itemRead == c.itemsRead;
            tbtest::Record record;
            record.byte(0).byte(cycle).byte(0).byte(0).integer(c.item).integer(1).integer(0).integer(0);
            record.integer(c.values).bytes(std::string(std::size_t(4 * c.values), '\0')); // times
            record.integer(0).integer(0);
            record.integer(c.values).bytes(std::string(std::size_t(4 * c.values), '\0')); // frames
            record.integer(c.items);
            const tbtest::TempDirectory directory;
            tbFile file;
            ASSERT_TRUE(file.create(directory.path("iterator.tb").c_str()));
            tbEntry* entry = file.newEntry(file.newTag("tbAnything"));
            entry->writeChunk(record.get().data(), int(record.get().size()));
            entry->reset();
            tbIterator iterator;
            EXPECT_TRUE(iterator.read(entry, c.wanted));
            EXPECT_EQ(iterator.getSelectedItem(), ends ? -1 : c.itemRead);
            EXPECT_EQ(iterator.getNumItems(), c.itemsRead);
            EXPECT_EQ(entry->getRemaining(), 0);

            for (int i = 0; i < 3; ++i)
                iterator.update(); // goes on behind the end
            tbEntry* again = file.newEntry(0);
            iterator.write(again);
            again->reset();
            tbIterator copy;
            EXPECT_TRUE(copy.read(again, c.itemsRead));
            EXPECT_EQ(copy.getSelectedItem(), std::min(iterator.getSelectedItem(), c.itemsRead));
        }
}
