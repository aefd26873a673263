#include <plugins/null/tbNullCamera.h>

#include <tamber/io/tbPlugIn.h>
#include <tamber/trav/tbCull.h>
#include <tamber/trav/tbPrune.h>

#include <plugins/null/tbNullRenderContext.h>
#include <plugins/null/tbNullWindow.h>

#include <gtest/gtest.h>

#include <tests/support/Matrices.h>
#include <tests/support/Near.h>
#include <tests/support/RandomValues.h>
#include <tests/support/RecordingTraits.h>
#include <tests/support/TestScene.h>

namespace
{

using tbtest::near;

using Color = tbtest::RecordingTrait<tbVisualTrait, 0>;

// Drawn through the hook, as geometry is.
class DrawnGeometry : public tbtest::TestGeometry
{
public:
    using TestGeometry::TestGeometry;
    void draw(tbCamera* camera) const override
    {
        TestGeometry::draw(camera);
        tbGeometry::draw(camera);
    }
    int getNumPrimitives() const override { return numPrimitives; }
    int getNumIndices() const override { return numIndices; }

    int numPrimitives = 1;
    int numIndices = 0;
};

struct Body
{
    tbVec3 centre;
    float radius;
    DrawnGeometry* geometry;
};

class NullDisplayTest : public testing::Test
{
protected:
    NullDisplayTest()
    {
        window->open();
        camera->setWindow(window.get());
        camera->enableClear(false);
    }

    // One sphere below a transform of its own.
    Body addBody(tbGroup* parent, const tbVec3& centre, float radius)
    {
        auto* geometry = new DrawnGeometry(tbSphere(tbVec3(0, 0, 0), radius));
        scene.addTransform(parent, centre[0], centre[1], centre[2])->addChild(geometry);
        return {centre, radius, geometry};
    }

    std::vector<Body> addGrid(int perAxis, float spacing, float radius)
    {
        std::vector<Body> bodies;
        const float half = 0.5f * float(perAxis - 1);
        for (int i = 0; i < perAxis * perAxis * perAxis; ++i)
        {
            const tbVec3 cell(float(i / perAxis / perAxis), float(i / perAxis % perAxis), float(i % perAxis));
            bodies.push_back(addBody(scene, (cell - tbVec3(half, half, half)) * spacing, radius));
        }
        return bodies;
    }

    void draw()
    {
        scene.update();
        camera->draw(scene);
    }

    tbRef<tbNullWindow> window = new tbNullWindow;
    tbRef<tbNullCamera> camera = new tbNullCamera;
    tbtest::TestScene scene;
};

bool onScreen(const tbCamera& camera, const tbVec3& world)
{
    const tbVec4 clip = tbVec4(world[0], world[1], world[2], 1.0f) * camera.getWorldToScreenMatrix();
    for (int i = 0; i < 3; ++i)
        if (!(std::abs(clip[i]) <= clip[3]))
            return false;
    return true;
}

} // namespace

// A body of which any point is on the screen must be drawn, whatever the placement and projection. The points are
// projected by the matrices alone, without the frustum. What is drawn and culled is what the frustum says of each.
TEST_F(NullDisplayTest, NothingThatIsSeenIsCulledAndAllIsCounted)
{
    const std::vector<Body> bodies = addGrid(9, 10.0f, 2.0f);
    tbtest::Random random(7);
    const auto number = [&random](float low, float high) { return random.number(low, high); };
    for (int view = 0; view < 60; ++view)
    {
        camera->setXYZHPR(random.point(50), tbVec3(number(-180, 180), number(-90, 90), number(-180, 180)));
        if (view % 3 == 0)
            camera->makeOrthoProjMatrix(number(-30, -1), number(1, 30), number(-30, -1), number(1, 30), 1.0f,
                                        60.0f);
        else if (view % 3 == 1)
            camera->makePerspProjMatrix(number(-1, -0.1f), number(0.1f, 1), number(-1, -0.1f),
                                        number(0.1f, 1), 0.5f, 80.0f);
        else
            camera->setFOV(number(10, 120), number(10, 120));
        for (const Body& body : bodies)
            body.geometry->numDrawn = 0;
        camera->resetCounts();
        draw();
        const tbFrustum eye = *camera->getFrustum();
        const tbNullCounts counts = camera->getCounts();
        EXPECT_EQ(counts.sphereTests, std::int64_t(bodies.size()));
        EXPECT_EQ(counts.geometries + counts.culled, std::int64_t(bodies.size()));
        EXPECT_GT(counts.culled, 0) << "view " << view;
        for (const Body& body : bodies)
        {
            tbSphere sphere(body.centre, body.radius);
            sphere.xform(camera->getWorldToRenderingMatrix());
            EXPECT_EQ(body.geometry->numDrawn, eye.contains(sphere) != tbVolume::OUTSIDE ? 1 : 0);
            for (int i = 0; i < 24 && body.geometry->numDrawn == 0; ++i)
            {
                const float distance = body.radius * number(0, 1) * 0.999f;
                const tbVec3 point = body.centre + random.direction() * distance;
                ASSERT_FALSE(onScreen(*camera, point)) << "view " << view;
            }
        }
    }
}

// Spheres wholly in front of the near plane, beyond the far plane or well beside the view are not drawn.
TEST_F(NullDisplayTest, WhatIsWellOutsideIsCulled)
{
    camera->setNearFar(1.0f, 100.0f);
    camera->setFOV(60.0f, 60.0f);
    camera->setXYZHPR(tbVec3(5, 6, 7), tbVec3(90, 0, 0)); // looks along -X
    std::vector<Body> bodies;                             // ahead, behind, beyond, beside, above
    for (const tbVec3& centre :
         {tbVec3(-15, 6, 7), tbVec3(15, 6, 7), tbVec3(-120, 6, 7), tbVec3(-15, 30, 7), tbVec3(-15, 6, 30)})
        bodies.push_back(addBody(scene, centre, 1.0f));
    draw();
    for (std::size_t i = 0; i < bodies.size(); ++i)
        EXPECT_EQ(bodies[i].geometry->numDrawn, i == 0 ? 1 : 0) << i;
    EXPECT_EQ(camera->getCounts().culled, 4);
}

TEST_F(NullDisplayTest, SubtreeWhollyInsideIsTestedOnce)
{
    camera->setFOV(60.0f, 60.0f);
    tbTransform* cluster = scene.addTransform(nullptr, 0, 100, 0);
    for (int i = 0; i < 10; ++i)
        addBody(cluster, tbVec3(float(i) - 5.0f, 0, 0), 0.5f);
    draw();
    EXPECT_EQ(camera->getCounts().geometries, 10);
    EXPECT_EQ(camera->getCounts().sphereTests, 1);
}

TEST_F(NullDisplayTest, CullTraitTurnsTheTestsOff)
{
    addGrid(3, 500.0f, 1.0f);
    auto* cull = new tbCull;
    cull->setMask(0);
    scene->addTrait(cull);
    camera->setFOV(30.0f, 30.0f);
    draw();
    EXPECT_EQ(camera->getCounts().geometries, 27);
    EXPECT_EQ(camera->getCounts().sphereTests, 0);
    camera->setXYZ(1, 0, 0);
    scene->removeTrait(cull);
    draw();
    EXPECT_LT(camera->getCounts().geometries, 54);
}

TEST_F(NullDisplayTest, FrustumReadOffAMatrixIsThatOfItsBounds)
{
    tbRef<tbNullCamera> other = new tbNullCamera;
    other->setWindow(window.get());
    const auto compare = [&](float tolerance)
    {
        other->setProjectionMatrix(camera->getProjectionMatrix());
        for (int face = 0; face < 6; ++face)
        {
            const tbPlane& a = camera->getFrustum()->getFacePlane(face);
            const tbPlane& b = other->getFrustum()->getFacePlane(face);
            EXPECT_TRUE(near(*a.getNormal(), *b.getNormal(), 1e-4f)) << face;
            EXPECT_NEAR(a.getOffset(), b.getOffset(), tolerance) << face;
        }
    };
    camera->makePerspProjMatrix(-1, 2, -0.5f, 1, 2, 500);
    compare(0.1f);
    camera->makeOrthoProjMatrix(-10, 20, -5, 1, -50, 500);
    compare(1e-2f);
    float horizontal, vertical;
    other->getFOV(horizontal, vertical);
    EXPECT_EQ(horizontal, 0.0f);
    camera->setNearFar(1.0f, 1000.0f);
    camera->setFOV(80.0f, 45.0f);
    other->setProjectionMatrix(camera->getProjectionMatrix());
    other->getFOV(horizontal, vertical);
    EXPECT_NEAR(horizontal, 80.0f, 0.01f);
    EXPECT_NEAR(vertical, 45.0f, 0.01f);
}

TEST_F(NullDisplayTest, ProjectionOfNoKnownFormCullsNothing)
{
    addGrid(3, 500.0f, 1.0f);
    camera->setProjectionMatrix(tbtest::rotation(30, {1, 1, 1}));
    draw();
    EXPECT_EQ(camera->getCounts().geometries, 27);
}

TEST_F(NullDisplayTest, ProjectionFollowsDistancesAndTheFirstWindow)
{
    tbRef<tbNullCamera> early = new tbNullCamera;
    early->setNearFar(2.0f, 200.0f);
    early->setFOV(90.0f, 60.0f);
    early->setWindow(window.get());
    camera->setFOV(90.0f, 60.0f);
    camera->setNearFar(2.0f, 200.0f);
    EXPECT_TRUE(near(early->getProjectionMatrix(), camera->getProjectionMatrix()));
    EXPECT_TRUE(early->getFrustum()->isSymmetrical());
    EXPECT_NEAR(early->getFrustum()->getNear(), 2.0f, 1e-4f);
}

TEST_F(NullDisplayTest, TraitsReachTheCameraWhenGeometryNeedsThem)
{
    auto* redColor = new Color;
    auto* blueColor = new Color;
    tbStyle* red = scene.addStyle(nullptr, redColor);
    scene->addChild(new DrawnGeometry);
    red->addChild(new DrawnGeometry);
    red->addChild(new DrawnGeometry);
    scene.addStyle(red, blueColor)->addChild(new DrawnGeometry);
    scene.addStyle(red, new Color); // never drawn
    red->addChild(new DrawnGeometry);

    tbtest::TraitLog& log = tbtest::TraitLog::get();
    log.stack = camera->getTravContext()->getTraitStack();
    camera->draw(scene); // sets every type once
    log.clear();
    camera->resetCounts();
    camera->draw(scene);
    const tbVisualTrait* plain = camera->getAppliedVisualTrait(Color::type());
    EXPECT_EQ(log.onDevice, (std::vector<const tbTrait*>{redColor, blueColor, redColor, plain}));
    log.stack = nullptr;
    EXPECT_EQ(camera->getCounts().visualTraits, 4);
    EXPECT_EQ(camera->getCounts().geometries, 5);
    EXPECT_EQ(tbtest::visualDefaultsOf(*camera->getTravContext()->getTraitStack()).front(), plain);
}

TEST_F(NullDisplayTest, PrunedStyleIsNotDrawn)
{
    auto* prune = new tbPrune;
    prune->enable(true);
    scene.addStyle(nullptr, prune)->addChild(new DrawnGeometry);
    scene->addChild(new DrawnGeometry);
    camera->draw(scene);
    EXPECT_EQ(camera->getCounts().geometries, 1);
    EXPECT_EQ(camera->getTravContext()->anyFlags(tbTravContext::PRUNE), 0u);
}

TEST_F(NullDisplayTest, PrimitivesOfThreeVerticesAreTriangles)
{
    for (const auto& [numPrimitives, numIndices] : {std::pair(12, 36), std::pair(10, 20)})
    {
        auto* geometry = new DrawnGeometry;
        geometry->numPrimitives = numPrimitives;
        geometry->numIndices = numIndices;
        scene->addChild(geometry);
    }
    camera->draw(scene);
    EXPECT_EQ(camera->getCounts().triangles, 12);
    EXPECT_EQ(camera->getCounts().primitives, 22);
}

TEST_F(NullDisplayTest, FrameIsCountedOnTheWindow)
{
    camera->enableClear(true);
    for (int frame = 0; frame < 3; ++frame)
    {
        window->beginDraw();
        camera->draw(scene);
        camera->draw(scene);
        window->endDraw();
    }
    const tbNullCounts counts = window->getCounts();
    EXPECT_EQ(counts.swaps, 3);
    EXPECT_EQ(counts.clears, 6);
    EXPECT_EQ(counts.viewports, 6);
    EXPECT_EQ(camera->getCounts().walks, 6);
    EXPECT_FALSE(camera->screenMatricesChanged());
    window->close();
    EXPECT_EQ(window->getRenderContext(), nullptr);
    camera->draw(scene);
}

TEST_F(NullDisplayTest, DeviceHoldsTheMatricesOfTheLastGeometry)
{
    camera->setXYZHPR(tbVec3(1, 2, 3), tbVec3(10, 20, 30));
    tbTransform* transform = scene.addTransform(nullptr, 4, 5, 6);
    transform->addChild(new DrawnGeometry);
    auto* all = new tbCull;
    all->setMask(0);
    scene->addTrait(all);
    camera->draw(scene);
    const auto* device = dynamic_cast<tbNullRenderContext*>(window->getRenderContext());
    EXPECT_TRUE(near(device->getMatrix(tbRenderContext::MATRIX_MODE_MODEL),
                     *transform->getMatrix() * camera->getWorldToRenderingMatrix()));
    EXPECT_TRUE(
        near(device->getMatrix(tbRenderContext::MATRIX_MODE_PROJECTION), camera->getProjectionMatrix()));
}

TEST(NullModule, ObjectsAreMadeByNameAndCountThroughTheirInterface)
{
    tbRef<tbBase> camera = tbType::createInstance("tbNullCamera");
    tbRef<tbBase> window = tbType::createInstance("tbNullWindow");
    EXPECT_TRUE(tbNullCounter::of(camera.get()) && tbNullCounter::of(window.get()));
    EXPECT_EQ(tbNullCounter::of(nullptr), nullptr);
    const tbPlugIn* plugIn = tbPlugIn::find("TBNULL.DLL");
    ASSERT_NE(plugIn, nullptr);
    EXPECT_EQ(camera->getType()->getPlugIn(), plugIn);
    EXPECT_FALSE(plugIn->isSaveWithFileEnabled());
}
