#include <tamber/collide/tbColliderMask.h>

#include <tamber/collide/tbColliderTarget.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>

#include <gtest/gtest.h>

namespace
{
class ColliderMask : public testing::Test
{
protected:
    tbRef<tbTravContext> context{new tbTravContext};
    tbRef<tbColliderMask> mask{new tbColliderMask};
    tbRef<tbColliderTarget> target{new tbColliderTarget};
};

TEST_F(ColliderMask, ReplacesTheContextsMask)
{
    EXPECT_EQ(mask->getMask(), 0xFFFFFFFFu);
    mask->setMask(0x80000000);
    mask->apply(context.get());
    EXPECT_EQ(context->getColliderMask(), 0x80000000u);
    mask->setMask(0);
    mask->apply(context.get());
    EXPECT_EQ(context->getColliderMask(), 0u);
}

TEST_F(ColliderMask, TargetsReplaceTheirBitsOfTheFlagsOnly)
{
    target->setTargets(0xFFFFFFFF);
    EXPECT_EQ(target->getTargets(), 0x70000u);
    target->setTargets(0x20000);
    target->apply(context.get());
    EXPECT_EQ(context->getFlags(), 0x325500u);
    target->setTargets(0);
    target->apply(context.get());
    EXPECT_EQ(context->getFlags(), 0x305500u);
}

TEST_F(ColliderMask, ASettingHoldsForItsSubtree)
{
    context->setTraitStack(new tbTraitStack(tbTraitStack::TRAV_STACK, true));
    tbTraitStack* stack = context->getTraitStack();
    mask->setMask(2);
    stack->pushTrait(mask.get(), context.get());
    EXPECT_EQ(context->getColliderMask(), 2u);
    stack->popTrait(mask.get(), context.get());
    EXPECT_EQ(context->getColliderMask(), 0xFFFFFFFFu);
}

TEST_F(ColliderMask, EqualityAsksForTypeModeAndWord)
{
    tbRef<tbColliderMask> other(static_cast<tbColliderMask*>(mask->createCopy()));
    EXPECT_TRUE(*mask == *other);
    EXPECT_TRUE(mask->isEqual(other.get()));
    other->setApplyMode(tbTrait::OVERRIDE);
    EXPECT_TRUE(*mask == *other);
    EXPECT_FALSE(mask->isEqual(other.get()));
    *other = *mask;
    other->setMask(1);
    EXPECT_TRUE(*mask != *other);
    mask->setMask(0x70000);
    EXPECT_FALSE(mask->isEqual(target.get()));
    EXPECT_FALSE(target->isEqual(mask.get()));
}

TEST_F(ColliderMask, BothAreCopiedIntoArenas)
{
    tbArena arena;
    mask->setMask(7);
    target->setTargets(0x10000);
    EXPECT_EQ(static_cast<tbColliderMask*>(mask->createDisposableCopy(&arena))->getMask(), 7u);
    EXPECT_EQ(static_cast<tbColliderTarget*>(target->createDisposableCopy(&arena))->getTargets(), 0x10000u);
}
} // namespace
