#include <tamber/render/tbVertexArray.h>

#include <tamber/containers/tbTArray.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/math/tbUByteVec4.h>
#include <tamber/math/tbVec2.h>
#include <tamber/math/tbVec3.h>
#include <tamber/math/tbVec4.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <random>
#include <vector>

namespace
{

using VA = tbVertexArray;

constexpr unsigned NUM_TYPES = 0x80;

using Held = tbRef<tbVertexArray>;

void fillWithNumbers(tbVertexArray& array, unsigned seed)
{
    std::mt19937 random(seed);
    auto* bytes = static_cast<unsigned char*>(array.getData());
    const int words = array.getNum() * array.getVertexSize() / 4;
    const int colorOffset = array.getOffset(VA::VT_COLOR);
    for (int i = 0; i < words; ++i)
    {
        const bool isColor = 4 * i % array.getVertexSize() == colorOffset;
        const auto color = std::uint32_t(random());
        const float number = float(random() % 2000) * 0.25f - 250.0f;
        std::memcpy(bytes + 4 * i, isColor ? static_cast<const void*>(&color) : &number, 4);
    }
}

bool sameBytes(const tbVertexArray& a, const tbVertexArray& b)
{
    return a.getNum() == b.getNum() && a.getVertexType() == b.getVertexType() &&
           std::memcmp(a.getData(), b.getData(), std::size_t(a.getNum() * a.getVertexSize())) == 0;
}

// Of the first vertex.
std::uint32_t colorOf(const tbVertexArray& array)
{
    std::uint32_t color = 0;
    std::memcpy(&color, static_cast<const char*>(array.getData()) + array.getOffset(VA::VT_COLOR), 4);
    return color;
}

tbVertexArray oneColor(std::uint32_t color, unsigned order)
{
    tbVertexArray array(1, VA::VT_POSITION | VA::VT_COLOR | order);
    std::memcpy(static_cast<char*>(array.getData()) + 12, &color, 4);
    return array;
}

} // namespace

TEST(VertexArray, EveryTypeWordHasTheLayoutOfItsComponentsInOrder)
{
    constexpr VA::VERTEX_TYPE COMPONENTS[] = {VA::VT_NORMAL,    VA::VT_COLOR,     VA::VT_TEXCOORD0,
                                              VA::VT_TEXCOORD1, VA::VT_TEXCOORD2, VA::VT_TEXCOORD3};
    constexpr int SIZES[] = {12, 4, 8, 8, 8, 8};
    for (unsigned type = 0; type < NUM_TYPES; ++type)
    {
        SCOPED_TRACE(type);
        const unsigned code = type & VA::TEXCOORD_MASK;
        const int sets = std::popcount(code) == 1 ? std::countr_zero(code >> 3) + 1 : 0;
        const tbVertexArray array(3, type);
        int size = 12;
        for (int i = 0; i < 6; ++i)
        {
            const bool held = i < 2 ? (type & COMPONENTS[i]) != 0 : i - 2 < sets;
            EXPECT_EQ(array.getOffset(COMPONENTS[i]), held ? size : -1) << i;
            size += held ? SIZES[i] : 0;
        }
        EXPECT_EQ(array.getOffset(VA::VT_POSITION), 0);
        EXPECT_EQ(array.getOffset(VA::VERTEX_TYPE(0x80)), -1);
        EXPECT_EQ(array.getVertexSize(), size);
        EXPECT_EQ(array.getNumTexCoordSets(), sets);
        EXPECT_GE(array.getSize(), std::size_t(3 * size));
        const auto* bytes = static_cast<const char*>(array.getData());
        EXPECT_EQ(std::count(bytes, bytes + 3 * size, 0), 3 * size);
    }
}

TEST(VertexArray, ConstructorKeepsTwelveBitsAndDynamicStandsBesideThem)
{
    tbVertexArray array(0, 0xF207);
    EXPECT_EQ(array.getVertexType(), 0x207u);
    EXPECT_EQ(array.getData(), nullptr);
    array.enableDynamic(true);
    EXPECT_TRUE(array.isDynamic());
    EXPECT_EQ(array.getVertexType(), 0x8207u);
    EXPECT_EQ(array.getColorType(), VA::COLOR_ARGB);
    EXPECT_EQ(tbVertexArray(-5, 1).getNum(), 0);
}

TEST(VertexArray, LastReleaseFreesArrayAndVertices)
{
    const std::size_t before = tbMemory::getSize();
    Held array(new tbVertexArray(100, VA::VT_NORMAL));
    Held(array).reset();
    EXPECT_EQ(array->getRefCount(), 1);
    array.reset();
    EXPECT_EQ(tbMemory::getSize(), before);
}

TEST(VertexArray, CopiesTakeVerticesAndLayoutAndNoReferences)
{
    Held source(new tbVertexArray(5, VA::VT_NORMAL | VA::VT_COLOR | VA::COLOR_ARGB));
    source->enableDynamic(true);
    fillWithNumbers(*source, 1);
    const tbVertexArray copy(*source);
    EXPECT_EQ(copy.getRefCount(), 0);
    tbVertexArray assigned(2, VA::VT_POSITION);
    assigned = *source;
    tbArena arena;
    auto* disposable = new (&arena) tbVertexArray(*source, &arena);
    const tbVertexArray* const copies[] = {&copy, &assigned, disposable};
    for (const tbVertexArray* other : copies)
    {
        EXPECT_TRUE(sameBytes(*other, *source));
        EXPECT_NE(other->getData(), source->getData());
    }

    // What lies in the arena is not the heap's to take back.
    EXPECT_EQ(disposable->getSize(), std::size_t(5 * source->getVertexSize()));
    disposable->setNum(9, source->getVertexType());
    EXPECT_EQ(std::memcmp(disposable->getData(), source->getData(), std::size_t(5 * source->getVertexSize())),
              0);
    disposable->~tbVertexArray();
    auto* shrunk = new (&arena) tbVertexArray(*source, &arena);
    shrunk->setNum(2, source->getVertexType());
    shrunk->convert(source.get(), VA::VT_POSITION);
    EXPECT_EQ(shrunk->getNum(), 5);
    shrunk->~tbVertexArray();
}

TEST(VertexArray, ColorsExchangeRedAndBlueOnce)
{
    tbVertexArray array = oneColor(0x11223344, VA::COLOR_ARGB);
    array.convertToABGR();
    EXPECT_EQ(colorOf(array), 0x11443322u);
    EXPECT_EQ(array.getColorType(), VA::COLOR_ABGR);
    array.convertToABGR();
    EXPECT_EQ(colorOf(array), 0x11443322u);
    array.convertToARGB();
    EXPECT_EQ(colorOf(array), 0x11223344u);
    EXPECT_EQ(array.getVertexType(), VA::VT_POSITION | VA::VT_COLOR | VA::COLOR_ARGB);

    array.convert(&array, VA::VT_POSITION | VA::VT_NORMAL | VA::VT_COLOR | VA::COLOR_ABGR); // reads itself
    EXPECT_EQ(array.getVertexSize(), 28);
    EXPECT_EQ(colorOf(array), 0x11443322u);

    tbVertexArray noOrder = oneColor(0x11223344, 0);
    noOrder.convertToARGB();
    noOrder.convertToABGR();
    EXPECT_EQ(colorOf(noOrder), 0x11223344u);

    tbVertexArray noColors(1, VA::VT_POSITION | VA::COLOR_ARGB);
    noColors.convertToABGR();
    EXPECT_EQ(noColors.getColorType(), VA::COLOR_ARGB);
}

TEST(VertexArray, ReadersGiveTheSameColorsForEitherOrder)
{
    const tbVertexArray abgr = oneColor(0x80402010, VA::COLOR_ABGR);
    const tbVertexArray argb = oneColor(0x80102040, VA::COLOR_ARGB);
    for (const tbVertexArray* array : {&abgr, &argb})
    {
        tbTArray<tbUByteVec4> bytes;
        ASSERT_TRUE(array->getColors(bytes));
        EXPECT_EQ(bytes[0], tbUByteVec4(0x10, 0x20, 0x40, 0x80));
        tbTArray<tbVec4> floats;
        ASSERT_TRUE(array->getColors(floats));
        EXPECT_FLOAT_EQ(floats[0][0], 16.0f / 255.0f);
        EXPECT_FLOAT_EQ(floats[0][3], 128.0f / 255.0f);
    }
}

TEST(VertexArray, TexCoordsComeSetBySetAndReadersEmptyTheirArray)
{
    tbVertexArray array(2, VA::VT_POSITION | VA::VT_TEXCOORD1);
    auto* floats = static_cast<float*>(array.getData());
    for (int i = 0; i < 14; ++i)
        floats[i] = float(i);
    tbTArray<tbVec2> texCoords;
    ASSERT_EQ(array.getTexCoords(texCoords), 2);
    const std::vector<tbVec2> expected{tbVec2(3, 4), tbVec2(10, 11), tbVec2(5, 6), tbVec2(12, 13)};
    EXPECT_TRUE(std::equal(texCoords.begin(), texCoords.end(), expected.begin(), expected.end()));

    const tbVertexArray bare(2, VA::VT_POSITION);
    tbTArray<tbVec3> normals;
    normals.add(tbVec3(1, 2, 3));
    tbTArray<tbVec4> colors;
    EXPECT_FALSE(bare.getNormals(normals) || bare.getColors(colors));
    EXPECT_EQ(normals.getNum(), 0);
    EXPECT_EQ(bare.getTexCoords(texCoords), 0);
    EXPECT_EQ(texCoords.getNum(), 0);
}

// Every layout to every layout, against the readers.
TEST(VertexArray, ConvertKeepsWhatBothHaveAndFillsInTheRest)
{
    constexpr unsigned ORDERS[3] = {0, VA::COLOR_ABGR, VA::COLOR_ARGB};
    for (unsigned pair = 0; pair < 9 * NUM_TYPES * NUM_TYPES; pair += 7)
    {
        const unsigned fromOrder = ORDERS[pair % 3];
        const unsigned toOrder = ORDERS[pair / 3 % 3];
        tbVertexArray from(3, (pair / 9 % NUM_TYPES) | fromOrder);
        fillWithNumbers(from, pair);
        tbVertexArray to;
        to.convert(&from, (pair / 9 / NUM_TYPES) | toOrder);
        ASSERT_EQ(to.getNum(), 3);
        ASSERT_EQ(unsigned(to.getColorType()), toOrder ? toOrder : fromOrder);

        tbTArray<tbVec3> a, b;
        from.getVertices(a);
        to.getVertices(b);
        ASSERT_EQ(a[2], b[2]);
        if (to.getNormals(b))
        {
            ASSERT_EQ(b[1], from.getNormals(a) ? a[1] : tbVec3(0, 0, 1));
        }
        tbTArray<tbUByteVec4> c, d;
        if (to.getColors(d))
        {
            ASSERT_EQ(d[1], from.getColors(c) ? c[1] : tbUByteVec4(255, 255, 255, 255));
        }
        tbTArray<tbVec2> s, t;
        const int fromSets = from.getTexCoords(s);
        const int toSets = to.getTexCoords(t);
        for (int i = 0; i < 3 * toSets; ++i)
            ASSERT_EQ(t[i], i < 3 * fromSets ? s[i] : tbVec2(0, 0));
    }
}

TEST(VertexArray, SetNumKeepsBytesAsTheyLieAndZeroesTheRest)
{
    tbVertexArray array(4, VA::VT_POSITION | VA::COLOR_ARGB);
    array.enableDynamic(true);
    auto* floats = static_cast<float*>(array.getData());
    for (int i = 0; i < 12; ++i)
        floats[i] = float(i + 1);
    array.setNum(40, 0xF00 | VA::VT_POSITION | VA::VT_NORMAL);
    EXPECT_EQ(array.getVertexType(), 0x8000u | VA::COLOR_ARGB | VA::VT_POSITION | VA::VT_NORMAL);
    floats = static_cast<float*>(array.getData());
    EXPECT_EQ(floats[11], 12.0f);
    for (int i = 12; i < 40 * 6; ++i)
        ASSERT_EQ(floats[i], 0.0f);

    array.setNum(2, VA::VT_POSITION);
    EXPECT_EQ(array.getNum(), 2);
    EXPECT_EQ(static_cast<const float*>(array.getData())[5], 6.0f);
    array.setNum(0, VA::VT_POSITION);
    EXPECT_EQ(array.getData(), nullptr);
    array.setNum(1, VA::VT_POSITION);
    EXPECT_EQ(static_cast<const float*>(array.getData())[0], 0.0f);
}
