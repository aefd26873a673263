#include <tamber/display/tbKeyboard.h>
#include <tamber/display/tbMouse.h>

#include <plugins/null/tbNullWindow.h>

#include <tests/support/WalkCamera.h>

#include <gtest/gtest.h>

namespace
{

class Mouse : public testing::Test
{
protected:
    const tbRef<tbNullWindow> window{new tbNullWindow};
    const tbRef<tbMouse> mouse{new tbMouse};
    tbMouseData data{};
};

} // namespace

TEST(Keyboard, QueuesPressesAndReleasesWhenAsked)
{
    const tbRef<tbKeyboard> keyboard(new tbKeyboard);
    EXPECT_FALSE(keyboard->set(nullptr, 65, 1, false));
    EXPECT_TRUE(keyboard->set(nullptr, 65, 1, true));
    keyboard->collectKeyUpEvents(true);
    EXPECT_TRUE(keyboard->set(nullptr, 66, 2, false));
    tbKeyboardData first{}, again{}, taken{};
    EXPECT_TRUE(keyboard->sample(first) && keyboard->sample(again));
    EXPECT_TRUE(first.key == 65 && again.key == 65 && first.down);
    EXPECT_TRUE(keyboard->get(&taken) && keyboard->get(&taken));
    EXPECT_TRUE(taken.key == 66 && !taken.down && taken.code == 2);
    EXPECT_FALSE(keyboard->sample(first));
    for (int key = 0; key < 51; ++key)
        EXPECT_TRUE(keyboard->set(nullptr, key, 0, true));
    EXPECT_EQ(keyboard->getCount(), 50);
    EXPECT_TRUE(keyboard->sample(first));
    EXPECT_EQ(first.key, 1); // the newest took the place of the oldest
}

TEST(Keyboard, TestCountsKeyboardsAndNotEvents)
{
    const tbRef<tbKeyboard> keyboard(new tbKeyboard);
    const int living = keyboard->test();
    const tbRef<tbKeyboard> another(new tbKeyboard);
    EXPECT_EQ(keyboard->test(), living + 1);
    another->collectKeyUpEvents(true);
    const tbRef<tbKeyboard> copy(dynamic_cast<tbKeyboard*>(another->createCopy()));
    EXPECT_EQ(keyboard->test(), living + 2);
    EXPECT_TRUE(copy && copy->set(nullptr, 65, 1, false));
}

TEST_F(Mouse, NormalisesPixelsAcrossTheWindow)
{
    EXPECT_FALSE(mouse->test());
    EXPECT_TRUE(mouse->set(window.get(), 0, 0, 1u));
    EXPECT_TRUE(mouse->set(window.get(), 320, 240, 2u));
    EXPECT_TRUE(mouse->test());
    mouse->get(&data);
    EXPECT_TRUE(data.nx == -1.0f && data.ny == -1.0f && data.buttons == 1 && data.window == window.get());
    mouse->get(&data);
    EXPECT_TRUE(data.nx == 0.0f && data.ny == 0.0f && data.x == 320);
    window->setSize(0, 0);
    EXPECT_TRUE(mouse->set(window.get(), 5, 5, 0u));
}

TEST_F(Mouse, EventsOutsideTheViewportStayQueued)
{
    tbtest::WalkCamera camera;
    camera->setWindow(window.get());
    camera->setViewport(0.0f, 0.5f, 0.0f, 1.0f);
    EXPECT_FALSE(mouse->sample(data, camera.get()));
    mouse->set(window.get(), 500, 100, 0u);
    EXPECT_FALSE(mouse->sample(data, camera.get()));
    EXPECT_TRUE(mouse->sample(data, nullptr));
    EXPECT_TRUE(mouse->test());
    EXPECT_TRUE(tbRef<tbBase>(mouse->createCopy())->isOfType(tbMouse::getClassType()));
    mouse->get(&data);
    mouse->set(window.get(), 320, 100, 0u); // on the edge
    EXPECT_TRUE(mouse->sample(data, camera.get()));
    camera->setWindow(nullptr);
}
