#include <tamber/volume/tbBox.h>

#include <tamber/volume/tbSphere.h>
#include <tests/support/Near.h>
#include <tests/support/RandomValues.h>

#include <gtest/gtest.h>

#include <limits>

using tbtest::near;

namespace
{

tbBox cube()
{
    return tbBox(tbVec3(-1, -1, -1), tbVec3(1, 1, 1));
}

} // namespace

TEST(Box, IsEmptyByItsXAlone)
{
    constexpr float MOST = std::numeric_limits<float>::max();
    EXPECT_EQ(tbBox(), tbBox(tbVec3(MOST, MOST, MOST), tbVec3(-MOST, -MOST, -MOST)));
    EXPECT_TRUE(tbBox().isEmpty());
    EXPECT_FALSE(tbBox(tbVec3(0, 5, 5), tbVec3(0, -5, -5)).isEmpty());
    tbBox point(tbVec3(0, 0, 0), tbVec3(0, 0, 0));
    EXPECT_EQ(point.contains(tbVec3(0, 0, 0)), tbVolume::INSIDE);
    point.extendAround(cube());
    EXPECT_EQ(point, cube());
}

TEST(Box, TouchingIsPartialAndSpheresAcrossAMaximumFaceCountAsOutside)
{
    EXPECT_EQ(cube().contains(cube()), tbVolume::INSIDE);
    EXPECT_EQ(cube().contains(tbBox(tbVec3(1, 1, 1), tbVec3(2, 2, 2))), tbVolume::PARTIAL);
    EXPECT_EQ(cube().contains(tbSphere(tbVec3(0, 0, 0), 1)), tbVolume::INSIDE);
    EXPECT_EQ(cube().contains(tbSphere(tbVec3(-1.5f, 0, 0), 0.6f)), tbVolume::PARTIAL);
    EXPECT_EQ(cube().contains(tbSphere(tbVec3(1.5f, 0, 0), 0.6f)), tbVolume::OUTSIDE);
    EXPECT_TRUE(cube().intersects(tbSphere(tbVec3(1.5f, 0, 0), 0.6f)));
    EXPECT_EQ(cube().contains(tbSphere(tbVec3(50, 0, -1), 0.1f)),
              tbVolume::PARTIAL); // level with a minimum face
}

TEST(Box, EnclosesItsTransformedCornersTightly)
{
    tbtest::Random random(21);
    for (int i = 0; i < 300; ++i)
    {
        tbBox source = random.box(5);
        tbMatrix m = random.place(10);
        m.preScale(random.number(-3, 3), 1.5f, random.number(0.1f, 3));
        tbBox expected;
        for (int octant = 0; octant < 8; ++octant)
        {
            tbVec3 corner;
            source.getCorner(tbVec3::OCTANT(octant), corner);
            expected.extendAround(corner * m);
        }
        tbBox box;
        box.xform(source, m);
        EXPECT_TRUE(near(*box.getMin(), *expected.getMin()));
        EXPECT_TRUE(near(*box.getMax(), *expected.getMax()));
        source.xform(m);
        EXPECT_EQ(source, box);
    }
    tbBox empty;
    empty.xform(random.place(10));
    EXPECT_EQ(empty, tbBox());
}
