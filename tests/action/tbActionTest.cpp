#include <tamber/action/tbAction.h>

#include <tamber/action/tbActionNode.h>
#include <tamber/kernel/tbRef.h>
#include <tests/support/Threads.h>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

class ActionTestFollower : public tbActionNode
{
    TB_CLASS(ActionTestFollower, tbActionNode)

public:
    ActionTestFollower() { initInstance(); }
    ActionTestFollower(const ActionTestFollower& other) : tbActionNode(other), target(other.target)
    {
        initInstance();
    }

    using tbActionNode::apply;
    bool apply(tbBase*, tbEvent*) override { return target != nullptr; }
    tbGroup* copyGroup() const override { return new ActionTestFollower(*this); }

    tbGroup* target = nullptr;

protected:
    ~ActionTestFollower() override { deleteInstance(); }
    void resolveGroup(const tbGroup* prev, tbGroup* copy) override
    {
        if (target == prev)
            target = copy;
    }
};

TB_DEFINE_ABSTRACT_NODE_CLASS(ActionTestFollower, tbActionNode)

namespace
{

class Uncopied : public tbActionNode
{
public:
    using tbActionNode::apply;
    bool apply(tbBase*, tbEvent*) override { return true; }
};

} // namespace

TEST(Action, ClassesMakeNoInstancesAndNoCopies)
{
    EXPECT_EQ(tbAction::createInstance(), nullptr);
    EXPECT_EQ(tbActionNode::createInstance(), nullptr);
    const tbRef<tbtest::FuncAction> action = new tbtest::FuncAction;
    EXPECT_EQ(action->createCopy(), nullptr);
    const tbRef<Uncopied> node = new Uncopied;
    EXPECT_EQ(node->createCopy(), nullptr);
}

TEST(ActionNode, CopyOfAGraphRefersToTheNewNodes)
{
    const tbRef<tbGroup> root = new tbGroup;
    auto* target = new tbGroup;
    auto* follower = new ActionTestFollower;
    follower->target = target;
    root->addChild(follower);
    root->addChild(target);
    const tbRef<tbGroup> copy = root->makeCopy();
    ASSERT_EQ(copy->getNumChildren(), 2);
    EXPECT_EQ(static_cast<ActionTestFollower*>(copy->getChild(0))->target, copy->getChild(1));
    EXPECT_EQ(follower->target, target);
}

TEST(ActionNode, WithoutACopyOfItsOwnIsLeftOut)
{
    const tbRef<tbGroup> root = new tbGroup;
    root->addChild(new Uncopied);
    root->addChild(new tbGroup);
    const tbRef<tbGroup> copy = root->makeCopy();
    EXPECT_EQ(copy->getNumChildren(), 1);
}
