#include <tamber/math/tbQuat.h>

#include <tests/support/Matrices.h>
#include <tests/support/Near.h>
#include <tests/support/RandomValues.h>
#include <tests/support/RootScope.h>

#include <gtest/gtest.h>

#include <cmath>

using tbtest::near;

namespace
{

tbMatrix matrixOf(const tbQuat& q)
{
    tbMatrix m;
    q.getMatrix(m);
    return m;
}

tbQuat quatOf(const tbMatrix& m)
{
    tbQuat q;
    q.setMatrix(m);
    return q;
}

} // namespace

TEST(Quat, MatricesComeBack)
{
    const tbtest::RootScope exact;
    tbtest::Random random(10);
    for (int i = 0; i < 1000; ++i)
    {
        const tbMatrix m = random.place(0);
        EXPECT_TRUE(near(matrixOf(quatOf(m)), m, 1e-5f));
    }
    // Half turns: the trace is -1, and each axis in turn is the largest.
    for (const tbVec3& axis :
         {tbVec3(1, 0, 0), tbVec3(0, 1, 0), tbVec3(0, 0, 1), tbVec3(1, 1, 0), tbVec3(0, 1, -1)})
        EXPECT_TRUE(near(matrixOf(quatOf(tbtest::rotation(180, axis))), tbtest::rotation(180, axis), 1e-5f));
}

TEST(Quat, TurnsTheOtherWayThanTheCustomaryOne)
{
    const tbMatrix m = tbtest::turn(90, 0, 0);
    const tbQuat q = quatOf(m);
    EXPECT_TRUE(near(q, tbQuat(0, 0, -std::sqrt(0.5f), std::sqrt(0.5f)), 1e-3f));
    EXPECT_TRUE(near(matrixOf(q), m, 2e-3f)); // as precise as the root table
}

TEST(Quat, ProductsAreThoseOfTheRotations)
{
    const tbtest::RootScope exact;
    tbtest::Random random(11);
    for (int i = 0; i < 200; ++i)
    {
        const tbQuat a = quatOf(random.place(0));
        const tbQuat b = quatOf(random.place(0));
        EXPECT_TRUE(near(matrixOf(a * b), matrixOf(a) * matrixOf(b), 1e-5f));
        tbQuat inPlace(a);
        inPlace *= inPlace;
        EXPECT_EQ(inPlace, a * a);
    }
}

TEST(Quat, InversesUndo)
{
    tbQuat q;
    q.invert(tbQuat(0, 0, 0, 2));
    EXPECT_EQ(q, tbQuat(0, 0, 0, 0.5f));
    const tbQuat a(1, 2, 3, 4);
    q.invert(a);
    EXPECT_TRUE(near(a * q, tbQuat(0, 0, 0, 1), 1e-6f));
    q.conjugate(a);
    EXPECT_EQ(q, tbQuat(-1, -2, -3, 4));
    q *= 2.0f;
    EXPECT_EQ(q, tbQuat(-2, -4, -6, 8));
}

TEST(Quat, SlerpTurnsEvenlyAlongTheShorterArc)
{
    const tbtest::RootScope exact;
    const tbQuat from = quatOf(tbtest::identity());
    const tbQuat to = quatOf(tbtest::turn(100, 0, 0));
    const tbQuat farTo(-to.x, -to.y, -to.z, -to.w);
    for (int i = 0; i <= 10; ++i)
    {
        const float t = float(i) / 10.0f;
        tbQuat q;
        q.slerp(t, from, to);
        EXPECT_TRUE(near(matrixOf(q), tbtest::turn(100 * t, 0, 0), 1e-5f)) << t;
        EXPECT_NEAR(q.sqrLength(), 1.0f, 1e-5f);
        tbQuat other(farTo);
        other.slerp(t, from, other);
        EXPECT_TRUE(near(other, q, 1e-6f));
    }
}

TEST(Quat, SlerpOfNeighboursAndOppositesIsStraight)
{
    const tbQuat a(0, 0, 0.6f, 0.8f);
    const tbQuat opposite(0, 0, -0.6f, -0.8f);
    tbQuat q;
    q.slerp(0.5f, a, opposite);
    EXPECT_TRUE(near(q, a, 1e-6f));
    tbQuat straight;
    const tbQuat close(0, 0, 0.60001f, 0.7999925f);
    q.slerp(0.25f, a, close);
    straight.lerp(0.25f, a, close);
    EXPECT_EQ(q, straight);
    straight.lerp(0.5f, tbQuat(1, 0, 0, 0), tbQuat(0, 0, 0, 1));
    EXPECT_EQ(straight, tbQuat(0.5f, 0, 0, 0.5f)); // not of unit length
}

TEST(Quat, MatricesAreMadeOfTheirUnitsAndNoNumbersTurnNothing)
{
    EXPECT_TRUE(near(matrixOf(tbQuat(0, 0, 30, 40)), matrixOf(tbQuat(0, 0, 0.6f, 0.8f)), 2e-3f));
    EXPECT_EQ(matrixOf(tbQuat(tbtest::NOT_A_NUMBER, 0, 0, 1)), tbtest::identity()); // normalises to zero
}
