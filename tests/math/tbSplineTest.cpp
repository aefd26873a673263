#include <tamber/math/tbSpline.h>

#include <tamber/math/tbFloatInterpTable.h>
#include <tamber/math/tbQuatInterpTable.h>
#include <tamber/math/tbVec3InterpTable.h>
#include <tamber/math/tbVec4InterpTable.h>
#include <tests/support/Near.h>
#include <tests/support/RandomValues.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using tbtest::NOT_A_NUMBER;

namespace
{

tbSpline square(tbSpline::TYPE type)
{
    tbSpline spline(type);
    for (const tbVec3& point : {tbVec3(0, 0, 0), tbVec3(10, 0, 0), tbVec3(10, 10, 0), tbVec3(0, 10, 0)})
        spline.addPoint(point);
    return spline;
}

} // namespace

TEST(Spline, PassesThroughItsPoints)
{
    for (const tbSpline::TYPE type : {tbSpline::LINEAR, tbSpline::CATMULL_ROM})
    {
        tbSpline spline = square(type);
        EXPECT_EQ(spline.getNumSegments(), 3);
        for (int i = 0; i < 4; ++i)
            EXPECT_TRUE(tbtest::near(spline.getPosition(float(i)), spline.getPoint(i)));
        spline.setClosed(true);
        EXPECT_EQ(spline.getNumSegments(), 4);
        EXPECT_TRUE(tbtest::near(spline.getPosition(4), spline.getPoint(0)));
    }
}

TEST(Spline, TangentsAreTheChangeOfThePlace)
{
    for (int type = 0; type < 4; ++type)
    {
        const tbSpline spline = square(tbSpline::TYPE(type));
        for (float u = 0.05f; u < float(spline.getNumSegments()) - 0.05f; u += 0.1f)
        {
            const tbVec3 measured =
                (spline.getPosition(u + 0.005f) - spline.getPosition(u - 0.005f)) * 100.0f;
            const bool corner = type == tbSpline::LINEAR && std::fabs(u - std::round(u)) <= 0.01f;
            EXPECT_TRUE(corner || tbtest::near(spline.getTangent(u), measured, 0.05f)) << type << ' ' << u;
        }
    }
}

TEST(Spline, LengthsMeasureTheWay)
{
    tbSpline line = square(tbSpline::LINEAR);
    EXPECT_NEAR(line.getLength(), 30.0f, 1e-3f);
    EXPECT_TRUE(tbtest::near(line.getPositionAtLength(15), tbVec3(10, 5, 0), 1e-2f));
    line.setClosed(true);
    EXPECT_NEAR(line.getLength(), 40.0f, 1e-3f);
    const tbSpline curve = square(tbSpline::CATMULL_ROM);
    tbVec3 last = curve.getPosition(0);
    const float step = curve.getLength() / 50;
    for (int i = 1; i <= 50; ++i)
    {
        const tbVec3 next = curve.getPositionAtLength(step * float(i));
        EXPECT_NEAR(next.distance(last), step, step * 0.05f); // even steps along the curve
        last = next;
    }
    EXPECT_TRUE(tbtest::near(curve.getPositionAtLength(1e9f), curve.getPoint(3)));

    // Of very long curves each segment is measured in fewer steps.
    tbSpline wayOn(tbSpline::LINEAR);
    for (int i = 0; i <= 100'000; ++i)
        wayOn.addPoint(tbVec3(float(i), 0, 0));
    EXPECT_NEAR(wayOn.getLength(), 100'000.0f, 1.0f);
    EXPECT_NEAR(wayOn.getParameterAtLength(30'000.5f), 30'000.5f, 0.1f);
}

TEST(Spline, TooFewPointsAndNoNumbersEndAtTheStart)
{
    tbSpline spline;
    EXPECT_TRUE(tbtest::near(spline.getPosition(1), tbVec3(0, 0, 0)));
    EXPECT_EQ(spline.getLength(), 0.0f);
    spline.addPoint(tbVec3(1, 2, 3));
    EXPECT_TRUE(tbtest::near(spline.getPosition(5), tbVec3(1, 2, 3)));
    spline.addPoint(tbVec3(2, 2, 3));
    EXPECT_TRUE(tbtest::near(spline.getPosition(NOT_A_NUMBER), tbVec3(1, 2, 3)));
    EXPECT_EQ(spline.getParameterAtLength(NOT_A_NUMBER), 0.0f);
}

TEST(InterpTable, FindsKeysInEitherDirectionAndAtRandom)
{
    tbFloatInterpTable table;
    for (int i = 99; i >= 0; --i)
        table.addKey(float(i), float(i) * 2);
    EXPECT_FALSE(table.addKey(NOT_A_NUMBER, 0));
    tbtest::Random random(14);
    for (int i = 0; i < 2000; ++i)
    {
        const float time = i < 500    ? float(i) * 0.2f
                           : i < 1000 ? float(1000 - i) * 0.2f
                                      : random.number(0, 100);
        EXPECT_NEAR(table.get(time), std::fmin(time, 99.0f) * 2, 1e-3f) << time;
    }
    EXPECT_EQ(table.get(NOT_A_NUMBER), 0.0f);
    EXPECT_EQ(tbFloatInterpTable().get(3), 0.0f);
}

TEST(InterpTable, GoesOnAsItIsToldOutsideItsKeys)
{
    tbFloatInterpTable table;
    table.addKey(1, 10);
    table.addKey(3, 30);
    EXPECT_EQ(table.get(0), 10.0f);
    EXPECT_EQ(table.get(9), 30.0f);
    table.setExtrapolation(tbExtrapolation::LOOP);
    EXPECT_NEAR(table.get(4), 20.0f, 1e-4f);
    EXPECT_NEAR(table.get(0), 20.0f, 1e-4f);
    EXPECT_NEAR(table.get(3), 30.0f, 1e-4f);
    table.setExtrapolation(tbExtrapolation::PING_PONG);
    EXPECT_NEAR(table.get(3.5f), 25.0f, 1e-4f);
    EXPECT_NEAR(table.get(5.5f), 15.0f, 1e-4f);
    EXPECT_NEAR(table.get(0.5f), 15.0f, 1e-4f);
    EXPECT_EQ(table.get(std::numeric_limits<float>::infinity()), 30.0f);
}

TEST(InterpTable, SmoothTablesPassTheirKeysWithoutCorners)
{
    tbVec3InterpTable table;
    table.setInterpolation(tbInterpolation::CATMULL_ROM);
    for (int i = 0; i < 6; ++i)
        table.addKey(float(i * i) * 0.25f, tbVec3(float(i), float(i * i), 0));
    for (int i = 1; i < 5; ++i)
    {
        const float t = table.getKeyTime(i);
        EXPECT_TRUE(tbtest::near(table.get(t), table.getKeyValue(i), 1e-3f));
        const tbVec3 before = (table.get(t) - table.get(t - 0.01f)) * 100;
        const tbVec3 after = (table.get(t + 0.01f) - table.get(t)) * 100;
        EXPECT_TRUE(tbtest::near(before, after, 0.5f)) << i;
    }
    tbVec4InterpTable step;
    step.setInterpolation(tbInterpolation::STEP);
    step.addKey(0, tbVec4(1, 1, 1, 1));
    step.addKey(1, tbVec4(2, 2, 2, 2));
    EXPECT_EQ(step.get(0.99f)[0], 1.0f);
}

TEST(InterpTable, RotationsTakeTheShorterArc)
{
    tbQuatInterpTable table;
    tbQuat a, b;
    a.setHPR(tbVec3(170, 0, 0));
    b.setHPR(tbVec3(-170, 0, 0));
    table.addKey(0, a);
    table.addKey(2, b);
    tbVec3 hpr;
    table.get(1).getHPR(hpr);
    EXPECT_NEAR(std::fabs(hpr[0]), 180.0f, 0.1f);
    EXPECT_NEAR(table.get(0.7f).sqrLength(), 1.0f, 1e-3f);
}
