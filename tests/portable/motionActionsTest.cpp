// Actions that move transforms along splines and by keys.

#include <portable/tbKeyFrameAction.h>
#include <portable/tbPathAction.h>
#include <tamber/thread/tbEvent.h>
#include <tests/support/Cost.h>
#include <tests/support/Near.h>
#include <tests/support/SavedCopy.h>
#include <tests/support/TestScene.h>
#include <tests/support/Threads.h>

#include <gtest/gtest.h>

namespace
{
tbVec3 placeOf(const tbTransform* node)
{
    tbVec3 xyz;
    node->getXYZ(xyz);
    return xyz;
}

tbPathAction* addPath(tbTransform* parent)
{
    tbSpline spline(tbSpline::LINEAR);
    spline.addPoint(tbVec3(0, 0, 0));
    spline.addPoint(tbVec3(10, 0, 0));
    spline.addPoint(tbVec3(10, 30, 0));
    auto* path = new tbPathAction;
    path->setSpline(spline);
    path->setDuration(4);
    path->setOriented(true);
    parent->addChild(path);
    return path;
}
} // namespace

TEST(PathAction, MovesItsParentEvenlyAlongTheWay)
{
    const tbRef<tbTransform> node(new tbTransform);
    tbPathAction* path = addPath(node.get());
    const std::pair<float, tbVec3> places[] = {
        {0.5f, {5, 0, 0}}, {5, {10, 0, 0}}, {2, {10, 10, 0}}}; // the second begins again
    for (const auto& [time, place] : places)
    {
        EXPECT_TRUE(path->moveTo(time));
        EXPECT_TRUE(tbtest::near(placeOf(node.get()), place, 0.1f)) << time;
    }
    tbVec3 direction;
    node->getMatrix()->getDirection(direction);
    EXPECT_TRUE(tbtest::near(direction, tbVec3(0, 1, 0)));
    path->setEven(false);
    EXPECT_TRUE(path->moveTo(2));
    EXPECT_TRUE(tbtest::near(placeOf(node.get()), tbVec3(10, 0, 0), 0.05f));
    path->setDuration(0);
    EXPECT_FALSE(path->moveTo(1));
}

TEST(PathAction, ScenesDriveItOncePerFrame)
{
    tbtest::TestScene scene;
    tbTransform* node = scene.addTransform(nullptr, 0, 0, 0);
    tbPathAction* path = addPath(node);
    scene.update(); // takes the action up
    scene.update(); // its clock starts
    tbtest::sleep(30);
    scene.update();
    EXPECT_GT(placeOf(node)[0], 0.1f);
    path->pause(true);
    const float time = path->getTime();
    tbtest::sleep(5);
    EXPECT_EQ(path->getTime(), time);
    node->removeChild(path);
    scene.update();
}

TEST(PathAction, EventsDriveATargetElsewhere)
{
    const tbRef<tbTransform> node(new tbTransform), holder(new tbTransform);
    tbPathAction* path = addPath(holder.get());
    path->setTarget(node.get());
    path->setTime(2);
    const tbRef<tbEvent> event(new tbEvent);
    event->addAction(path);
    event->trigger(nullptr);
    EXPECT_NEAR(placeOf(node.get())[1], 10.0f, 0.5f);
    EXPECT_EQ(placeOf(holder.get()), tbVec3(0, 0, 0));
}

TEST(KeyFrameAction, BlendsPlaceRotationAndScale)
{
    const tbRef<tbTransform> node(new tbTransform);
    auto* action = new tbKeyFrameAction;
    node->addChild(action);
    EXPECT_FALSE(action->moveTo(0));
    tbQuat start, end;
    start.setHPR(tbVec3(0, 0, 0));
    end.setHPR(tbVec3(90, 0, 0));
    action->getPositions().addKey(0, tbVec3(0, 0, 0));
    action->getPositions().addKey(2, tbVec3(2, 4, 6));
    action->getRotations().addKey(0, start);
    action->getRotations().addKey(2, end);
    action->getScales().addKey(0, tbVec3(2, 2, 2));
    EXPECT_TRUE(action->moveTo(1));
    EXPECT_TRUE(tbtest::near(placeOf(node.get()), tbVec3(1, 2, 3)));
    tbVec3 hpr;
    node->getHPR(hpr);
    EXPECT_NEAR(hpr[0], 45, 0.1f);
    EXPECT_NEAR(tbVec3((*node->getMatrix())[0][0], (*node->getMatrix())[0][1], 0).sqrLength(), 4, 1e-2f);
}

TEST(MotionActions, CopiesFollowTheirCopiedTarget)
{
    const tbRef<tbTransform> root(new tbTransform);
    auto* moved = new tbTransform;
    auto* holder = new tbTransform;
    root->addChild(moved);
    root->addChild(holder);
    addPath(holder)->setTarget(moved);
    const tbRef<tbGroup> copy(root->makeCopy());
    auto* path = static_cast<tbPathAction*>(copy->getChild(1)->getChild(0));
    EXPECT_EQ(path->getTarget(), copy->getChild(0));
}

TEST(MotionActions, ComeBackFromFilesBelowTheirTarget)
{
    const tbRef<tbTransform> root(new tbTransform);
    addPath(root.get());
    const tbRef<tbTransform> read = tbtest::savedCopy(root.get());
    ASSERT_TRUE(read && read->getNumChildren() == 1);
    EXPECT_EQ(static_cast<tbPathAction*>(read->getChild(0))->getTarget(), read.get());
}

TEST(PathAction, MayLieBelowManyNodes)
{
    const int number = tbtest::isCostMeasured() ? 20'000 : 500;
    const tbRef<tbTransform> target(new tbTransform);
    const tbRef<tbTransform> root(new tbTransform);
    tbPathAction* path = addPath(root.get());
    path->setTarget(target.get());
    for (int i = 0; i < number; ++i)
    {
        root->addChild(new tbGroup);
        root->getChild(i + 1)->addChild(path);
    }
    const tbtest::Cost cost;
    EXPECT_TRUE(tbtest::savedCopy(root.get()));
    EXPECT_LE(cost.seconds(), 1.0);
}

TEST(PathAction, ATargetThatOnlyAFileNamedLivesAsLongAsTheAction)
{
    const int before = tbTransform::getNum(true);
    {
        const tbRef<tbTransform> target(new tbTransform);
        const tbRef<tbTransform> root(new tbTransform);
        addPath(root.get())->setTarget(target.get());
        const tbRef<tbTransform> read = tbtest::savedCopy(root.get());
        auto* path = static_cast<tbPathAction*>(read->getChild(0));
        path->setTarget(path->getTarget());
        EXPECT_EQ(tbTransform::getNum(true), before + 4);
        EXPECT_TRUE(path->moveTo(0.5f));
        const tbRef<tbTransform> above(path->getTarget());
        EXPECT_TRUE(tbtest::near(placeOf(above.get()), tbVec3(5, 0, 0), 0.05f));
        above->addChild(read.get()); // now they must not hold each other
    }
    EXPECT_EQ(tbTransform::getNum(true), before);
}
