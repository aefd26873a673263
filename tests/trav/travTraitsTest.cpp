// The traits of the kernel: what they write into a context, what they keep, what they save.
#include <tamber/action/tbTransition.h>
#include <tamber/audio/tbAudioLevelScale.h>
#include <tamber/audio/tbAudioPriorityScale.h>
#include <tamber/collide/tbColliderMask.h>
#include <tamber/collide/tbColliderTarget.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/trav/tbCull.h>
#include <tamber/trav/tbPrune.h>
#include <tamber/trav/tbSort.h>
#include <tamber/trav/tbTravContext.h>
#include <tests/support/SavedCopy.h>

#include <gtest/gtest.h>

namespace
{
class KernelTraits : public testing::Test
{
protected:
    /// The context's flags after `trait` was applied to `flags`.
    unsigned flagsAfter(const tbTrait& trait, unsigned flags)
    {
        context->setFlags(flags);
        trait.apply(context.get());
        return context->getFlags();
    }
    /// One of each class, none as it begins.
    std::vector<tbTrait*> changed()
    {
        cull->setMask(0xFFFFFFFF);
        sort->setMask(0x200000);
        prune->enable(true);
        transition->setMode(tbTransition::TRANSITION_OUT);
        transition->setScale(0.75f);
        mask->setMask(0x20000);
        target->setTargets(0x20000);
        level->set(-1);
        priority->set(-1);
        return {cull.get(), sort.get(),   prune.get(), transition.get(),
                mask.get(), target.get(), level.get(), priority.get()};
    }

    tbRef<tbTravContext> context{new tbTravContext};
    tbRef<tbCull> cull{new tbCull};
    tbRef<tbSort> sort{new tbSort};
    tbRef<tbPrune> prune{new tbPrune};
    tbRef<tbTransition> transition{new tbTransition};
    tbRef<tbColliderMask> mask{new tbColliderMask};
    tbRef<tbColliderTarget> target{new tbColliderTarget};
    tbRef<tbAudioLevelScale> level{new tbAudioLevelScale};
    tbRef<tbAudioPriorityScale> priority{new tbAudioPriorityScale};
};

TEST_F(KernelTraits, ReplaceTheirBitsOfTheFlagsAndCullRaisesWhateverElseItHolds)
{
    EXPECT_EQ(flagsAfter(*cull, 0x375500), 0x371500u);
    cull->setMask(0x1000);
    EXPECT_EQ(flagsAfter(*cull, 0xFFFFFFFF), 0xFFFFBAFFu);
    cull->setMask(0);
    EXPECT_EQ(flagsAfter(*cull, 0xFFFFFFFF), 0xFFFFAAFFu);
    cull->setMask(0x80);
    EXPECT_EQ(flagsAfter(*cull, 0), 0x80u);
    EXPECT_EQ(flagsAfter(*sort, 0xFFFFFFFF), 0xFFDFFFFFu);
    sort->setMask(0xFFFFFFFF);
    EXPECT_EQ(flagsAfter(*sort, 0), 0x300000u);
    EXPECT_EQ(flagsAfter(*prune, 0xFFFFFFFF), 0xFFFFFF7Fu);
    prune->enable(true);
    EXPECT_EQ(flagsAfter(*prune, 0), 0x80u);
    target->setTargets(0xFFFFFFFF);
    EXPECT_EQ(flagsAfter(*target, 0), 0x70000u);
    target->setTargets(0x20000);
    EXPECT_EQ(flagsAfter(*target, 0xFFFFFFFF), 0xFFFAFFFFu);
}

TEST_F(KernelTraits, ReplaceTheContextsTransitionAndColliderMask)
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
    mask->setMask(0x80000000);
    mask->apply(context.get());
    EXPECT_EQ(context->getColliderMask(), 0x80000000u);
}

TEST_F(KernelTraits, EqualMeansTypeModeShareableAndOwnFields)
{
    const std::vector<tbTrait*> traits = changed();
    for (tbTrait* trait : traits)
    {
        SCOPED_TRACE(trait->getType()->getName());
        const tbRef<tbTrait> copy(static_cast<tbTrait*>(trait->createCopy()));
        const tbRef<tbTrait> fresh(
            static_cast<tbTrait*>(tbType::createInstance(trait->getType()->getName())));
        EXPECT_TRUE(trait->isEqual(copy.get()));
        EXPECT_FALSE(trait->isEqual(fresh.get()) || trait->isEqual(nullptr));
        copy->setApplyMode(tbTrait::FORCE);
        EXPECT_FALSE(trait->isEqual(copy.get()));
        copy->setApplyMode(tbTrait::ON);
        copy->enableShareable(false);
        EXPECT_FALSE(trait->isEqual(copy.get()));
        for (tbTrait* other : traits)
            EXPECT_EQ(trait->isEqual(other), trait == other);
    }
    const tbRef<tbColliderMask> forced(new tbColliderMask);
    *forced = *mask;
    forced->setApplyMode(tbTrait::FORCE);
    EXPECT_TRUE(*forced == *mask); // the word alone
    const tbRef<tbTransition> fade(new tbTransition);
    *fade = *transition;
    EXPECT_TRUE(*fade == *transition);
    fade->enableShareable(false);
    EXPECT_TRUE(*fade != *transition);
}

TEST_F(KernelTraits, DisposableCopiesLiveInTheArenaUnregistered)
{
    tbArena arena;
    changed();
    for (tbTrait* trait :
         std::initializer_list<tbTrait*>{cull.get(), mask.get(), target.get(), level.get(), priority.get()})
    {
        trait->setApplyMode(tbTrait::OVERRIDE);
        trait->setName("fog");
        const int before = trait->getType()->getNum(true);
        const std::size_t bytes = tbMemory::getSize();
        auto* copy = static_cast<tbTrait*>(trait->createDisposableCopy(&arena));
        EXPECT_TRUE(trait->isEqual(copy));
        EXPECT_STREQ(copy->getName(), "fog");
        EXPECT_NE(copy->getName(), trait->getName());
        EXPECT_EQ(tbMemory::getSize(), bytes);
        EXPECT_EQ(trait->getType()->getNum(true), before);
    }
    EXPECT_EQ(sort->createDisposableCopy(&arena), nullptr);
}

TEST_F(KernelTraits, FilesKeepEveryField)
{
    for (tbTrait* trait : changed())
    {
        trait->setApplyMode(tbTrait::FORCE);
        trait->enableShareable(false);
        EXPECT_TRUE(trait->isEqual(tbtest::savedCopy(trait).get())) << trait->getType()->getName();
    }
}

} // namespace
