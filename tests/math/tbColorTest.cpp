// Colours: the conversions of tbVec4 and the byte vectors.
#include <tamber/math/tbUByteVec3.h>
#include <tamber/math/tbUByteVec4.h>

#include <tests/support/Near.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

using tbtest::near;

namespace
{

tbVec4 toRGB(const tbVec4& hsv)
{
    tbVec4 rgb(7, 7, 7, 7);
    hsv.HSVtoRGB(rgb);
    return rgb;
}

} // namespace

TEST(Color, HueArrivesForRedsOnly)
{
    // The sixth goes to the saturation for greens and to the value for blues; the hue is the old one times 60.
    const tbVec4 cases[][2] = {
        {{1, 0.5f, 0, 1}, {30, 1, 1, 1}},          {{1, 0, 0.5f, 1}, {330, 1, 1, 1}},
        {{0, 1, 0.5f, 1}, {420, 2.5f, 1, 1}},      {{0.5f, 0, 1, 1}, {420, 1, 4.5f, 1}},
        {{0.5f, 0.5f, 0.5f, 1}, {-1, 0, 0.5f, 1}}, {{0, 0, 0, 0.25f}, {-1, 0, 0, 0.25f}}};
    for (const auto& c : cases)
    {
        tbVec4 hsv(7, 7, 7, 7);
        c[0].RGBtoHSV(hsv);
        EXPECT_TRUE(near(hsv, c[1])) << c[1][0];
    }
    tbVec4 inPlace(0.25f, 1, 0, 1);
    inPlace.RGBtoHSV(inPlace);
    EXPECT_TRUE(near(inPlace, tbVec4(15, 1.75f, 1, 1)));
}

TEST(Color, EveryHueBecomesItsColor)
{
    // A channel stands at full for 120 degrees around its hue and falls off over 60 degrees on either side.
    const auto channel = [](float hue, float own)
    {
        const float apart = std::fabs(std::remainder(hue - own, 360.0f));
        return std::clamp(2.0f - apart / 60.0f, 0.0f, 1.0f);
    };
    for (int hue = 0; hue <= 360; hue += 5)
    {
        const float h = float(hue);
        EXPECT_TRUE(
            near(toRGB(tbVec4(h, 1, 1, 1)), tbVec4(channel(h, 0), channel(h, 120), channel(h, 240), 1)))
            << hue;
    }
}

TEST(Color, HuesOffTheCircleLeaveTheColorAndGreysHaveNone)
{
    for (const float hue : {-1.0f, 361.0f, 3e38f, std::numeric_limits<float>::quiet_NaN()})
        EXPECT_EQ(toRGB(tbVec4(hue, 1, 1, 0.5f)), tbVec4(7, 7, 7, 0.5f));
    EXPECT_EQ(toRGB(tbVec4(-1, 0, 0.5f, 1)), tbVec4(0.5f, 0.5f, 0.5f, 1));
    EXPECT_EQ(toRGB(tbVec4(120, 0, 0.5f, 1)), tbVec4(0, 0, 0, 1));
}

TEST(UByteVec, SumsWrapAndProductsAreCutOneByOne)
{
    EXPECT_EQ(tbUByteVec3(200, 10, 0) + tbUByteVec3(100, 10, 0), tbUByteVec3(44, 20, 0));
    EXPECT_EQ(tbUByteVec4(0, 1, 2, 3) - tbUByteVec4(1, 1, 1, 1), tbUByteVec4(255, 0, 1, 2));
    EXPECT_EQ(tbUByteVec3(3, 200, 1) * 1.5f, tbUByteVec3(4, 44, 1));
    EXPECT_EQ(tbUByteVec3(3, 200, 1) * -1.0f, tbUByteVec3(253, 56, 255));
    EXPECT_EQ(tbUByteVec4(9, 8, 7, 6) / 2.0f, tbUByteVec4(4, 4, 3, 3));
    tbUByteVec3 c;
    c.combine(0.5f, tbUByteVec3(1, 3, 5), 0.5f, tbUByteVec3(1, 3, 5));
    EXPECT_EQ(c, tbUByteVec3(0, 2, 4));
    c.addScaled(0.5f, tbUByteVec3(3, 3, 255));
    EXPECT_EQ(c, tbUByteVec3(1, 3, 131));
    c.scale(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(c, tbUByteVec3(0, 0, 0));
    c.scale(-std::numeric_limits<float>::infinity(), tbUByteVec3(1, 2, 3));
    EXPECT_EQ(c, tbUByteVec3(0, 0, 0));
}

TEST(UByteVec, TakesFloatsBytesAndWords)
{
    tbUByteVec3 c;
    c.set(tbVec3(1.0f, 0.5f, 0.999f));
    EXPECT_EQ(c, tbUByteVec3(255, 127, 254));
    c.set(0x80FF01u);
    EXPECT_EQ(c, tbUByteVec3(0x01, 0xFF, 0x80));
    tbUByteVec4 d;
    d.set(tbVec3(0, 0.25f, 2.0f));
    EXPECT_EQ(d, tbUByteVec4(0, 63, 254, 255));
    d.set(tbVec4(0, 0, 0, 0.5f));
    EXPECT_EQ(d.a, 127);
    d.set(0xFF804020u);
    EXPECT_EQ(d, tbUByteVec4(0x20, 0x40, 0x80, 0xFF));
}

TEST(UByteVec, ToleranceAboveADarkColorFails)
{
    const tbUByteVec3 dark(3, 3, 3);
    EXPECT_TRUE(dark.almostEqual(dark, 0));
    EXPECT_TRUE(dark.almostEqual(dark, 3));
    EXPECT_FALSE(dark.almostEqual(dark, 5)); // the lower bound wraps
    EXPECT_TRUE(tbUByteVec4(100, 100, 100, 90).almostEqual(tbUByteVec4(100, 100, 100, 100), 10));
    EXPECT_FALSE(tbUByteVec4(100, 100, 100, 89).almostEqual(tbUByteVec4(100, 100, 100, 100), 10));
}
