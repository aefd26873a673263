// The traversal traits of the kernel: what they write into a context, what they keep, what they save.
#include <tamber/action/tbTransition.h>
#include <tamber/collide/tbColliderMask.h>
#include <tamber/collide/tbColliderTarget.h>
#include <tamber/io/tbFile.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/trav/tbCull.h>
#include <tamber/trav/tbPrune.h>
#include <tamber/trav/tbSort.h>
#include <tamber/trav/tbTravContext.h>

#include <gtest/gtest.h>

namespace
{
class TravTraits : public testing::Test
{
protected:
    /// The context's flags after `trait` was applied to `flags`.
    unsigned flagsAfter(const tbTravTrait& trait, unsigned flags)
    {
        context->setFlags(flags);
        trait.apply(context.get());
        return context->getFlags();
    }

    tbRef<tbTravContext> context{new tbTravContext};
    tbRef<tbCull> cull{new tbCull};
    tbRef<tbSort> sort{new tbSort};
    tbRef<tbPrune> prune{new tbPrune};
    tbRef<tbTransition> transition{new tbTransition};
};

TEST_F(TravTraits, CullReplacesItsFourBitsAndRaisesWhateverElseItHolds)
{
    EXPECT_EQ(flagsAfter(*cull, 0x375500), 0x371500u);
    cull->setMask(0x1000);
    EXPECT_EQ(flagsAfter(*cull, 0xFFFFFFFF), 0xFFFFBAFFu);
    cull->setMask(0);
    EXPECT_EQ(flagsAfter(*cull, 0xFFFFFFFF), 0xFFFFAAFFu);
    cull->setMask(0x80);
    EXPECT_EQ(flagsAfter(*cull, 0), 0x80u);
}

TEST_F(TravTraits, SortReplacesItsTwoBitsAndKeepsNoOther)
{
    EXPECT_EQ(flagsAfter(*sort, 0xFFFFFFFF), 0xFFDFFFFFu);
    sort->setMask(0xFFFFFFFF);
    EXPECT_EQ(sort->getMask(), 0x300000u);
    EXPECT_EQ(flagsAfter(*sort, 0), 0x300000u);
}

TEST_F(TravTraits, PruneSetsOrClearsItsFlag)
{
    EXPECT_EQ(flagsAfter(*prune, 0xFFFFFFFF), 0xFFFFFF7Fu);
    prune->enable(true);
    EXPECT_EQ(flagsAfter(*prune, 0), 0x80u);
}

TEST_F(TravTraits, TransitionSetsModeAndScale)
{
    context->setTransitionMode(tbTransition::TRANSITION_OUT);
    transition->apply(context.get());
    EXPECT_EQ(context->getTransitionScale(), 1.0f);
    EXPECT_EQ(context->getTransitionMode(), tbTransition::TRANSITION_NONE);
    transition->setMode(tbTransition::TRANSITION_IN);
    transition->setScale(0.25f);
    transition->apply(context.get());
    EXPECT_EQ(context->getTransitionScale(), 0.25f);
    EXPECT_EQ(context->getTransitionMode(), tbTransition::TRANSITION_IN);
}

TEST_F(TravTraits, EqualMeansTypeModeShareableAndOwnFields)
{
    tbRef<tbCull> other(static_cast<tbCull*>(cull->createCopy()));
    EXPECT_TRUE(cull->isEqual(other.get()));
    other->setApplyMode(tbTrait::FORCE);
    EXPECT_FALSE(cull->isEqual(other.get()));
    other->setApplyMode(tbTrait::ON);
    other->enableShareable(false);
    EXPECT_FALSE(cull->isEqual(other.get()));
    *other = *cull;
    EXPECT_TRUE(cull->isEqual(other.get()));
    other->setMask(1);
    EXPECT_FALSE(cull->isEqual(other.get()));
    sort->setMask(0);
    cull->setMask(0);
    EXPECT_FALSE(cull->isEqual(sort.get()));
    EXPECT_FALSE(cull->isEqual(nullptr));

    tbRef<tbTransition> fade(static_cast<tbTransition*>(transition->createCopy()));
    EXPECT_TRUE(*fade == *transition);
    fade->enableShareable(false);
    EXPECT_TRUE(*fade != *transition);
    EXPECT_FALSE(fade->isEqual(transition.get()));
}

TEST_F(TravTraits, DisposableCopiesLiveInTheArenaUnregistered)
{
    tbArena arena;
    cull->setMask(0x400);
    cull->setApplyMode(tbTrait::OVERRIDE);
    cull->setName("fog");
    const int before = tbCull::getNum(true);
    const tbCull* copy = static_cast<const tbCull*>(cull->createDisposableCopy(&arena));
    EXPECT_EQ(copy->getMask(), 0x400u);
    EXPECT_EQ(copy->getApplyMode(), tbTrait::OVERRIDE);
    EXPECT_STREQ(copy->getName(), "fog");
    EXPECT_EQ(tbCull::getNum(true), before);
    EXPECT_EQ(sort->createDisposableCopy(&arena), nullptr);
}

TEST_F(TravTraits, FilesKeepEveryField)
{
    tbRef<tbColliderMask> mask(new tbColliderMask);
    tbRef<tbColliderTarget> target(new tbColliderTarget);
    cull->setMask(0xFFFFFFFF);
    cull->setApplyMode(tbTrait::FORCE);
    sort->setMask(0x200000);
    sort->enableShareable(false);
    prune->enable(true);
    transition->setMode(tbTransition::TRANSITION_OUT);
    transition->setScale(0.75f);
    mask->setMask(0x80000001);
    target->setTargets(0x20000);
    tbTrait* const traits[] = {cull.get(),       sort.get(), prune.get(),
                               transition.get(), mask.get(), target.get()};

    tbFile file;
    ASSERT_TRUE(file.create("travTraits.tb"));
    for (const tbTrait* trait : traits)
        ASSERT_NE(trait->write(&file, nullptr), nullptr);
    ASSERT_TRUE(file.write());
    file.close();

    ASSERT_TRUE(file.open("travTraits.tb", "r"));
    for (int i = 0; i < file.getNumEntries(); ++i)
    {
        tbRef<tbBase> object(file.readObject(i));
        ASSERT_TRUE(object);
        EXPECT_TRUE(traits[i]->isEqual(static_cast<tbTrait*>(object.get())))
            << traits[i]->getType()->getName();
    }
    EXPECT_EQ(file.getNumEntries(), 6);
}
} // namespace
