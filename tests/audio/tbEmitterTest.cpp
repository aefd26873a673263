#include <tamber/audio/tbEmitter.h>

#include <plugins/null/tbNullListener.h>
#include <tamber/audio/tbAudioLevelScale.h>
#include <tamber/trav/tbPrune.h>
#include <tamber/trav/tbTraitStack.h>
#include <tests/support/Matrices.h>
#include <tests/support/Near.h>
#include <tests/support/SavedCopy.h>
#include <tests/support/TestScene.h>

#include <gtest/gtest.h>

namespace
{

class Listener : public testing::Test
{
protected:
    class Device : public tbNullListener
    {
    public:
        using tbNullListener::hasBeenUpdated;
        using tbNullListener::hasStopped;
    };

    const tbRef<Device> listener{new Device};
};

} // namespace

TEST(Emitter, PlayingRaisesFlagsOnceAndStoppingLowersThem)
{
    tbtest::TestScene scene;
    auto* emitter = new tbEmitter;
    scene.addGroup()->addChild(emitter);
    scene.update();
    EXPECT_TRUE(scene->anyTravFlags(tbGroup::TF_HAS_EMITTER));
    EXPECT_FALSE(scene->anyTravFlags(0x4000));
    emitter->play();
    EXPECT_TRUE(scene->anyTravFlags(0x4000) && scene->anyTravFlags(tbGroup::TF_AUDIO));
    EXPECT_TRUE(emitter->isPlaying());
    scene.update();
    emitter->play();
    EXPECT_FALSE(scene->anyTravFlags(tbGroup::TF_AUDIO));
    emitter->stop();
    EXPECT_FALSE(scene->anyTravFlags(0x4000));
    EXPECT_TRUE(scene->anyTravFlags(tbGroup::TF_HAS_EMITTER));
}

TEST(Emitter, SceneKnowsWhatPlaysOnceEach)
{
    tbtest::TestScene scene;
    tbEmitter* emitters[3];
    for (tbEmitter*& emitter : emitters)
    {
        emitter = new tbEmitter;
        scene->addChild(emitter);
        emitter->play();
    }
    scene.update();
    scene.update();
    ASSERT_EQ(scene->getNumPlayingEmitters(), 3);
    emitters[0]->stop();
    scene.update();
    ASSERT_EQ(scene->getNumPlayingEmitters(), 2);
    EXPECT_EQ(scene->getPlayingEmitter(0), emitters[2]);
    const tbRef<tbEmitter> held(emitters[1]);
    emitters[1]->detach();
    EXPECT_EQ(scene->getNumPlayingEmitters(), 1);
    scene->removeChild(emitters[2]); // destroys it
    EXPECT_EQ(scene->getNumPlayingEmitters(), 0);
    EXPECT_FALSE(scene->anyTravFlags(0x4000));
    scene->addChild(emitters[1]);
    scene.update();
    EXPECT_EQ(scene->getNumPlayingEmitters(), 1);
}

TEST(Emitter, IdentityMarkedMatricesLeaveThePosition)
{
    const tbRef<tbEmitter> emitter(new tbEmitter);
    emitter->setXYZ(tbVec3(1, 2, 3));
    tbMatrix m = tbtest::translation(10, 0, 0);
    emitter->xform(m);
    EXPECT_EQ(*emitter->getXYZ(), tbVec3(11, 2, 3));
    m.setType(tbMatrix::MATRIX_IDENT);
    emitter->xform(m);
    EXPECT_EQ(*emitter->getXYZ(), tbVec3(11, 2, 3));
}

TEST(Emitter, WaveNameMayComeFromItsOwnEnd)
{
    const tbRef<tbEmitter> emitter(new tbEmitter);
    emitter->setWaveName("sounds/wind-over-the-hills.wav");
    emitter->setWaveName(emitter->getWaveName() + 7);
    EXPECT_STREQ(emitter->getWaveName(), "wind-over-the-hills.wav");
    emitter->setWaveName(nullptr);
    EXPECT_EQ(emitter->getWaveName(), nullptr);
}

TEST(Emitter, CopiesPlayAndWhatComesBackFromAFileIsSilent)
{
    const tbRef<tbEmitter> emitter(new tbEmitter);
    emitter->play();
    const tbRef<tbEmitter> read = tbtest::savedCopy(emitter.get());
    ASSERT_TRUE(read);
    EXPECT_FALSE(read->isPlaying());
    EXPECT_TRUE(read->anyTravFlags(tbGroup::TF_HAS_EMITTER));
    const tbRef<tbGroup> copy(emitter->makeCopy());
    EXPECT_TRUE(static_cast<tbEmitter*>(copy.get())->isPlaying());
}

TEST_F(Listener, PrunedContextsTakeNoAudioTraits)
{
    auto* prune = new tbPrune;
    prune->enable(true);
    const tbRef<tbAudioLevelScale> scale(new tbAudioLevelScale);
    listener->addTrait(scale.get());
    listener->addTrait(prune);
    EXPECT_EQ(scale->getRefCount(), 2);
    listener->getTravContext()->reset();
    listener->applyTraits();
    tbTraitStack* stack = listener->getTravContext()->getTraitStack();
    EXPECT_EQ(stack->getTop(tbAudioLevelScale::getClassType()), nullptr);
    EXPECT_NE(stack->getTop(tbPrune::getClassType()), nullptr);
    listener->removeTrait(scale.get());
    EXPECT_EQ(scale->getRefCount(), 1);
}

TEST_F(Listener, DevicesReportTheEndOfASound)
{
    const tbRef<tbEmitter> emitter(new tbEmitter);
    emitter->play();
    EXPECT_TRUE(listener->hasBeenUpdated(emitter.get()));
    EXPECT_FALSE(listener->hasBeenUpdated(emitter.get()));
    listener->hasStopped(emitter.get());
    EXPECT_FALSE(emitter->isPlaying());
}

TEST_F(Listener, PlacementAndMatrixFollowEachOther)
{
    const tbMatrix place = tbtest::turn(30, 20, 10) * tbtest::translation(1, 2, 3);
    listener->setHPR(30, 20, 10);
    listener->setXYZ(1, 2, 3);
    EXPECT_TRUE(tbtest::near(*listener->getMatrix(), place));
    const tbRef<tbNullListener> other(new tbNullListener);
    other->setMatrix(place);
    EXPECT_TRUE(tbtest::near(*other->getHPR(), tbVec3(30, 20, 10), 1e-3f));
    EXPECT_EQ(*other->getXYZ(), tbVec3(1, 2, 3));
}
