#include <tamber/action/tbActionNode.h>

#include <tests/support/SavedCopy.h>
#include <tests/support/TestScene.h>

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
    tbGroup* cloneGroup() const override { return copyGroup(); }

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

TEST(ActionNode, CopiesOfAGraphReferToTheNewNodesAndLeaveOutWhatHasNoCopy)
{
    const tbRef<tbGroup> outside = new tbGroup;
    const tbRef<tbGroup> root = new tbGroup;
    auto* target = tbtest::addNew(root.get(), new tbGroup);
    root->addChild(new Uncopied);
    for (tbGroup* followed : {target, outside.get(), root.get()})
        tbtest::addNew(target, new ActionTestFollower)->target = followed;
    for (const tbRef<tbGroup>& copy : {tbRef(root->makeCopy()), tbRef(root->makeClone())})
    {
        ASSERT_EQ(copy->getNumChildren(), 1);
        std::vector<tbGroup*> targets;
        for (tbGroup* follower : copy->getChild(0)->getChildren())
            targets.push_back(static_cast<ActionTestFollower*>(follower)->target);
        EXPECT_EQ(targets, (std::vector<tbGroup*>{copy->getChild(0), outside.get(), copy.get()}));
    }
    EXPECT_EQ(static_cast<ActionTestFollower*>(target->getChild(0))->target, target);
}

TEST(ActionNode, IsSavedWithoutItsChildren)
{
    const tbRef<ActionTestFollower> node = new ActionTestFollower;
    node->setName("follower");
    node->addChild(new tbGroup);
    const tbRef<ActionTestFollower> read = tbtest::savedCopy(node.get());
    ASSERT_TRUE(read);
    EXPECT_STREQ(read->getName(), "follower");
    EXPECT_EQ(read->getNumChildren(), 0);
}
