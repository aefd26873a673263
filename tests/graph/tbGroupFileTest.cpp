#include <tamber/graph/tbModel.h>
#include <tamber/graph/tbScene.h>
#include <tamber/io/tbFile.h>
#include <tests/graph/GraphModel.h>
#include <tests/support/Near.h>
#include <tests/support/TempFile.h>

#include <gtest/gtest.h>

namespace
{

class GraphFile : public testing::Test
{
protected:
    void save(const tbGroup* root)
    {
        tbFile file;
        ASSERT_TRUE(file.create(path.c_str()));
        ASSERT_NE(file.writeObject(root), nullptr);
        ASSERT_TRUE(file.write());
    }
    tbRef<tbGroup> load()
    {
        tbFile file;
        EXPECT_TRUE(file.open(path.c_str(), "r"));
        return tbRef<tbGroup>(static_cast<tbGroup*>(file.readObject(0)));
    }

    tbtest::TempDirectory directory;
    const std::string path = directory.path("graph.tb");
};

} // namespace

TEST_F(GraphFile, NodesComeBackWithFlagsOrderAndSharing)
{
    const tbRef<tbScene> scene(new tbScene);
    auto* transform = new tbTransform;
    auto* model = new tbModel;
    auto* shared = new tbGroup;
    scene->addChild(transform);
    scene->addChild(model);
    scene->addChild(shared);
    transform->addChild(shared);
    transform->setXYZ(1, 2, 3);
    transform->setNodeFlags(tbGroup::NODE_SHARE);
    model->setColliderMask(0x42);
    model->enable(false);
    shared->setName("shared");
    save(scene.get());
    const tbRef<tbGroup> read = load();
    ASSERT_TRUE(read && read->isOfExactType(tbScene::getClassType()));
    ASSERT_EQ(read->getNumChildren(), 3);
    EXPECT_EQ(read->getTravFlags(), scene->getTravFlags());
    EXPECT_EQ(read->getChild(0)->getNodeFlags(), tbGroup::NODE_SHARE);
    EXPECT_TRUE(
        tbtest::near(*static_cast<tbTransform*>(read->getChild(0))->getMatrix(), *transform->getMatrix()));
    EXPECT_TRUE(static_cast<tbTransform*>(read->getChild(0))->getVolume()->isEmpty());
    EXPECT_EQ(static_cast<tbModel*>(read->getChild(1))->getColliderMask(), 0x42u);
    EXPECT_FALSE(static_cast<tbModel*>(read->getChild(1))->isEnabled());
    EXPECT_EQ(read->getChild(0)->getChild(0), read->getChild(2));
    EXPECT_STREQ(read->getChild(2)->getName(), "shared");
    EXPECT_EQ(read->getChild(2)->getRefCount(), 2);
    EXPECT_EQ(read->getChild(1)->getRefCount(), 1);
}

TEST_F(GraphFile, ContentsThatTheFileDoesNotClaimAreHeldAllTheSame)
{
    const tbRef<tbGroup> root(new tbGroup);
    root->addChild(new tbGroup);
    root->addChild(new tbTransform);
    save(root.get());
    const tbRef<tbGroup> read = load();
    ASSERT_EQ(read->getNumChildren(), 2);
    EXPECT_TRUE(read->anyTravFlags(tbGroup::TF_MATRIX));
    EXPECT_EQ(read->getRefCount(), 1);
}
