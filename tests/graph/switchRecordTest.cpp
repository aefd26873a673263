// Records of switches, iterators and range switches that say what cannot be.

#include <tamber/graph/tbAutoSwitch.h>
#include <tamber/graph/tbRangeSwitch.h>
#include <tamber/io/tbFile.h>
#include <tests/support/FileBuilder.h>
#include <tests/support/Messages.h>
#include <tests/support/TempFile.h>
#include <tests/support/WalkCamera.h>

#include <gtest/gtest.h>

#include <limits>

namespace
{

using tbtest::Record;

constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();

// A group's part of a record with the two groups in entries 1 and 2 as children.
Record group()
{
    return Record().object().word(0).word(0).integer(2).integer(1).integer(2);
}

Record withStates(int count, const std::string& states)
{
    return group().integer(count).bytes(states).integer(0).number(0).number(0).number(1);
}

template <class Node>
tbRef<Node> load(const Record& record)
{
    const tbtest::TempDirectory directory;
    tbtest::FileBuilder builder;
    builder.add(Node::getClassType()->getName(), record);
    for (int i = 0; i < 2; ++i)
        builder.add("tbGroup", Record().object().word(0).word(0).integer(0));
    tbtest::writeAll(directory.path("switch.tb"), builder.build());
    tbFile file;
    EXPECT_TRUE(file.open(directory.path("switch.tb").c_str(), "r"));
    return tbRef<Node>(static_cast<Node*>(file.readObject(0)));
}

// Neither a frame nor a walk goes wrong with it.
void exercise(tbSwitch* node)
{
    for (int i = 0; i < 5; ++i)
    {
        node->updateDirect(nullptr, true);
        tbtest::WalkCamera().walk(node);
    }
}

Record iterator(Record record, int item, int capacity, const std::vector<float>& times, int items)
{
    record.integer(1).byte(0).byte(9).byte(0).byte(7).integer(item).integer(0).number(NOT_A_NUMBER).number(0);
    record.integer(capacity);
    for (const float time : times)
        record.number(time);
    return record.integer(0).integer(0).integer(0).integer(items);
}

} // namespace

TEST(SwitchRecord, StatesAreCutOrFilledToTheChildren)
{
    for (const auto& [count, states] :
         {std::pair<int, std::string>{0, ""}, {1, "\1"}, {5, "\1\1\1\1\1"}, {-3, ""}})
    {
        const tbRef<tbSwitch> node = load<tbSwitch>(withStates(count, states));
        ASSERT_TRUE(node) << count;
        EXPECT_EQ(node->getNumChildren(), 2);
        EXPECT_EQ(node->isActive(0), count > 0);
        EXPECT_EQ(node->isActive(1), count > 1);
        EXPECT_FALSE(node->isActive(2));
        exercise(node.get());
    }
    const tbRef<tbSwitch> odd = load<tbSwitch>(withStates(2, "\xC8\3")); // beyond every state
    ASSERT_TRUE(odd);
    exercise(odd.get());
}

TEST(SwitchRecord, CountsThatTheEntryCannotHoldFailIt)
{
    tbtest::expectMessage("switch.tb");
    EXPECT_FALSE(load<tbSwitch>(group().integer(0x7FFFFFFF)));
    tbtest::expectMessage("switch.tb");
    EXPECT_FALSE(load<tbRangeSwitch>(withStates(2, "\1\1").integer(0x10000000)));
    tbtest::expectMessage("switch.tb");
    EXPECT_FALSE(load<tbAutoSwitch>(iterator(withStates(2, "\1\1"), 0, 0x7FFFFFFF, {}, 2)));
}

TEST(SwitchRecord, IteratorsStayInsideTheChildren)
{
    for (const int item : {-7, 1, 999})
    {
        for (const int items : {-1, 1, 0x7FFFFFFF})
        {
            const tbRef<tbAutoSwitch> node = load<tbAutoSwitch>(
                iterator(withStates(2, "\1\1"), item, 3, {NOT_A_NUMBER, -1, 1e-30f}, items));
            ASSERT_TRUE(node) << item << ' ' << items;
            exercise(node.get());
            node->setCycle(tbIterator::CYCLE_WRAP);
            exercise(node.get());
            node->setMode(tbIterator::MODE_FRAMES);
            exercise(node.get());
        }
    }
}

TEST(SwitchRecord, RangesFollowTheChildrenAndNoNumberSelectsNothing)
{
    for (int stored = 0; stored < 4; ++stored)
    {
        Record record = withStates(2, "\1\1").integer(stored);
        for (int i = 0; i < stored; ++i)
            record.number(i == 0 ? NOT_A_NUMBER : 1e30f)
                .number(0)
                .number(std::numeric_limits<float>::infinity());
        record.integer(1).number(NOT_A_NUMBER).number(0).number(0).integer(1);
        const tbRef<tbRangeSwitch> node = load<tbRangeSwitch>(record);
        ASSERT_TRUE(node) << stored;
        EXPECT_EQ(node->getRange(2), 0.0f); // no third record
        exercise(node.get());
    }
}
