// What holds for every kind of volume against every other.
#include <tamber/volume/tbVolume.h>

#include <tamber/kernel/tbArena.h>
#include <tamber/math/tbUByteVec3.h>
#include <tamber/math/tbUByteVec4.h>
#include <tamber/volume/tbFrustum.h>
#include <tamber/volume/tbPlane.h>
#include <tamber/volume/tbRay.h>
#include <tamber/volume/tbSphere.h>
#include <tests/support/Matrices.h>
#include <tests/support/Near.h>
#include <tests/support/RandomValues.h>
#include <tests/support/RootScope.h>
#include <tests/support/StoredValue.h>

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <memory>
#include <vector>

using tbtest::NOT_A_NUMBER;

namespace
{

using Volume = std::unique_ptr<tbVolume>;

Volume draw(tbVolume::TYPE type, tbtest::Random& random)
{
    switch (type)
    {
    case tbVolume::PLANE:
        return Volume(new tbPlane(random.direction(), random.number(-3, 3)));
    case tbVolume::BOX:
        return Volume(new tbBox(random.box(5)));
    case tbVolume::SPHERE:
        return Volume(new tbSphere(random.point(5), random.number(0.5f, 4)));
    default:
    {
        std::unique_ptr<tbFrustum> frustum(new tbFrustum);
        if (random.index(2) == 0)
            frustum->makeFOV(random.number(20, 100), random.number(20, 100), random.number(0.5f, 1),
                             random.number(2, 6));
        else
            frustum->makeOrtho(random.number(-3, -1), random.number(1, 3), random.number(-3, -1),
                               random.number(1, 3), random.number(-3, -1), random.number(1, 3));
        frustum->tbFrustum::xform(random.place(4));
        return frustum;
    }
    }
}

// A point within a volume, a little away from its surface.
tbVec3 pointIn(const tbVolume& volume, tbtest::Random& random)
{
    constexpr float SHRINK = 0.998f;
    tbVec3 center;
    volume.getCenter(center);
    switch (volume.getType())
    {
    case tbVolume::PLANE:
    {
        const tbVec3& normal = *static_cast<const tbPlane&>(volume).getNormal();
        const tbVec3 p = random.point(10);
        const float height = normal.dot(p) - static_cast<const tbPlane&>(volume).getOffset();
        return p - normal * (height + random.number(1e-3f, 10));
    }
    case tbVolume::BOX:
    {
        const tbVec3 reach = *static_cast<const tbBox&>(volume).getMax() - center;
        const tbVec3 p = random.point(SHRINK);
        return center + tbVec3(p.x * reach.x, p.y * reach.y, p.z * reach.z);
    }
    case tbVolume::SPHERE:
        return center + random.direction() *
                            (static_cast<const tbSphere&>(volume).getRadius() * random.number(0, SHRINK));
    default:
    {
        const tbVec3* corners = static_cast<const tbFrustum&>(volume).getCorners();
        tbVec3 sum(0, 0, 0);
        float weights = 0.0f;
        for (int i = 0; i < tbFrustum::NUM_CORNERS; ++i)
        {
            const float weight = random.number(0.001f, 1) * (random.index(3) == 0 ? 10.0f : 1.0f);
            sum.addScaled(weight, corners[i]);
            weights += weight;
        }
        return sum / weights;
    }
    }
}

// Pairs whose answers are looser on purpose: two corners stand for a box in a sphere, three faces of a box for a
// sphere outside, and what straddles the face of a frustum counts as inside.
bool insideIsLoose(tbVolume::TYPE a, tbVolume::TYPE b)
{
    return (a == tbVolume::SPHERE && b == tbVolume::BOX) ||
           (a == tbVolume::FRUSTUM && (b == tbVolume::SPHERE || b == tbVolume::BOX));
}

bool outsideIsLoose(tbVolume::TYPE a, tbVolume::TYPE b)
{
    return a == tbVolume::BOX && b == tbVolume::SPHERE;
}

template <class Value>
void expectStored(const Value& value, int size)
{
    Value back;
    EXPECT_EQ(tbtest::storeAndLoad(value, back), size);
    EXPECT_TRUE(back == value);
}

using Types = std::initializer_list<tbVolume::TYPE>;
constexpr Types TYPES = {tbVolume::PLANE, tbVolume::BOX, tbVolume::SPHERE, tbVolume::FRUSTUM};
constexpr Types BOUNDED = {tbVolume::BOX, tbVolume::SPHERE, tbVolume::FRUSTUM};

constexpr float MOST = std::numeric_limits<float>::max();
constexpr float INF = std::numeric_limits<float>::infinity();
constexpr float SPECIAL[] = {0, -0.0f, 1, -1, 1e-30f, 1e-45f, MOST, -MOST, INF, -INF, NOT_A_NUMBER};

} // namespace

TEST(Volume, AnswersAgreeWithPointsOfBoth)
{
    const tbtest::RootScope exact;
    tbtest::Random random(40);
    std::map<std::pair<tbVolume::TYPE, tbVolume::TYPE>, int> partial;
    for (int i = 0; i < 400 * 16; ++i)
    {
        const tbVolume::TYPE typeA = TYPES.begin()[i % 4], typeB = TYPES.begin()[i / 4 % 4];
        SCOPED_TRACE(testing::Message() << typeA << " and " << typeB);
        const Volume a = draw(typeA, random);
        const Volume b = draw(typeB, random);
        const tbVolume::CONTAINMENT answer = a->contains(*b);
        const bool touch = a->intersects(*b);
        partial[{typeA, typeB}] += answer == tbVolume::PARTIAL ? 1 : 0;
        for (int j = 0; j < 30; ++j)
        {
            const bool held = a->contains(pointIn(*b, random)) == tbVolume::INSIDE;
            EXPECT_TRUE(!held || touch);
            EXPECT_TRUE(!held || outsideIsLoose(typeA, typeB) || answer != tbVolume::OUTSIDE);
            EXPECT_TRUE(held || insideIsLoose(typeA, typeB) || answer != tbVolume::INSIDE);
        }
        EXPECT_EQ(touch, b->intersects(*a));
    }
    for (const auto& [types, count] : partial)
        EXPECT_GT(count, 0) << types.first << " and " << types.second;
}

TEST(Volume, RaysAgreeWithTheirPoints)
{
    const tbtest::RootScope exact;
    tbtest::Random random(41);
    for (const tbVolume::TYPE type : TYPES)
    {
        int counts[3] = {};
        for (int i = 0; i < 1000; ++i)
        {
            const Volume volume = draw(type, random);
            const tbRay ray(random.point(4), random.direction(), random.number(-1, 4));
            const tbVolume::CONTAINMENT answer = volume->contains(ray);
            ++counts[answer];
            const float length = ray.isUnbounded() ? 1000.0f : ray.getLength();
            for (int j = 0; j < 50; ++j)
            {
                const tbVec3 p = *ray.getOrigin() + *ray.getDirection() * (length * random.number(0, 0.999f));
                const bool held = volume->contains(p) == tbVolume::INSIDE;
                EXPECT_NE(answer, held ? tbVolume::OUTSIDE : tbVolume::INSIDE) << type;
            }
        }
        for (const int count : counts)
            EXPECT_GT(count, 10) << type;
    }
}

TEST(Volume, GrowsAroundEverythingAndKeepsWhatItHeld)
{
    const tbtest::RootScope exact;
    tbtest::Random random(42);
    for (int i = 0; i < 100 * 9; ++i)
    {
        const Volume b = draw(BOUNDED.begin()[i % 3], random);
        const Volume before = draw(BOUNDED.begin()[i / 3 % 3], random);
        SCOPED_TRACE(testing::Message() << before->getType() << " around " << b->getType());
        const Volume grown(before->createCopy());
        const Volume fresh(before->createCopy());
        grown->extendAround(*b);
        fresh->makeEmpty();
        fresh->extendAround(*b);
        for (int j = 0; j < 20; ++j)
        {
            const tbVec3 p = pointIn(*b, random);
            EXPECT_EQ(grown->contains(p), tbVolume::INSIDE);
            EXPECT_EQ(fresh->contains(p), tbVolume::INSIDE);
            EXPECT_EQ(grown->contains(pointIn(*before, random)), tbVolume::INSIDE);
        }
        grown->extendAround(tbRay(tbVec3(0, 0, 0), tbVec3(9, 9, 9)));
        EXPECT_EQ(grown->contains(tbVec3(8.9f, 8.9f, 8.9f)), tbVolume::INSIDE);
    }
}

TEST(Volume, EmptyOperandsComeFirst)
{
    tbtest::Random random(43);
    for (const tbVolume::TYPE typeA : BOUNDED)
    {
        const Volume empty = draw(typeA, random);
        empty->makeEmpty();
        EXPECT_EQ(empty->contains(tbVec3(0, 0, 0)), tbVolume::OUTSIDE);
        EXPECT_EQ(empty->contains(tbRay(tbVec3(0, -9, 0), tbVec3(0, 9, 0))), tbVolume::OUTSIDE);
        EXPECT_FALSE(empty->intersects(tbRay(tbVec3(0, -9, 0), tbVec3(0, 9, 0))));
        for (const tbVolume::TYPE typeB : TYPES)
        {
            for (int i = 0; i < 20; ++i)
            {
                const Volume other = draw(typeB, random);
                const Volume same(other->createCopy());
                EXPECT_EQ(empty->contains(*other), tbVolume::OUTSIDE);
                EXPECT_EQ(other->contains(*empty), tbVolume::OUTSIDE);
                EXPECT_FALSE(empty->intersects(*other));
                EXPECT_FALSE(other->intersects(*empty));
                other->extendAround(*empty);
                EXPECT_TRUE(*other == *same);
                EXPECT_EQ(other->contains(tbRay()), tbVolume::OUTSIDE);
                other->extendAround(tbRay());
                EXPECT_TRUE(*other == *same);
            }
        }
        empty->xform(random.place(5));
        EXPECT_TRUE(empty->isEmpty());
    }
}

TEST(Volume, CopiesAreEqualAndOfTheirType)
{
    tbtest::Random random(44);
    tbArena arena;
    for (const tbVolume::TYPE type : TYPES)
    {
        const Volume volume = draw(type, random);
        const Volume copy(volume->createCopy());
        EXPECT_TRUE(*copy == *volume);
        const tbVolume* disposable = volume->createDisposableCopy(&arena);
        EXPECT_TRUE(*disposable == *volume);
        const Volume other = draw(type, random);
        EXPECT_TRUE(*other != *volume);
        *other = *volume;
        EXPECT_TRUE(*other == *volume);
        for (const tbVolume::TYPE foreign : TYPES)
        {
            if (foreign != type)
                copy->copy(*draw(foreign, random));
        }
        EXPECT_TRUE(*copy == *volume);
    }
}

TEST(Volume, ValuesGoThroughFilesPacked)
{
    expectStored(tbUByteVec3(1, 2, 255), 3);
    expectStored(tbUByteVec4(1, 2, 3, 255), 4);
    expectStored(tbVec3(1, -2, 1e30f), 12);
    expectStored(tbVec4(1, -2, 1e30f, 4), 16);
    expectStored(tbSphere(tbVec3(1, 2, 3), 4), 16);
    expectStored(tbBox(tbVec3(1, 2, 3), tbVec3(4, 5, 6)), 24);
    expectStored(tbPlane(tbVec3(-1, 2, -2), 7), 20);
    expectStored(tbRay(tbVec3(1, 2, 3), tbVec3(0, 0, 1), -1), 28);
}

// Nothing is asked of the answers but that they come.
TEST(Volume, AnyFloatsWillDo)
{
    std::vector<Volume> volumes;
    std::vector<tbRay> rays;
    for (const float a : SPECIAL)
    {
        for (const float b : SPECIAL)
        {
            volumes.emplace_back(new tbSphere(tbVec3(a, 0, b), b));
            volumes.emplace_back(new tbBox(tbVec3(a, a, b), tbVec3(b, a, 1)));
            volumes.emplace_back(new tbPlane(tbVec3(a, b, 1), b));
            auto* frustum = new tbFrustum;
            volumes.emplace_back(frustum);
            frustum->makePersp(a, b, -1, 1, b, a);
            rays.emplace_back(tbVec3(a, b, 0), tbVec3(b, a, 1), b);
        }
    }
    int answers = 0;
    for (std::size_t i = 0; i < volumes.size(); ++i)
    {
        tbVolume& a = *volumes[i];
        const tbVolume& b = *volumes[(i * 7919 + 13) % volumes.size()];
        const tbRay& ray = rays[i % rays.size()];
        tbVec3 p;
        a.getCenter(p);
        answers += a.contains(b) + a.contains(ray) + a.contains(p) + a.intersects(b) + a.intersects(ray);
        answers += ray.intersects(a) + int(ray.intersects(p, tbVec3(1, 0, 0), tbVec3(0, 1, 0), p) > 0);
        const Volume grown(a.createCopy());
        grown->extendAround(b);
        grown->extendAround(ray);
        grown->xform(tbtest::scaling(NOT_A_NUMBER, 0, MOST));
    }
    EXPECT_GT(answers, 0);
}
