#include <tamber/math/tbVec3.h>

#include <tests/support/Near.h>
#include <tests/support/RandomValues.h>
#include <tests/support/RootScope.h>

#include <gtest/gtest.h>

#include <limits>

using tbtest::near;
using tbtest::NOT_A_NUMBER;

namespace
{

constexpr float INF = std::numeric_limits<float>::infinity();

tbVec3 directionOf(float h, float p)
{
    tbVec3 v;
    v.setHP(h, p);
    return v;
}

} // namespace

TEST(Vec3, DestinationMayBeAnOperand)
{
    const tbVec3 a(1, 2, 3);
    const tbVec3 b(-4, 5, 6);
    tbVec3 expected;
    expected.cross(a, b);
    EXPECT_EQ(expected, tbVec3(-3, -18, 13));
    tbVec3 c(a);
    c.cross(c, b);
    EXPECT_EQ(c, expected);
    c = a;
    c.combine(2, b, 3, c);
    EXPECT_EQ(c, tbVec3(-5, 16, 21));
    c = a;
    c.makeNormal(c, b, tbVec3(0, 0, 0));
    expected.makeNormal(a, b, tbVec3(0, 0, 0));
    EXPECT_EQ(c, expected);
    c.makeNormal(tbVec3(0, 0, 5), tbVec3(3, 0, 5), tbVec3(0, 3, 5)); // counterclockwise
    EXPECT_TRUE(near(c, tbVec3(0, 0, 1), 1e-3f));
    c.makeNormal(a, b, a);
    EXPECT_EQ(c, tbVec3(0, 0, 0));
}

TEST(Vec3, NormalizeLeavesUnitVectorsAndZeroesTinyOnes)
{
    tbVec3 unit(0.6f, 0.8f, 0);
    EXPECT_EQ(unit.normalize(), 1.0f);
    EXPECT_EQ(unit, tbVec3(0.6f, 0.8f, 0));
    for (tbVec3 tiny : {tbVec3(0, 0, 0), tbVec3(1e-7f, 0, 0), tbVec3(NOT_A_NUMBER, 1, 0)})
    {
        EXPECT_EQ(tiny.normalize(), 0.0f);
        EXPECT_EQ(tiny, tbVec3(0, 0, 0));
    }
    tbVec3 small(2e-6f, 0, 0);
    EXPECT_NEAR(small.normalize(), 2e-6f, 2e-9f);
    EXPECT_NEAR(small.x, 1.0f, 1e-3f);
}

TEST(Vec3, HeadingAndPitchComeBack)
{
    const tbtest::RootScope exact;
    tbtest::Random random(15);
    for (int i = 0; i < 2000; ++i)
    {
        const float h = random.number(-90, 269.9f);
        const float p = random.number(-85, 85);
        const tbVec3 v = directionOf(h, p);
        float heading, pitch;
        v.getHP(heading, pitch);
        EXPECT_NEAR(heading, h, 1e-3f);
        EXPECT_NEAR(pitch, p, 1e-3f);
        EXPECT_NEAR(v.dot(v), 1.0f, 1e-5f);
        EXPECT_TRUE(near(directionOf(h, 180.0f - p), directionOf(h + 180.0f, p)));
    }
}

TEST(Vec3, HeadingsOfTheAxes)
{
    const std::pair<tbVec3, float> cases[] = {
        {{0, 1, 0}, 0},       {{-1, 0, 0}, 90},     {{0, -1, 0}, 180},     {{1, 0, 0}, -90},
        {{-1, -0.0f, 0}, 90}, {{1, -0.0f, 0}, -90}, {{1, -1e-12f, 0}, -90}};
    for (const auto& [direction, heading] : cases)
    {
        float h, p;
        direction.getHP(h, p);
        EXPECT_EQ(h, heading) << direction.x << ' ' << direction.y;
        EXPECT_EQ(p, 0.0f);
    }
    float h, p;
    tbVec3(0, 0, -2).getHP(h, p);
    EXPECT_EQ(p, -90.0f);
}

TEST(Vec3, SetHPReducesAnyPitchAndSurvivesWhatIsNoNumber)
{
    EXPECT_EQ(directionOf(30, 90), tbVec3(0, 0, 1));
    EXPECT_EQ(directionOf(30, 270), tbVec3(0, 0, -1));
    EXPECT_EQ(directionOf(30, -450), tbVec3(0, 0, -1));
    EXPECT_TRUE(near(directionOf(10, 20 + 360 * 100), directionOf(10, 20), 1e-3f));
    for (const float odd : {INF, -INF, NOT_A_NUMBER})
    {
        EXPECT_EQ(directionOf(odd, 0), tbVec3(0, 0, 0));
        EXPECT_EQ(directionOf(0, odd), tbVec3(0, 0, 0));
    }
    const tbVec3 huge = directionOf(3e38f, 3e38f);
    EXPECT_NEAR(huge.sqrLength(), 1.0f, 1e-2f);
    tbVec3 level;
    level.setH(90);
    EXPECT_TRUE(near(level, tbVec3(-1, 0, 0)));
}

TEST(Vec3, FullTransformDividesByW)
{
    tbMatrix m;
    m.makeIdent();
    const tbVec3 p(1, 2, 4);
    tbVec3 out;
    const std::pair<float, float> factors[] = {{1, 1}, {2, 0.5f}, {-2, -0.5f}, {0, 1e6f}, {-5e-7f, 1e6f}};
    for (const auto& [w, factor] : factors)
    {
        m.setCol(3, 0, 0, 0, w, 0);
        out.fullXformPt(p, m);
        EXPECT_TRUE(near(out, p * factor, 0.01f * std::abs(factor))) << w;
    }
}

TEST(Vec3, AnglesBetweenDirections)
{
    const tbtest::RootScope exact;
    for (int angle = 0; angle <= 180; angle += 15)
        EXPECT_NEAR(tbVec3(0, 3, 0).angleBetween(directionOf(float(angle), 0) * 5.0f), float(angle), 0.05f);
    EXPECT_TRUE(std::isnan(tbVec3(1, 0, 0).angleBetween(tbVec3(0, 0, 0))));
}

TEST(Vec3, ApproximateLengthIsWithinSevenPercent)
{
    EXPECT_FLOAT_EQ(tbVec2(3, -4).approxLength(tbVec2(100, 100)), 5.0f);
    EXPECT_FLOAT_EQ(tbVec2(1, 1).approxDist(tbVec2(5, 4)), 5.0f);
    EXPECT_FLOAT_EQ(tbVec3(1, 1, 1).approxLength(), 1.6666667f);
    tbtest::Random random(2);
    for (int i = 0; i < 1000; ++i)
    {
        EXPECT_NEAR(random.direction().approxLength(), 1.0f, 0.12f);
        const tbVec3 v = random.direction();
        EXPECT_NEAR(tbVec3(5, 5, 5).approxDist(tbVec3(5, 5, 5) + v), v.approxLength(), 1e-5f);
    }
}

TEST(Vec3, OctantsAndQuadrantsCountZeroAsPositive)
{
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(tbVec3(i & 4 ? -1.0f : 1.0f, i & 2 ? -1.0f : 1.0f, i & 1 ? -1.0f : 1.0f).getOctant(), i);
    EXPECT_EQ(tbVec3(0, -1, -0.0f).getOctant(), tbVec3::OCTANT_PNP);
    EXPECT_EQ(tbVec2(-1, 0).getQuadrant(), tbVec2::QUADRANT_NP);
    EXPECT_EQ(tbVec2(0, -1).getQuadrant(), tbVec2::QUADRANT_PN);
}

TEST(Vec3, AlmostEqualIncludesItsBounds)
{
    EXPECT_TRUE(tbVec3(1.5f, 1, 1).almostEqual(tbVec3(1, 1, 1), 0.5f));
    EXPECT_FALSE(tbVec3(1, 1, 0.49f).almostEqual(tbVec3(1, 1, 1), 0.5f));
    EXPECT_FALSE(tbVec3(NOT_A_NUMBER, 1, 1).almostEqual(tbVec3(1, 1, 1), INF));
}

TEST(Vec2, NormalizeReturnsTinyLengths)
{
    const tbtest::RootScope exact;
    tbVec2 tiny(1e-7f, 0);
    EXPECT_FLOAT_EQ(tiny.normalize(), 1e-7f);
    EXPECT_EQ(tiny, tbVec2(0, 0));
    tbVec2 odd(NOT_A_NUMBER, 1);
    EXPECT_TRUE(std::isnan(odd.normalize()));
    EXPECT_EQ(odd, tbVec2(0, 0));
    tbVec4 v(2, 4, 4, 8);
    EXPECT_FLOAT_EQ(v.normalize(), 10.0f);
    EXPECT_TRUE(near(v, tbVec4(0.2f, 0.4f, 0.4f, 0.8f), 1e-6f));
}
