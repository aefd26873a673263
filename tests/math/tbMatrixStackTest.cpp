#include <tamber/math/tbMatrixStack.h>

#include <tamber/math/tbVec3.h>
#include <tests/support/Near.h>

#include <gtest/gtest.h>

using tbtest::near;

namespace
{

tbMatrix moved(float x)
{
    tbMatrix m;
    m.makeXYZ(x, 0, 0);
    return m;
}

tbMatrix turned()
{
    tbMatrix m;
    m.makeHPR(90, 0, 0);
    return m;
}

tbMatrix identity()
{
    tbMatrix m;
    m.makeIdent();
    return m;
}

} // namespace

TEST(MatrixStack, FullAndEmptyStacksIgnoreSilently)
{
    tbMatrixStack stack(3);
    EXPECT_EQ(stack.getID(), 0);
    stack.push();
    stack.pushLoad(moved(1));
    EXPECT_EQ(stack.getID(), 2);
    stack.push();
    stack.pushIdent();
    stack.pushLoad(moved(2));
    stack.pushMult(moved(2));
    EXPECT_EQ(stack.getDepth(), 2);
    EXPECT_EQ(stack.getID(), 2);
    EXPECT_EQ(stack.getTop(), moved(1));
    for (int i = 0; i < 5; ++i)
        stack.pop();
    EXPECT_EQ(stack.getDepth(), 0);
    EXPECT_EQ(stack.getID(), 4);
}

TEST(MatrixStack, CapacityIsAWordAndNeverNothing)
{
    EXPECT_EQ(tbMatrixStack(65537).getStackSize(), 1);
    EXPECT_EQ(tbMatrixStack(65535).getStackSize(), 65535);
    EXPECT_EQ(tbMatrixStack(-1).getStackSize(), 65535);
    tbMatrixStack none(0);
    EXPECT_EQ(none.getStackSize(), 1);
    none.push();
    EXPECT_EQ(none.getDepth(), 0);
}

TEST(MatrixStack, PushedProductsApplyTheNewMatrixFirst)
{
    tbMatrixStack stack(4);
    stack.load(moved(1));
    stack.pushMult(turned());
    EXPECT_TRUE(near(tbVec3(1, 0, 0) * stack.getTop(), tbVec3(1, 1, 0)));
    stack.pop();
    EXPECT_EQ(stack.getTop(), moved(1));
}

TEST(MatrixStack, OperationsChangeTheTopAndTheId)
{
    tbMatrixStack stack(2);
    stack.pushIdent();
    tbMatrix m = identity();
    stack.preTrans(1, 2, 3);
    m.preTrans(1, 2, 3);
    stack.postRot(30, 0, 1, 0);
    m.postRot(30, 0, 1, 0);
    stack.preScale(tbVec3(1, 2, 3));
    m.preScale(1, 2, 3);
    stack.postTrans(tbVec3(4, 5, 6));
    m.postTrans(4, 5, 6);
    stack.preRot(40, tbVec3(0, 0, 1));
    m.preRot(40, 0, 0, 1);
    stack.postScale(2, 2, 2);
    m.postScale(2, 2, 2);
    stack.preMult(moved(1));
    m.preMult(moved(1));
    stack.postMult(turned());
    m.postMult(turned());
    EXPECT_TRUE(near(stack.getTop(), m, 0.0f));
    EXPECT_EQ(stack.getID(), 9);
    stack.postScale(1, 1, 1); // counts also when nothing comes of it
    EXPECT_EQ(stack.getID(), 10);
    stack.reset();
    EXPECT_EQ(stack.getDepth(), 0);
    EXPECT_EQ(stack.getID(), 11);
    EXPECT_EQ(stack.getTop(), identity());
}

TEST(MatrixStack, UnlimitedStacksGrowAroundTheirOwnTop)
{
    tbMatrixStack stack(1, tbMatrixStack::UNLIMITED);
    stack.load(moved(1));
    for (int i = 1; i < 20; ++i)
    {
        stack.pushMult(stack.getTop()); // doubles the way
        EXPECT_EQ(stack.getDepth(), i);
        EXPECT_EQ(stack.getTop()[3][0], float(1 << i));
        stack.pushLoad(stack.getTop());
        stack.pop();
    }
    for (int i = 18; i >= 0; --i)
    {
        stack.pop();
        EXPECT_EQ(stack.getTop()[3][0], float(1 << i));
    }
}

TEST(MatrixStack, CopiesStandAlone)
{
    tbMatrixStack stack(4);
    stack.pushLoad(moved(1));
    tbMatrixStack copy(stack);
    tbMatrixStack assigned(1);
    assigned = stack;
    assigned = *&assigned;
    stack.load(moved(2));
    for (tbMatrixStack* other : {&copy, &assigned})
    {
        EXPECT_EQ(other->getTop(), moved(1));
        EXPECT_EQ(other->getStackSize(), 4);
        EXPECT_EQ(other->getID(), 1);
        other->pop();
        EXPECT_EQ(other->getTop(), identity());
    }
}
