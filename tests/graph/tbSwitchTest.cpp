#include <tamber/graph/tbSwitch.h>

#include <tamber/graph/tbAutoSwitch.h>
#include <tamber/graph/tbRangeSwitch.h>
#include <tests/graph/GraphModel.h>
#include <tests/support/FileBuilder.h>
#include <tests/support/SavedCopy.h>
#include <tests/support/TestScene.h>
#include <tests/support/WalkCamera.h>

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

namespace
{

// States as letters: o for off, A for active.
std::string states(const tbSwitch* node)
{
    std::string text;
    for (int i = 0; i < node->getNumChildren(); ++i)
        text += node->isActive(i) ? 'A' : 'o';
    return text;
}

template <class Switch>
tbRef<Switch> makeSwitch(int children)
{
    tbRef<Switch> node(new Switch);
    for (int i = 0; i < children; ++i)
        node->addChild(new tbtest::TestGeometry);
    return node;
}

int drawn(const tbGroup* node, int i)
{
    return static_cast<tbtest::TestGeometry*>(node->getChild(i))->numDrawn;
}

} // namespace

TEST(Switch, SelectionRefusesWhatIsNoChild)
{
    const tbRef<tbSwitch> node = makeSwitch<tbSwitch>(3);
    EXPECT_FALSE(node->addChild(node->getChild(2)));
    for (const int none : {5, 3, -1})
    {
        EXPECT_FALSE(node->selectChild(none, true)) << none;
        EXPECT_FALSE(node->selectChild(none)) << none;
        EXPECT_FALSE(node->isActive(none)) << none;
    }
    EXPECT_EQ(states(node.get()), "Aoo");
    EXPECT_TRUE(node->selectChild(2));
    EXPECT_TRUE(node->selectChild(1, true));
    EXPECT_EQ(states(node.get()), "oAA");
    node->allOn();
    EXPECT_EQ(states(node.get()), "AAA");
    node->allOff();
    EXPECT_EQ(states(node.get()), "ooo");
}

TEST(Switch, InsertionDropsTheLastStateAndRemovalClosesTheGap)
{
    const tbRef<tbSwitch> node = makeSwitch<tbSwitch>(3);
    node->selectChild(2); // ooA
    node->insertChild(1, new tbGroup);
    EXPECT_EQ(states(node.get()), "oooo"); // the A is not carried into the new last place
    node->allOn();
    node->selectChild(1, false); // AoAA
    node->removeChild(node->getChild(0));
    EXPECT_EQ(states(node.get()), "oAA");
    const tbRef<tbGroup> first(node->getChild(0));
    EXPECT_TRUE(first->replaceGraph(node->getChild(2))); // stands there already
    EXPECT_EQ(states(node.get()), "AA");
    for (int i = 0; i < 20; ++i)
        node->insertChild(0, new tbGroup);
    EXPECT_EQ(node->getNumChildren(), 22);
    EXPECT_FALSE(node->isActive(0));
}

TEST(RangeSwitch, RecordsFollowTheChildren)
{
    const tbRef<tbRangeSwitch> node = makeSwitch<tbRangeSwitch>(3);
    node->setRange(1, 1700);
    node->setTransition(1, 30);
    node->insertChild(2, new tbGroup);
    EXPECT_EQ(node->getTransition(2), 30);
    const tbRef<tbGroup> first(node->getChild(0));
    first->replaceGraph(node->getChild(3)); // stands there already
    const std::vector<float> ranges = {node->getRange(0), node->getRange(1), node->getRange(2),
                                       node->getRange(3)};
    EXPECT_EQ(ranges, (std::vector<float>{1700, 1700, 3000, 0}));
}

TEST(RangeSwitch, ChildrenThatComeAndGoMaySelectAndEdit)
{
    const tbRef<tbRangeSwitch> node = makeSwitch<tbRangeSwitch>(3);
    auto* child = new tbtest::HookNode;
    child->hook = [&] { node->selectChild(node->getChildIndex(child)); };
    EXPECT_TRUE(node->insertChild(0, child));
    EXPECT_EQ(states(node.get()), "Aooo");
    EXPECT_FALSE(node->insertChild(0, child));
    EXPECT_EQ(states(node.get()), "Aooo");
    node->selectChild(3);
    child->hook = [&] { node->addChild(new tbGroup); };
    EXPECT_TRUE(node->removeChild(child));
    EXPECT_EQ(states(node.get()), "ooAo");
    EXPECT_EQ(node->getRange(3), 4000);
}

TEST(Switch, TransitionFadesOverItsTime)
{
    tbtest::TestScene scene;
    const tbRef<tbSwitch> node = makeSwitch<tbSwitch>(2);
    scene->addChild(node.get());
    node->enableTransition(true);
    node->setTransitionTime(0.05f);
    node->selectChild(1);
    EXPECT_EQ(states(node.get()), "AA"); // the old one fades
    EXPECT_TRUE(node->isInTransition());
    scene.update();
    scene.update();
    EXPECT_TRUE(node->isInTransition());
    tbtest::WalkCamera camera;
    camera.walk(scene);
    EXPECT_EQ(drawn(node.get(), 0), 1);
    EXPECT_EQ(drawn(node.get(), 1), 1);
    std::this_thread::sleep_for(std::chrono::milliseconds(70));
    scene.update();
    EXPECT_FALSE(node->isInTransition());
    EXPECT_EQ(states(node.get()), "oA");
    EXPECT_EQ(node->getTransitionFraction(), 1.0f);
    camera.walk(scene);
    EXPECT_EQ(drawn(node.get(), 0), 1);
    EXPECT_EQ(drawn(node.get(), 1), 2);
}

TEST(Switch, TurningOnWhatIsOnEndsARunningTransition)
{
    const tbRef<tbSwitch> node = makeSwitch<tbSwitch>(3);
    node->enableTransition(true);
    node->selectChild(1);
    EXPECT_TRUE(node->isInTransition());
    node->selectChild(1, true);
    EXPECT_FALSE(node->isInTransition());
    EXPECT_EQ(states(node.get()), "AAo"); // child 0 is left fading
    node->setTransitionTime(0.0f);
    EXPECT_FALSE(node->isTransitionEnabled());
    node->enableTransition(true);
    node->setTransitionTime(std::numeric_limits<float>::quiet_NaN());
    EXPECT_FALSE(node->isTransitionEnabled());
}

namespace
{

// In a scene, with a child for every frame.
class AutoSwitch : public testing::Test
{
protected:
    AutoSwitch()
    {
        node->setMode(tbIterator::MODE_FRAMES);
        node->setChildFrameCount(1);
        scene->addChild(node.get());
    }

    tbtest::TestScene scene;
    tbRef<tbAutoSwitch> node = makeSwitch<tbAutoSwitch>(3);
};

} // namespace

TEST_F(AutoSwitch, StepsThroughItsChildrenFrameByFrame)
{
    std::string shown;
    for (int i = 0; i < 6; ++i)
    {
        scene.update();
        shown += states(node.get()) + ' ';
    }
    // The first update of the tree registers the switch, the next frame is its first.
    EXPECT_EQ(shown, "Aoo Aoo oAo ooA Aoo oAo ");
    node->pause();
    scene.update();
    EXPECT_EQ(states(node.get()), "oAo");
}

TEST_F(AutoSwitch, LosingTheChildThatIsShownDisablesIt)
{
    for (int i = 0; i < 3; ++i)
        scene.update();
    node->removeChild(node->getChild(0)); // before the one that is shown
    EXPECT_TRUE(node->isEnabled());
    EXPECT_EQ(states(node.get()), "Ao");
    node->removeChild(node->getChild(0));
    EXPECT_FALSE(node->isEnabled());
    tbtest::WalkCamera camera;
    camera.walk(scene);
    EXPECT_EQ(drawn(node.get(), 0), 0);
}

namespace
{

// Numbers of drawings of three children at a distance from the eye.
std::string drawnAt(tbRangeSwitch* node, float distance)
{
    tbtest::WalkCamera camera;
    const tbRef<tbTransform> place(new tbTransform);
    place->setXYZ(0, distance, 0);
    place->addChild(node);
    const int before[] = {drawn(node, 0), drawn(node, 1), drawn(node, 2)};
    camera.walk(place.get());
    std::string text;
    for (int i = 0; i < 3; ++i)
        text += std::to_string(drawn(node, i) - before[i]);
    return text;
}

} // namespace

TEST(RangeSwitch, DrawsTheBandOfTheDistanceAndBlendsNeighboursAroundTheRange)
{
    const tbRef<tbRangeSwitch> node = makeSwitch<tbRangeSwitch>(3);
    const struct
    {
        float distance;
        const char* alone;
        const char* blended;
    } cases[] = {{900, "100", "100"},  {975, "100", "110"},  {1025, "010", "110"},
                 {1060, "010", "010"}, {3025, "000", "001"}, {3051, "000", "000"}};
    for (const auto& c : cases)
    {
        node->enableTransition(false);
        EXPECT_EQ(drawnAt(node.get(), c.distance), c.alone) << c.distance;
        node->enableTransition(true);
        EXPECT_EQ(drawnAt(node.get(), c.distance), c.blended) << c.distance;
    }
    EXPECT_TRUE(node->setRange(2, 4000));
    EXPECT_EQ(drawnAt(node.get(), 3500), "001");
    EXPECT_FALSE(node->setTransition(-1, 1));
}

TEST(RangeSwitch, NoNumberSelectsNothing)
{
    const tbRef<tbRangeSwitch> node = makeSwitch<tbRangeSwitch>(3);
    for (int i = 0; i < 3; ++i)
        node->setRange(i, std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(drawnAt(node.get(), 10), "000");
    node->enableTransition(true);
    node->setTransition(0, 0.0f);
    EXPECT_EQ(drawnAt(node.get(), 10), "000");
    const tbRef<tbRangeSwitch> empty(new tbRangeSwitch);
    empty->enableTransition(true);
    tbtest::WalkCamera().walk(empty.get());
}

TEST(RangeSwitch, CentreFollowsTheBoundsUntilItIsFrozen)
{
    tbtest::TestScene scene;
    const tbRef<tbRangeSwitch> node(new tbRangeSwitch);
    scene->addChild(node.get());
    scene.update();
    EXPECT_EQ(*node->getCenter(), tbVec3(0, 0, 0));
    scene.addGeometry(node.get(), tbSphere(tbVec3(5, 6, 7), 2));
    scene.update();
    EXPECT_EQ(*node->getCenter(), tbVec3(5, 6, 7));
    EXPECT_EQ(*scene->getVolume()->getCenter(), tbVec3(5, 6, 7));
    node->setCenter(tbVec3(1, 1, 1));
    node->autoCenter();
    scene.update();
    EXPECT_EQ(*node->getCenter(), tbVec3(1, 1, 1));
    node->setCenter(tbVec3(2, 2, 2)); // lets go
    scene.update();
    EXPECT_EQ(*node->getCenter(), tbVec3(5, 6, 7));
}

// A file may hold any number of states and ranges.
TEST(RangeSwitch, ReadsAsManyStatesAndRangesAsItHasChildren)
{
    constexpr int CHILDREN = 4; // as many states as there is room for
    const tbtest::TempDirectory directory;
    const std::string path = directory.path("switch.tb");
    const std::pair<int, int> storedNumbers[] = {{0, 0}, {1, 1}, {4, 4}, {5, 5}, {4, 1000}, {1 << 23, 4}};
    for (const auto& [numStates, numRanges] : storedNumbers)
    {
        SCOPED_TRACE(std::to_string(numStates) + " states, ranges: " + std::to_string(numRanges));
        tbtest::Record record = tbtest::Record().object().word(0).word(0).integer(CHILDREN);
        for (int i = 1; i <= CHILDREN; ++i)
            record.integer(i);
        record.integer(numStates).bytes(std::string(std::size_t(numStates), '\1'));
        record.integer(0).number(0).number(0).number(0).integer(numRanges);
        for (int i = 0; i < numRanges; ++i)
            record.number(float(i)).number(0).number(0);
        record.integer(1).number(1).number(2).number(3).integer(1);
        tbtest::FileBuilder builder;
        builder.add("tbRangeSwitch", record);
        for (int i = 0; i < CHILDREN; ++i)
            builder.add("tbGroup", tbtest::Record().object().word(0).word(0).integer(0));
        tbtest::writeAll(path, builder.build());
        tbFile file;
        ASSERT_TRUE(file.open(path.c_str(), "r"));
        const tbRef<tbRangeSwitch> node(dynamic_cast<tbRangeSwitch*>(file.readObject(0)));
        ASSERT_TRUE(node);
        for (int i = 0; i < CHILDREN; ++i)
        {
            EXPECT_EQ(node->isActive(i), i < numStates);
            EXPECT_TRUE(i >= numRanges || node->getRange(i) == float(i));
            EXPECT_TRUE(node->setRange(i, 1));
        }
        EXPECT_FALSE(node->setRange(CHILDREN, 1));
        EXPECT_EQ(*node->getCenter(), tbVec3(1, 2, 3));
    }
}
