#include <tamber/display/tbCamera.h>

#include <tamber/trav/tbCull.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/volume/tbBox.h>

#include <plugins/null/tbNullCamera.h>
#include <plugins/null/tbNullWindow.h>

#include <gtest/gtest.h>

#include <array>

#include <tests/support/Matrices.h>
#include <tests/support/Near.h>

namespace
{

using tbtest::identity;
using tbtest::near;

class CameraTest : public testing::Test
{
protected:
    CameraTest()
    {
        window->open();
        camera->setWindow(window.get());
    }

    tbMatrix placement() const { return tbtest::turn(30, 20, 10) * tbtest::translation(1, 2, 3); }
    /// Left, right, bottom and top.
    tbVec4 viewport() const
    {
        tbVec4 sides;
        camera->getViewport(sides[0], sides[1], sides[2], sides[3]);
        return sides;
    }

    tbRef<tbNullWindow> window = new tbNullWindow;
    tbRef<tbNullCamera> camera = new tbNullCamera;
};

} // namespace

TEST_F(CameraTest, PlacementByMatrixAndByAnglesAgree)
{
    camera->setMatrix(placement());
    EXPECT_TRUE(near(camera->getXYZ(), tbVec3(1, 2, 3)));
    EXPECT_TRUE(near(camera->getHPR(), tbVec3(30, 20, 10), 1e-3f));
    EXPECT_TRUE(near(camera->getMatrix() * camera->getWorldToCameraMatrix(), identity()));

    tbRef<tbNullCamera> other = new tbNullCamera;
    other->setXYZHPR(tbVec3(1, 2, 3), tbVec3(30, 20, 10));
    EXPECT_TRUE(near(other->getMatrix(), camera->getMatrix()));
    other->setHPR(0, 0, 0);
    other->setWorldToCameraMatrix(camera->getWorldToCameraMatrix());
    EXPECT_TRUE(near(other->getMatrix(), camera->getMatrix()));
}

TEST_F(CameraTest, ScreenMatricesAreTheChainOfTheOthers)
{
    camera->setMatrix(placement());
    camera->makePerspProjMatrix(-1, 2, -0.5f, 1, 2, 500);
    const tbVec4 world(40.0f, 80.0f, 5.0f, 1.0f);
    EXPECT_TRUE(near(tbVec3(7, 8, 9) * tbCamera::getCameraToRenderingMatrix(), tbVec3(7, 9, -8))); // Y up
    const tbVec4 seen = world * camera->getWorldToCameraMatrix() * tbCamera::getCameraToRenderingMatrix();
    EXPECT_TRUE(near(seen, world * camera->getWorldToRenderingMatrix(), 1e-3f));
    EXPECT_TRUE(near(seen * camera->getProjectionMatrix(), world * camera->getWorldToScreenMatrix(), 1e-2f));
    EXPECT_TRUE(near(world, seen * camera->getRenderingToWorldMatrix(), 1e-3f));
}

TEST_F(CameraTest, OnlyAChangeOfPlacementRecomputes)
{
    camera->setXYZHPR(tbVec3(1, 2, 3), tbVec3(4, 5, 6));
    camera->clearScreenMatricesChanged();
    camera->setHPR(4, 5, 6);
    camera->setXYZ(1, 2, 3);
    camera->setXYZHPR(tbVec3(1, 2, 3), tbVec3(4, 5, 6));
    EXPECT_FALSE(camera->screenMatricesChanged());
    camera->setHPR(4, 5, 7);
    EXPECT_TRUE(camera->screenMatricesChanged());
    camera->clearScreenMatricesChanged();
    camera->setProjectionMatrix(camera->getProjectionMatrix());
    EXPECT_TRUE(camera->screenMatricesChanged());
}

TEST_F(CameraTest, ViewportIsCutToTheWindow)
{
    camera->setViewport(-0.5f, 2.0f, 0.25f, 0.75f);
    EXPECT_EQ(viewport(), tbVec4(0, 1, 0.25f, 0.75f));

    window->setSize(200, 100);
    camera->setViewport(50, 150, 0, 25);
    EXPECT_EQ(viewport(), tbVec4(0.25f, 0.75f, 0, 0.25f));
    std::array<int, 4> sides;
    window->setSize(400, 1000);
    camera->getViewport(sides[0], sides[1], sides[2], sides[3]);
    EXPECT_EQ(sides, (std::array{100, 300, 0, 250}));
}

TEST_F(CameraTest, WindowCoordinatesGoToTheWorldAndBack)
{
    camera->setMatrix(placement());
    camera->setNearFar(1.0f, 100.0f);
    camera->setFOV(60.0f, 45.0f);
    camera->setViewport(0.25f, 0.75f, 0.5f, 1.0f);
    for (const tbVec3& seen : {tbVec3(0, 10, 0), tbVec3(3, 20, -2), tbVec3(-8, 90, 10)})
    {
        const tbVec3 world = seen * camera->getMatrix();
        tbVec3 win;
        camera->getWindowCoords(world, win);
        EXPECT_EQ(tbBox(tbVec3(160, 240, 0), tbVec3(480, 480, 99)).contains(win), tbVolume::INSIDE);
        tbVec3 back;
        camera->getWorldCoords(win, back);
        EXPECT_TRUE(near(back, world, 0.05f));
    }
    tbVec3 centre;
    camera->getWindowCoords(tbVec3(0, 10, 0) * camera->getMatrix(), centre);
    EXPECT_TRUE(near(tbVec2(centre[0], centre[1]), tbVec2(320, 360), 0.01f));
}

TEST_F(CameraTest, CoordinatesStayNumbersInAWindowWithoutExtent)
{
    window->setSize(0, 0);
    camera->setNearFar(5.0f, 5.0f);
    camera->setViewport(10, 20, 30, 40);
    EXPECT_EQ(viewport()[0], 0.0f);
    tbVec3 world;
    camera->getWorldCoords(tbVec3(1, 1, 1), world);
    tbVec3 win;
    camera->getWindowCoords(tbVec3(0, 0, 0), win);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(std::isfinite(world[i]) && std::isfinite(win[i]));
}

TEST_F(CameraTest, WithoutWindowTheFallbacksHold)
{
    camera->setWindow(nullptr);
    camera->makePerspProjMatrix(-1, 1, -1, 1, 1, 1000);
    EXPECT_EQ(camera->getProjectionMatrix(), identity());
    camera->makeOrthoProjMatrix(-1, 1, -1, 1, 1, 1000);
    EXPECT_EQ(camera->getProjectionMatrix(), identity());
    camera->setViewport(5, 6, 7, 8);
    EXPECT_EQ(viewport(), tbVec4(0, 1, 0, 1));
    tbVec3 win(7, 7, 7);
    camera->getWindowCoords(tbVec3(1, 2, 3), win);
    EXPECT_EQ(win, tbVec3(0, 0, 0));
    camera->applyWindowViewport();
}

TEST_F(CameraTest, TraitsAreHeldAndAppliedWhereAStackIs)
{
    const tbRef<tbCull> cull = new tbCull;
    cull->setMask(0x400);
    camera->addTrait(cull.get());
    EXPECT_EQ(cull->getRefCount(), 2);

    camera->applyTraits();
    tbTravContext* context = camera->getTravContext();
    context->setTraitStack(new tbTraitStack(tbTraitStack::ALL_STACKS, false));
    context->reset();
    camera->applyTraits();
    EXPECT_EQ(context->anyFlags(0x5500), 0x400u);
    camera->removeTrait(cull.get());
    EXPECT_EQ(cull->getRefCount(), 1);
}

TEST_F(CameraTest, CopyHasItsOwnContextAndSharesTraits)
{
    tbRef<tbCull> cull = new tbCull;
    camera->addTrait(cull.get());
    camera->setMatrix(placement());
    camera->setFOV(50.0f, 40.0f);
    tbRef<tbNullCamera> copy = static_cast<tbNullCamera*>(camera->createCopy());
    EXPECT_NE(copy->getTravContext(), camera->getTravContext());
    EXPECT_EQ(copy->getTravContext()->getCamera(), copy.get());
    EXPECT_EQ(cull->getRefCount(), 3);
    EXPECT_EQ(copy->getWorldToScreenMatrix(), camera->getWorldToScreenMatrix());
    EXPECT_NE(copy->getIndex(), camera->getIndex());
}

TEST_F(CameraTest, NothingPointsAtAWindowOrCameraThatDied)
{
    window = nullptr;
    EXPECT_EQ(camera->getWindow(), nullptr);
    tbRef<tbTravContext> context = camera->getTravContext();
    EXPECT_EQ(context->getCamera(), camera.get());
    camera = nullptr;
    EXPECT_EQ(context->getCamera(), nullptr);
}
