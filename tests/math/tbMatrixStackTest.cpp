#include <tamber/math/tbMatrixStack.h>

#include <tests/support/Matrices.h>
#include <tests/support/Near.h>

#include <gtest/gtest.h>

using tbtest::near;

namespace
{

tbMatrix moved(float x)
{
    return tbtest::translation(x, 0, 0);
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
    const std::pair<int, int> sizes[] = {{65537, 1}, {65535, 65535}, {-1, 65535}, {0, 1}};
    for (const auto& [asked, given] : sizes)
        EXPECT_EQ(tbMatrixStack(asked).getStackSize(), given) << asked;
    tbMatrixStack none(0);
    none.push();
    EXPECT_EQ(none.getDepth(), 0);
}

TEST(MatrixStack, OperationsChangeTheTopAndTheId)
{
    const auto change = [](auto& matrix)
    {
        matrix.preTrans(1, 2, 3);
        matrix.postRot(30, 0, 1, 0);
        matrix.preScale(tbVec3(1, 2, 3));
        matrix.postTrans(tbVec3(4, 5, 6));
        matrix.preRot(40, tbVec3(0, 0, 1));
        matrix.postScale(2, 2, 2);
        matrix.preMult(moved(1));
        matrix.postMult(tbtest::turn(90, 0, 0));
    };
    tbMatrixStack stack(3);
    stack.pushIdent();
    tbMatrix m = tbtest::identity();
    change(stack);
    change(m);
    EXPECT_TRUE(near(stack.getTop(), m, 0.0f));
    EXPECT_EQ(stack.getID(), 9);
    stack.pushMult(moved(1)); // applies first
    EXPECT_TRUE(near(stack.getTop(), moved(1) * m));
    stack.postScale(1, 1, 1); // counts also when nothing comes of it
    EXPECT_EQ(stack.getID(), 11);
    stack.reset();
    EXPECT_EQ(stack.getDepth(), 0);
    EXPECT_EQ(stack.getID(), 12);
    EXPECT_EQ(stack.getTop(), tbtest::identity());
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

// Every scene, camera and collider has two of them, and few are ever walked.
TEST(MatrixStack, TakesItsMemoryWithTheFirstPush)
{
    const std::size_t before = tbMemory::getSize();
    tbMatrixStack stack(16);
    stack.load(moved(1));
    tbMatrixStack copy(stack);
    EXPECT_EQ(tbMemory::getSize(), before);
    copy.pushIdent();
    EXPECT_GE(tbMemory::getSize(), before + 16 * sizeof(tbMatrix));
    EXPECT_EQ(copy.getDepth(), 1);
    copy.pop();
    EXPECT_EQ(copy.getTop(), moved(1));
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
        EXPECT_EQ(other->getTop(), tbtest::identity());
    }
}
