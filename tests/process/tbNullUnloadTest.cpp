// The null display as programs meet it: loaded by name, used by class name, unloaded when nothing of it is left.
#include <tamber/display/tbCamera.h>
#include <tamber/display/tbRenderContext.h>
#include <tamber/display/tbWindow.h>
#include <tamber/io/tbPlugIn.h>
#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/render/tbGeometry.h>

#include <plugins/null/tbNullCounts.h>

#include <gtest/gtest.h>

#include <tests/support/Messages.h>
#include <tests/support/TestGeometry.h>

namespace
{

class HookedGeometry : public tbtest::TestGeometry
{
public:
    void draw(tbCamera* camera) const override { tbGeometry::draw(camera); }
};

} // namespace

TEST(NullModule, TakesItsHooksBackWhenItIsUnloadedAndComesAgain)
{
    tbtest::allowMessages();
    tbInit(nullptr);
    for (int round = 0; round < 2; ++round)
    {
        ASSERT_NE(tbPlugIn::load("tbNull.dll"), nullptr);
        EXPECT_NE(tbiGeometryDrawFunc, &tbGeometry::drawNothing);
        {
            tbRef<tbWindow> window = static_cast<tbWindow*>(tbType::createInstance("tbNullWindow"));
            tbRef<tbCamera> camera = static_cast<tbCamera*>(tbType::createInstance("tbNullCamera"));
            ASSERT_TRUE(window && camera);
            ASSERT_TRUE(window->open());
            camera->setWindow(window.get());
            tbRef<HookedGeometry> geometry = new HookedGeometry;
            camera->draw(geometry.get());
            EXPECT_EQ(tbNullCounter::of(camera.get())->getCounts().geometries, 1);
            tbPlugIn::unloadAll();
            ASSERT_NE(tbPlugIn::find("tbNull.dll"), nullptr) << "it is in use";
        }
        tbPlugIn::unloadAll();
        EXPECT_EQ(tbPlugIn::find("tbNull.dll"), nullptr);
        EXPECT_EQ(tbiGeometryDrawFunc, &tbGeometry::drawNothing);
        EXPECT_EQ(tbRenderContext::getCreateFunc(), nullptr);
        EXPECT_EQ(tbType::findType("tbNullCamera"), nullptr);
    }
    tbShutdown();
}
