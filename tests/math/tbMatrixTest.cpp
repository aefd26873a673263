#include <tamber/math/tbMatrix.h>

#include <tamber/volume/tbPlane.h>
#include <tests/support/Matrices.h>
#include <tests/support/Messages.h>
#include <tests/support/Near.h>
#include <tests/support/RandomValues.h>
#include <tests/support/RootScope.h>
#include <tests/support/StoredValue.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using tbtest::identity;
using tbtest::near;
using tbtest::rotation;
using tbtest::scaling;
using tbtest::translation;
using tbtest::turn;

namespace
{

using Type = unsigned;
constexpr Type IDENT = tbMatrix::MATRIX_IDENT;
constexpr Type ROT = tbMatrix::MATRIX_ROT;
constexpr Type XLATE = tbMatrix::MATRIX_XLATE;
constexpr Type UNISCALE = tbMatrix::MATRIX_UNISCALE;
constexpr Type SCALE = tbMatrix::MATRIX_SCALE;
constexpr Type PROJ = tbMatrix::MATRIX_PROJ;

// Sums in the order of the rows, by nothing but the definition.
tbMatrix productByDefinition(const tbMatrix& a, const tbMatrix& b)
{
    tbMatrix m;
    for (int i = 0; i < 16; ++i)
    {
        double sum = 0.0;
        for (int k = 0; k < 4; ++k)
            sum += double(a[i / 4][k]) * double(b[k][i % 4]);
        m[i / 4][i % 4] = float(sum);
    }
    m.setType(PROJ);
    return m;
}

// A matrix that shows everything that `type` claims.
tbMatrix matrixOf(Type type, tbtest::Random& random)
{
    tbMatrix m = identity();
    if (type & SCALE)
        m = productByDefinition(
            m, scaling(random.number(0.5f, 3), random.number(-3, -0.5f), random.number(3, 4)));
    if (type & UNISCALE)
    {
        const float s = random.number(1.5f, 3);
        m = productByDefinition(m, scaling(s, s, s));
    }
    if (type & ROT)
        m = productByDefinition(
            m, turn(random.number(-180, 180), random.number(-90, 90), random.number(-180, 180)));
    if (type & XLATE)
        m.setXYZ(random.point(10));
    if (type & PROJ)
        m.setCol(3, random.number(-1, 1), random.number(-1, 1), random.number(-1, 1), random.number(-1, 1),
                 PROJ);
    m.setType(type);
    return m;
}

// All types that a matrix can have.
std::vector<Type> allTypes()
{
    std::vector<Type> types = {IDENT};
    for (Type type = 2; type < 64; type += 2)
        types.push_back(type);
    return types;
}

void expectInvertible(const tbMatrix& m)
{
    tbMatrix inverse, inPlace(m);
    EXPECT_TRUE(inverse.invert(m) && inPlace.invert(inPlace));
    EXPECT_TRUE(near(productByDefinition(m, inverse), identity())) << "type " << m.getType();
    EXPECT_EQ(inverse.getType(), m.getType());
    EXPECT_TRUE(near(inPlace, inverse, 0.0f));
}

} // namespace

TEST(Matrix, MakersStoreTheirTypesAndOthersAreRecognised)
{
    const struct
    {
        tbMatrix m;
        Type type;
    } cases[] = {{identity(), IDENT},
                 {turn(30, 20, 10), ROT},
                 {rotation(5e-7f, {1, 0, 0}), IDENT},
                 {turn(30, 20, 10) * translation(1, 0, 0), ROT | XLATE},
                 {scaling(1, 1, 1), IDENT},
                 {scaling(2, 2, 2), UNISCALE},
                 {scaling(1, 2, 1), SCALE},
                 {translation(5e-7f, 0, 0), IDENT},
                 {translation(0, 0, 1e-5f), XLATE}};
    for (const auto& c : cases)
    {
        EXPECT_EQ(c.m.getType(), c.type);
        tbMatrix m(c.m);
        m.setType(0);
        EXPECT_EQ(m.getType(), c.type);
    }
    tbMatrix m = scaling(1, -1, 1);
    m.setType(0);
    EXPECT_EQ(m.getType(), ROT); // a mirror turns, though nothing stands off the diagonal
    m = identity();
    m.setCol(3, 0, 0, 0, 2, 0);
    EXPECT_EQ(m.getType(), PROJ);
    m = identity();
    m.setRow(3, tbtest::NOT_A_NUMBER, 0, 0, 1, 0);
    EXPECT_EQ(m.getType(), XLATE);
    m = translation(1, 2, 3);
    m.setXYZ(0, 0, 0);
    EXPECT_EQ(m.getType(), IDENT);
    m = scaling(2, 3, 4) * translation(1, 2, 3);
    m.setHPR(0, 0, 0);
    EXPECT_EQ(m, translation(1, 2, 3));
    EXPECT_EQ(m.getType(), XLATE);
    m.setHPR(90, 0, 0);
    EXPECT_EQ(m.getType(), ROT | XLATE);
}

TEST(Matrix, ReducedProductsEqualTheFullOne)
{
    tbtest::Random random(3);
    for (const Type typeA : allTypes())
    {
        for (const Type typeB : allTypes())
        {
            const tbMatrix a = matrixOf(typeA, random);
            const tbMatrix b = matrixOf(typeB, random);
            const tbMatrix expected = productByDefinition(a, b);
            const Type type = typeA == IDENT ? typeB : typeB == IDENT ? typeA : typeA | typeB;
            tbMatrix product;
            product.mult(a, b);
            EXPECT_TRUE(near(product, expected, 2e-4f)) << typeA << " by " << typeB;
            EXPECT_EQ(product.getType(), type);
            tbMatrix first(a);
            first.postMult(b);
            tbMatrix second(b);
            second.preMult(a);
            EXPECT_TRUE(near(first, product, 0.0f) && near(second, product, 0.0f))
                << typeA << " by " << typeB;
        }
    }
}

TEST(Matrix, PreAndPostFormsAreProducts)
{
    const std::pair<tbMatrix, Type> factors[] = {
        {translation(1, 2, 3), XLATE}, {scaling(1, 2, 3), SCALE}, {rotation(40, {1, 2, 3}), ROT}};
    tbtest::Random random(5);
    for (const Type type : allTypes())
    {
        const tbMatrix m = matrixOf(type, random);
        tbMatrix pre[] = {m, m, m}, post[] = {m, m, m};
        pre[0].preTrans(1, 2, 3);
        post[0].postTrans(1, 2, 3);
        pre[1].preScale(1, 2, 3);
        post[1].postScale(1, 2, 3);
        pre[2].preRot(40, 1, 2, 3);
        post[2].postRot(40, tbVec3(1, 2, 3));
        for (int i = 0; i < 3; ++i)
        {
            const auto& [factor, bit] = factors[i];
            EXPECT_TRUE(near(pre[i], productByDefinition(factor, m), 2e-4f)) << type << ' ' << i;
            EXPECT_TRUE(near(post[i], productByDefinition(m, factor), 2e-4f)) << type << ' ' << i;
            EXPECT_EQ(pre[i].getType(), (type & ~IDENT) | bit);
            EXPECT_EQ(post[i].getType(), (type & ~IDENT) | bit);
        }
    }
}

TEST(Matrix, NegligibleStepsChangeNothing)
{
    tbMatrix m = identity();
    m.preTrans(9e-7f, 0, 0);
    m.postTrans(0, 9e-7f, 0);
    m.preRot(1e-6f, 0, 0, 0);
    m.postScale(1.0000005f, 1, 1);
    EXPECT_TRUE(near(m, identity(), 0.0f));
    EXPECT_EQ(m.getType(), IDENT);
}

TEST(Matrix, InvertsEveryType)
{
    tbtest::Random random(6);
    for (const Type type : allTypes())
    {
        if ((type & PROJ) != 0)
            continue; // drawn below: not every one has an inverse
        for (int i = 0; i < 20; ++i)
            expectInvertible(matrixOf(type, random));
    }
    for (int i = 0; i < 200; ++i)
    {
        tbMatrix m = matrixOf(ROT | XLATE, random);
        for (int j = 0; j < 4; ++j)
            m[j][3] = random.number(-0.1f, 0.1f) + (j == 3 ? 3.0f : 0.0f);
        m.setType(0);
        expectInvertible(m);
    }
}

TEST(Matrix, RowsOfZerosGiveTheIdentityAndAMessageAndDependentOnesDoNot)
{
    tbMatrix row = turn(30, 20, 10);
    row.setRow(1, 0, 0, 0, 0, 0);
    const tbMatrix tiny = scaling(1e-25f, 1e-25f, 1e-25f) * turn(30, 20, 10) * translation(1, 2, 3);
    tbtest::expectMessage("Singular Matrix.  Undefined results.", 2);
    tbMatrix m;
    for (const tbMatrix& singular : {row, tiny})
    {
        m = singular;
        EXPECT_FALSE(m.invert(m));
        EXPECT_EQ(m, identity());
        EXPECT_EQ(m.getType(), IDENT);
    }
    const float dependent[] = {1, 2, 0, 0, 2, 4, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    EXPECT_TRUE(m.invert(tbMatrix(dependent, 0))); // a tiny pivot takes the place of 0
    EXPECT_TRUE(m.invert(scaling(0, 1, 1)));
    EXPECT_TRUE(std::isinf(m[0][0]));
}

TEST(Matrix, RotationsTurnByTheRightHand)
{
    EXPECT_TRUE(near(tbVec3(1, 0, 0) * rotation(90, {0, 0, 7}), tbVec3(0, 1, 0)));
    EXPECT_TRUE(near(tbVec3(0, 1, 0) * rotation(90, {1, 0, 0}), tbVec3(0, 0, 1)));
    const tbMatrix roll = rotation(10, {0, 1, 0}), pitch = rotation(20, {1, 0, 0});
    EXPECT_TRUE(near(turn(30, 20, 10), roll * pitch * rotation(30, {0, 0, 1}), 1e-6f));
}

TEST(Matrix, AnglesComeBack)
{
    tbtest::Random random(12);
    tbVec3 hpr;
    for (int i = 0; i < 2000; ++i)
    {
        const tbVec3 angles(random.number(-175, 175), random.number(-80, 80), random.number(-175, 175));
        turn(angles.x, angles.y, angles.z).getHPR(hpr);
        EXPECT_TRUE(near(hpr, angles, 2e-3f));
    }
    identity().getHPR(hpr);
    EXPECT_FALSE(std::signbit(hpr.x) || std::signbit(hpr.y) || std::signbit(hpr.z));
    turn(40, 90, 0).getHPR(hpr); // straight up: the turn shows as heading and roll together
    EXPECT_TRUE(near(turn(hpr.x, hpr.y, hpr.z), turn(40, 90, 0), 1e-4f));
}

TEST(Matrix, FramesFollowADirection)
{
    tbtest::Random random(7);
    for (int i = 0; i < 500; ++i)
    {
        const tbVec3 ahead = random.direction();
        const tbVec3 up = random.direction();
        tbMatrix m;
        m.makeAlongDirection(ahead * 3.0f, up * 5.0f);
        tbVec3 direction;
        m.getDirection(direction);
        EXPECT_TRUE(near(direction, ahead, 1e-5f));
        expectInvertible(m); // by the transpose, so the axes are square to each other
        EXPECT_NEAR(tbVec3(m[0][0], m[0][1], m[0][2]).dot(up), 0.0f, 1e-4f);
        EXPECT_GE(tbVec3(m[2][0], m[2][1], m[2][2]).dot(up), -1e-5f);
    }
    const std::pair<tbVec3, tbMatrix> cases[] = {{{0, 0, 2}, turn(0, 90, 0)},
                                                 {{0, 0, -2}, turn(0, -90, 0)},
                                                 {{-1, 1, 0}, turn(45, 0, 0)},
                                                 {{0, 0, 0}, identity()}};
    for (const auto& [ahead, expected] : cases)
    {
        tbMatrix m;
        m.makeAlongDirection(ahead);
        EXPECT_TRUE(near(m, expected));
    }
}

TEST(Matrix, ProjectsOntoAPlaneFromALight)
{
    const tbtest::RootScope exact;
    tbtest::Random random(8);
    for (int i = 0; i < 200; ++i)
    {
        const tbPlane plane(random.direction(), random.number(-2, 2));
        const tbVec3 light = *plane.getNormal() * (plane.getOffset() + 10.0f) + random.direction();
        const tbVec3 point = *plane.getNormal() * plane.getOffset() + random.point(3);
        tbMatrix m;
        m.makeProjection(plane, light);
        tbVec3 shadow;
        shadow.fullXformPt(point, m);
        EXPECT_NEAR(plane.getNormal()->dot(shadow), plane.getOffset(), 1e-3f);
        tbVec3 across; // light, point and shadow stand in a line
        across.cross(point - light, shadow - light);
        EXPECT_NEAR(across.length(), 0.0f, 0.02f);
    }
}

TEST(Matrix, ReflectsAfterTheTransform)
{
    const tbPlane plane(tbVec3(0, 0, 1), 2);
    tbMatrix m;
    m.makeReflection(translation(1, 0, 0), plane);
    EXPECT_TRUE(near(tbVec3(0, 5, 7) * m, tbVec3(1, 5, -3)));
    m.makeReflection(m, plane);
    EXPECT_TRUE(near(m, translation(1, 0, 0), 1e-6f));
}

TEST(Matrix, TransposingMovesTheTranslation)
{
    tbMatrix m = turn(30, 20, 10) * translation(1, 2, 3);
    const tbMatrix before(m);
    m.transpose(m);
    EXPECT_EQ(m[0][3], 1.0f);
    EXPECT_NE(m.getType() & PROJ, 0u);
    EXPECT_EQ(m.getType() & XLATE, 0u);
    m.transpose();
    EXPECT_EQ(m, before);
    EXPECT_EQ(m.getType(), ROT | XLATE);
}

TEST(Matrix, SumsAreIdentifiedAnew)
{
    tbMatrix m;
    m.add(translation(1, 2, 3), identity());
    EXPECT_EQ(m.getType(), UNISCALE | XLATE | PROJ);
    m.sub(m, translation(1, 2, 3));
    EXPECT_EQ(m.getType(), IDENT);
}

TEST(Matrix, EqualsWithinTheTolerance)
{
    tbMatrix a = turn(30, 20, 10);
    tbMatrix b(a);
    b[0][0] += 5e-7f;
    EXPECT_EQ(a, b);
    b[2][1] += 1e-5f;
    EXPECT_NE(a, b);
}

TEST(Matrix, FilesKeepTheTypeUnlessTheElementsContradictIt)
{
    tbtest::Random random(9);
    tbMatrix back;
    for (const Type type : allTypes())
    {
        const tbMatrix m = matrixOf(type, random);
        EXPECT_EQ(tbtest::storeAndLoad(m, back), 68);
        EXPECT_TRUE(near(back, m, 0.0f));
        EXPECT_EQ(back.getType(), type);
    }
    const struct
    {
        tbMatrix m;
        Type claimed, expected;
    } lies[] = {{turn(30, 20, 10), ROT | XLATE | SCALE, ROT | XLATE | SCALE}, // generous, and so no lie
                {turn(30, 20, 10), IDENT, ROT},
                {turn(30, 20, 10), XLATE, ROT},
                {translation(1, 2, 3), IDENT, XLATE},
                {scaling(2, 2, 2), XLATE, UNISCALE},
                {scaling(1, 2, 3), UNISCALE, SCALE},
                {scaling(1, 2, 3), 64, SCALE},
                {translation(1, 2, 3), IDENT | XLATE, XLATE},
                {translation(1, 2, 3), 0xFFFFFFC0u | XLATE, XLATE}};
    for (const auto& lie : lies)
    {
        tbMatrix m(lie.m);
        m.setType(lie.claimed);
        tbtest::storeAndLoad(m, back);
        EXPECT_EQ(back.getType(), lie.expected) << lie.claimed;
    }
}

TEST(Matrix, QuaternionsReplaceTheRotationOnly)
{
    tbMatrix m = translation(1, 2, 3);
    m.setQuat(tbQuat(0, 0, 0.6f, 0.8f));
    EXPECT_EQ(m.getType(), ROT | XLATE);
    EXPECT_EQ(tbVec3(m[3][0], m[3][1], m[3][2]), tbVec3(1, 2, 3));
    m.setQuat(tbQuat(1e-7f, 0, 0, 1));
    EXPECT_TRUE(near(m, translation(1, 2, 3), 0.0f));
    EXPECT_EQ(m.getType(), XLATE);
}
