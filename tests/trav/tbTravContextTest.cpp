#include <tamber/trav/tbTravContext.h>

#include <tamber/graph/tbGroup.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravPath.h>
#include <tamber/volume/tbSphere.h>
#include <tests/support/Matrices.h>
#include <tests/support/RecordingTraits.h>

#include <gtest/gtest.h>

namespace
{
using Trait = tbtest::RecordingTrait<tbTravTrait, 0>;

class TravContext : public testing::Test
{
protected:
    tbRef<tbTravContext> context{new tbTravContext};
};

TEST_F(TravContext, ResetMakesItReadyForANewWalk)
{
    tbSphere volume;
    tbRef<tbGroup> group(new tbGroup);
    group->setName("node");
    const tbMatrix matrix = tbtest::translation(1, 2, 3);
    const tbRef<Trait> trait(new Trait);
    context->setTraitStack(new tbTraitStack(tbTraitStack::TRAV_STACK, false));
    context->getTraitStack()->pushTrait(trait.get(), context.get());
    context->setTextureID(5);
    context->pushFailedRayMask();
    context->addFailedRayMask(3);
    context->pushMultMatrix(matrix);
    context->pushInvertMatrix(matrix);
    context->setColliderMask(1);
    context->pushVolume(&volume);
    context->pushCullResult(tbVolume::INSIDE);
    context->pushGroup(group.get());
    context->setFlags(0x80);
    context->setRangeSwitchScale(2.0f);
    context->setTransitionScale(0.5f);
    context->setTransitionMode(tbTransition::TRANSITION_OUT);
    context->setTravMask(0x200);
    context->setCamera(reinterpret_cast<tbCamera*>(&volume));

    context->reset();

    const auto stateOf = [](const tbRef<tbTravContext>& c)
    {
        return std::tuple(c->getTextureID(), c->getFailedRayMask(), c->getMatrix(), c->getInvertMatrix(),
                          c->getColliderMask(), c->getVolume(), c->getCullResult(), c->getGroup(),
                          c->getTravStackID(), c->getNamedTravStack().getNum(), c->getFlags(),
                          c->getRangeSwitchScale(), c->getTransitionScale(), c->getTransitionMode());
    };
    EXPECT_EQ(stateOf(context), stateOf(tbRef(new tbTravContext)));
    EXPECT_EQ(context->getFlags(), 0x375500u);
    EXPECT_EQ(context->getTraitStack()->getTop(Trait::type()), nullptr);
    EXPECT_EQ(context->getTravMask(), 0x200u);
    EXPECT_NE(context->getCamera(), nullptr);
}

TEST_F(TravContext, StacksStayEmptyWhenPoppedTooOften)
{
    EXPECT_EQ(context->popCullResult(), tbVolume::PARTIAL);
    EXPECT_EQ(context->popCullResult(), tbVolume::OUTSIDE);
    EXPECT_EQ(context->getCullResult(), tbVolume::OUTSIDE);
    context->popVolume();
    EXPECT_EQ(context->getVolume(), nullptr);
    EXPECT_EQ(context->popGroup(), nullptr);
    context->popMatrix();
    EXPECT_EQ(context->getMatrix(), tbTravContext::ident);
}

TEST_F(TravContext, FailedRaysAreKnownBelowTheNodeThatFoundThem)
{
    context->addFailedRayMask(1);
    context->pushFailedRayMask();
    context->addFailedRayMask(0x80000004);
    EXPECT_EQ(context->getFailedRayMask(), 0x80000005u);
    context->popFailedRayMask();
    EXPECT_EQ(context->getFailedRayMask(), 1u);
    context->popFailedRayMask();
    context->addFailedRayMask(8);
    EXPECT_EQ(context->getFailedRayMask(), 0u);
}

TEST_F(TravContext, NamedGroupsStandOnBothPathsEvenWhenRenamedDuringTheWalk)
{
    tbRef<tbGroup> gains(new tbGroup);
    tbRef<tbGroup> loses(new tbGroup);
    loses->setName("loses");
    context->pushGroup(loses.get());
    context->pushGroup(gains.get());
    EXPECT_EQ(context->getTravStack().getNum(), 2);
    EXPECT_EQ(context->getNamedTravStack().getNum(), 1);
    gains->setName("gains");
    loses->setName(nullptr);
    EXPECT_EQ(context->popGroup(), gains.get());
    EXPECT_EQ(context->getNamedTravStack().getNum(), 1);
    EXPECT_EQ(context->getGroup(), loses.get());
    context->popGroup();
    EXPECT_EQ(context->getNamedTravStack().getNum(), 0);
}

TEST_F(TravContext, TransparencyFollowsItsInputs)
{
    for (unsigned inputs = 0; inputs < 16; ++inputs)
    {
        for (unsigned before : {0u, 0x40u})
        {
            context->setFlags(0x375500 | before | inputs);
            context->setTransparencyFlags();
            const bool transparent = (inputs & 6) == 6 || (inputs & 9) == 9;
            EXPECT_EQ(context->getFlags(), 0x375500u | inputs | (transparent ? 0x40u : 0u));
        }
    }
}

TEST_F(TravContext, MatricesMultiplyDownTheGraph)
{
    const tbMatrix moved = tbtest::translation(1, 0, 0);
    const auto before = context->getMatrixID();
    for (int i = 0; i < 1000; ++i)
        context->pushMultMatrix(moved);
    EXPECT_NE(context->getMatrixID(), before);
    EXPECT_FLOAT_EQ(context->getMatrix()[3][0], 1000.0f);
    context->pushIdentMatrix();
    EXPECT_EQ(context->getMatrix(), tbTravContext::ident);
    for (int i = 0; i < 1001; ++i)
        context->popMatrix();
    EXPECT_EQ(context->getMatrix(), tbTravContext::ident);
}

TEST_F(TravContext, ACopyGoesOnWhereTheWalkIsAndHoldsWhatTheContextHolds)
{
    const tbRef<tbGroup> group(new tbGroup);
    const tbRef<tbTraitStack> stack(new tbTraitStack);
    const tbRef<tbStats> stats(new tbStats);
    context->setTraitStack(stack.get());
    context->setStats(stats.get());
    context->pushGroup(group.get());
    context->pushMultMatrix(tbtest::translation(0, 0, 4));
    const tbRef<tbTravContext> copy(static_cast<tbTravContext*>(context->createCopy()));
    context->popMatrix();
    context->popGroup();
    EXPECT_EQ(copy->getGroup(), group.get());
    EXPECT_FLOAT_EQ(copy->getMatrix()[3][2], 4.0f);
    copy->popMatrix();
    EXPECT_FLOAT_EQ(copy->getMatrix()[3][2], 0.0f);
    EXPECT_EQ(stack->getRefCount() + stats->getRefCount(), 3 + 3);
    context.reset();
    EXPECT_EQ(copy->getTraitStack(), stack.get());
    EXPECT_EQ(stack->getRefCount() + stats->getRefCount(), 2 + 2);
}
} // namespace
