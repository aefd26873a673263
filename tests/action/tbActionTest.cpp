#include <tamber/action/tbAction.h>

#include <tamber/action/tbActionNode.h>
#include <tamber/io/tbFile.h>
#include <tamber/kernel/tbRef.h>
#include <tests/support/TempFile.h>
#include <tests/support/Threads.h>

#include <gtest/gtest.h>

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

TB_DEFINE_NODE_CLASS(ActionTestFollower, tbActionNode)

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

TEST(ActionNode, IsSavedWithoutItsChildren)
{
    const tbtest::TempDirectory directory;
    const std::string path = directory.path("node.tb");
    const tbRef<ActionTestFollower> node = new ActionTestFollower;
    node->setName("follower");
    node->addChild(new tbGroup);
    {
        tbFile file;
        ASSERT_TRUE(file.create(path.c_str()));
        ASSERT_NE(file.writeObject(node.get()), nullptr);
        ASSERT_TRUE(file.write());
    }
    tbFile file;
    ASSERT_TRUE(file.open(path.c_str(), "r"));
    const tbRef<tbBase> read = file.readObject(0);
    ASSERT_TRUE(read && read->isOfExactType(ActionTestFollower::getClassType()));
    EXPECT_STREQ(read->getName(), "follower");
    EXPECT_EQ(static_cast<tbGroup*>(read.get())->getNumChildren(), 0);
}
