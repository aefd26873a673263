#include <tamber/trav/tbTraitStack.h>

#include <tamber/audio/tbAudioLevelScale.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/kernel/tbStats.h>
#include <tests/support/RecordingTraits.h>

#include <gtest/gtest.h>

using tbtest::RecordingTrait;
using tbtest::TraitLog;

namespace
{
using TravA = RecordingTrait<tbTravTrait, 0>;
using VisualA = RecordingTrait<tbVisualTrait, 0>;
using VisualB = RecordingTrait<tbVisualTrait, 1>;
using AudioA = RecordingTrait<tbAudioTrait, 0>;
using Traits = std::vector<const tbTrait*>;

class TraitStack : public testing::Test
{
protected:
    TraitStack()
    {
        VisualA::type();
        VisualB::type();
        AudioA::type();
        TravA::type();
        stack = new tbTraitStack(tbTraitStack::ALL_STACKS, true);
        log.stack = stack.get();
        // Like a camera at the start of a frame: the device has every default.
        stack->applyDefaultVisualTraits(nullptr);
        log.clear();
    }
    ~TraitStack() override
    {
        log.stack = nullptr;
        log.clear();
    }

    Traits drawn()
    {
        log.onDevice.clear();
        stack->applyVisualTraitStacks(nullptr);
        stack->applyTraits(nullptr, 0, nullptr);
        return log.onDevice;
    }
    Traits heard()
    {
        log.onDevice.clear();
        stack->applyAudioTraits(nullptr);
        return log.onDevice;
    }

    TraitLog& log = TraitLog::get();
    tbRef<tbTravContext> context{new tbTravContext};
    tbRef<tbTraitStack> stack;
};

TEST_F(TraitStack, WithoutDefaultsTheStackEndsEmpty)
{
    tbRef<tbTraitStack> bare(new tbTraitStack(tbTraitStack::ALL_STACKS, false));
    tbRef<TravA> trait(new TravA);
    bare->pushTrait(trait.get(), context.get());
    bare->popTrait(trait.get(), context.get());
    EXPECT_EQ(bare->getTop(TravA::type()), nullptr);
    EXPECT_EQ(log.onContext, Traits{trait.get()});
    EXPECT_EQ(tbtest::visualDefaultsOf(*bare), Traits{});
}

TEST_F(TraitStack, FamiliesThatAreNotKeptAreIgnored)
{
    tbRef<tbTraitStack> travOnly(new tbTraitStack(tbTraitStack::TRAV_STACK, true));
    tbRef<VisualA> visual(new VisualA);
    tbRef<AudioA> audio(new AudioA);
    travOnly->pushTrait(visual.get(), context.get());
    travOnly->pushTrait(audio.get(), context.get());
    travOnly->setAppliedTrait(visual.get());
    travOnly->popTrait(visual.get(), context.get());
    travOnly->applyVisualTraitStacks(nullptr);
    travOnly->applyAllDefaultVisualTraits(nullptr);
    EXPECT_EQ(travOnly->getTop(VisualA::type()), nullptr);
    EXPECT_EQ(travOnly->getAppliedTrait(VisualA::type()), nullptr);
    EXPECT_EQ(travOnly->getNumVisualTraitStacks(), 0);
    EXPECT_EQ(log.onContext, Traits{});
    EXPECT_EQ(log.onDevice, Traits{});
}

// A trait of which each new one lies where the last one lay.
class Successor : public VisualA
{
public:
    static void* operator new(std::size_t)
    {
        alignas(VisualA) static unsigned char place[sizeof(VisualA)];
        return place;
    }
    static void operator delete(void*) {}
};

TEST_F(TraitStack, ATraitAtTheAddressOfADeadOneIsSet)
{
    for (int i = 0; i < 2; ++i)
    {
        tbRef<Successor> trait(new Successor);
        stack->pushTrait(trait.get(), context.get());
        EXPECT_EQ(drawn(), Traits{trait.get()});
        stack->popTrait(trait.get(), context.get());
    }
}

TEST_F(TraitStack, AudioTraitsReachTheListenerWhenTheyChange)
{
    tbRef<AudioA> outer(new AudioA);
    tbRef<AudioA> inner(new AudioA);
    stack->applyDefaultAudioTraits(nullptr, true);
    EXPECT_FALSE(log.onDevice.empty());
    log.clear();
    stack->applyDefaultAudioTraits(nullptr, false);
    EXPECT_EQ(log.onDevice, Traits{});
    stack->pushTrait(outer.get(), context.get());
    stack->pushTrait(inner.get(), context.get());
    EXPECT_EQ(heard(), Traits{inner.get()});
    EXPECT_EQ(stack->getAppliedTrait(AudioA::type()), inner.get());
    stack->popTrait(inner.get(), context.get());
    EXPECT_EQ(heard(), Traits{outer.get()});
    EXPECT_EQ(heard(), Traits{});
    stack->popTrait(outer.get(), context.get());
    const tbTrait* below = stack->getTop(AudioA::type());
    EXPECT_EQ(heard(), Traits{below});
    EXPECT_EQ(log.onContext, Traits{});
    EXPECT_EQ(stack->getAudioStackID(), 0);
}

TEST_F(TraitStack, ListsHoldTopsInTheOrderOfTheTypes)
{
    tbRef<VisualA> a(new VisualA);
    tbRef<VisualB> b(new VisualB);
    tbRef<TravA> pushed(new TravA);
    stack->pushTrait(b.get(), context.get());
    stack->pushTrait(a.get(), context.get());
    stack->pushTrait(pushed.get(), context.get());
    int num = 0;
    const tbVisualTrait** visual = stack->getVisualTraits(tbTraitStack::TOP_LIST, num);
    ASSERT_EQ(num, 2);
    EXPECT_EQ(visual[0], a.get());
    EXPECT_EQ(visual[1], b.get());
    const tbTravTrait** trav = stack->getTravTraits(tbTraitStack::TOP_LIST, num);
    ASSERT_EQ(num, 1);
    EXPECT_EQ(trav[0], pushed.get());
    tbMemory::free(visual);
    tbMemory::free(trav);
}

TEST_F(TraitStack, DynamicTraitsAreListedAsDisposableCopies)
{
    tbArena arena;
    const tbRef<tbAudioLevelScale> trait(new tbAudioLevelScale);
    stack = new tbTraitStack(tbTraitStack::AUDIO_STACK, false);
    stack->pushTrait(trait.get(), context.get());
    int num = 0;
    EXPECT_EQ(stack->getAudioTraits(tbTraitStack::TOP_LIST, num, &arena, true)[0], trait.get());
    trait->enableDynamic(true);
    EXPECT_EQ(stack->getAudioTraits(tbTraitStack::TOP_LIST, num, &arena, false)[0], trait.get());
    const tbAudioTrait* copy = stack->getAudioTraits(tbTraitStack::TOP_LIST, num, &arena, true)[0];
    EXPECT_NE(copy, trait.get());
    EXPECT_EQ(copy->getType(), trait->getType());
}

TEST_F(TraitStack, TypesMadeLaterAreTakenInByTheNextReset)
{
    using Late = RecordingTrait<tbTravTrait, 20>;
    const int before = stack->getNumTravTraitStacks();
    tbRef<Late> trait(new Late);
    stack->pushTrait(trait.get(), context.get());
    EXPECT_EQ(stack->getTop(Late::type()), nullptr);
    stack->popTrait(trait.get(), context.get());
    EXPECT_EQ(log.onContext, Traits{});
    stack->reset(false);
    EXPECT_GT(stack->getNumTravTraitStacks(), before);
    stack->pushTrait(trait.get(), context.get());
    EXPECT_EQ(stack->getTop(Late::type()), trait.get());
    Late::type()->deleteType();
}

TEST_F(TraitStack, TypesKeepTheirNumbersInOrderWhenOneGoes)
{
    using First = RecordingTrait<tbVisualTrait, 30>;
    using Second = RecordingTrait<tbVisualTrait, 31>;
    First::type();
    tbRef<Second> trait(new Second);
    EXPECT_TRUE(First::type()->deleteType());
    for (int i = 0; i < tbVisualTraitType::getNumTraitTypes(); ++i)
        EXPECT_EQ(tbVisualTraitType::getTraitType(i)->getIndex(), i);
    EXPECT_EQ(tbVisualTraitType::getTraitType(-1), nullptr);
    EXPECT_EQ(tbVisualTraitType::createInstance(tbVisualTraitType::getNumTraitTypes()), nullptr);
    stack->reset(true);
    stack->applyDefaultVisualTraits(nullptr);
    stack->pushTrait(trait.get(), context.get());
    EXPECT_EQ(drawn(), Traits{trait.get()});
}

TEST_F(TraitStack, PushedTraversalTraitsAreCounted)
{
    tbRef<tbStats> stats(new tbStats(tbTraitStack::TRAV_STACK));
    tbRef<TravA> trait(new TravA);
    tbRef<TravA> off(new TravA(tbTrait::OFF));
    context->setStats(stats.get());
    stack->pushTrait(trait.get(), context.get());
    stack->pushTrait(trait.get(), context.get());
    stack->pushTrait(off.get(), context.get());
    stack->popTrait(trait.get(), context.get());
    EXPECT_EQ(stats->getCount(TravA::type()), 2);
}
} // namespace
