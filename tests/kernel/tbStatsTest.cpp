#include <tamber/kernel/tbStats.h>

#include <tamber/graph/tbGroup.h>
#include <tests/support/RecordingTraits.h>

#include <gtest/gtest.h>

namespace
{
using VisualA = tbtest::RecordingTrait<tbVisualTrait, 0>;
using AudioA = tbtest::RecordingTrait<tbAudioTrait, 0>;
using TravA = tbtest::RecordingTrait<tbTravTrait, 0>;

class Stats : public testing::Test
{
protected:
    tbRef<VisualA> visual{new VisualA};
    tbRef<AudioA> audio{new AudioA};
    tbRef<TravA> trav{new TravA};
    tbRef<tbGroup> group{new tbGroup};
    tbRef<tbStats> stats{new tbStats(tbTraitStack::AUDIO_STACK | tbTraitStack::TRAV_STACK)};
};

TEST_F(Stats, TypesMadeLaterCountAfterTheNextReset)
{
    using Late = tbtest::RecordingTrait<tbTravTrait, 50>;
    const tbRef<Late> late(new Late);
    for (const int counted : {0, 1})
    {
        stats->incCount(late.get());
        EXPECT_EQ(stats->getCount(Late::type()), counted);
        stats->reset();
    }
    Late::type()->deleteType();
}

TEST_F(Stats, TotalsAddUpUntilReset)
{
    stats->addFrame(0.25);
    stats->addFrame(0.5);
    stats->addCollision(0.125);
    stats->addFailedRay();
    stats->addTotal(10, 3);
    stats->addTotal(11, 3); // beyond the last
    for (const int amount : {INT32_MAX, 1})
        stats->addTotal(9, amount);
    EXPECT_EQ(stats->getTotal(9), INT32_MAX) << "counts do not wrap";
    EXPECT_EQ(stats->getUpdateTime(), 0.75);
    EXPECT_EQ(stats->getCollisionTime(), 0.125);
    EXPECT_EQ(stats->getTotal(10), 3);
    EXPECT_EQ(stats->getTotal(11), 0);
    stats->incCount(group.get());
    stats->reset();
    EXPECT_EQ(stats->getNumFrames() + stats->getNumCollisions() + stats->getNumFailedRays(), 0);
    EXPECT_EQ(stats->getUpdateTime() + stats->getCollisionTime(), 0.0);
    EXPECT_EQ(stats->getTotal(10), 0);
    EXPECT_EQ(stats->getCount(tbGroup::getClassType()), 0);
}

TEST_F(Stats, CountTheKindsTheyWereMadeForAndCopiesOnTheirOwn)
{
    stats->incCount(trav.get());
    stats->addFrame(1.0);
    tbRef<tbStats> copy(static_cast<tbStats*>(stats->createCopy()));
    tbRef<tbStats> assigned(new tbStats(tbTraitStack::VISUAL_STACK));
    *assigned = *stats;
    for (tbStats* each : {stats.get(), copy.get(), assigned.get()})
    {
        EXPECT_EQ(each->getNumFrames(), 1);
        EXPECT_EQ(each->getCount(TravA::type()), 1);
        each->reset();
        each->incCount(visual.get());
        each->incCount(audio.get());
        each->incCount(trav.get());
        each->incCount(trav.get());
        each->incCount(group.get());
        EXPECT_EQ(each->getCount(VisualA::type()), 0);
        EXPECT_EQ(each->getCount(AudioA::type()), 1);
        EXPECT_EQ(each->getCount(TravA::type()), 2);
        EXPECT_EQ(each->getCount(tbGroup::getClassType()), 1);
    }
}
} // namespace
