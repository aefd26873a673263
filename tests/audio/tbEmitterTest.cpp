#include <tamber/audio/tbEmitter.h>

#include <tamber/audio/tbAudioLevelScale.h>
#include <tamber/audio/tbAudioPriorityScale.h>
#include <tamber/audio/tbListener.h>
#include <tamber/math/tbMatrix.h>
#include <tamber/render/tbStyle.h>
#include <tamber/trav/tbPrune.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>
#include <tests/support/Matrices.h>
#include <tests/support/Near.h>
#include <tests/support/SavedCopy.h>
#include <tests/support/TestScene.h>

#include <gtest/gtest.h>

#include <string>

namespace
{

// Writes down what a walk hands over.
class RecordingListener : public tbListener
{
public:
    RecordingListener()
    {
        tbAudioLevelScale::getClassType(); // a type has a default once it is set up
        tbAudioPriorityScale::getClassType();
    }
    void listen(tbGroup* root) override
    {
        heard.clear();
        getTravContext()->reset();
        getTravContext()->getTraitStack()->applyDefaultAudioTraits(this, true);
        applyTraits();
        root->apply(this);
    }
    bool open() override { return true; }
    void close() override {}
    bool isOpen() const override { return true; }
    void beginListen() override {}
    void endListen() override {}
    void select(const tbEmitter*) override {}
    void silence(const tbEmitter*) override {}
    void setMasterLevel(float) override {}
    float getMasterLevel() const override { return 1; }
    void setWave(const char* file) override { wave = file ? file : "-"; }
    void setPitch(float) override {}
    void setAudioLevelScale(float scale) override { levelScale = scale; }
    void setPriorityScale(float scale) override { priorityScale = scale; }
    void commit(const tbEmitter*) override
    {
        heard += wave + '@' + std::to_string(int(levelScale * 100)) + '/' +
                 std::to_string(int(priorityScale * 100)) + ' ';
    }
    using tbListener::hasBeenUpdated;
    using tbListener::hasStopped;

    std::string heard;
    std::string wave;
    float levelScale = -1;
    float priorityScale = -1;
};

tbEmitter* addEmitter(tbGroup* parent, const char* wave)
{
    auto* emitter = new tbEmitter;
    emitter->setWaveName(wave);
    parent->addChild(emitter);
    return emitter;
}

template <class Scale>
tbStyle* addScaled(tbGroup* parent, float factor)
{
    auto* style = new tbStyle;
    auto* scale = new Scale;
    scale->set(factor);
    style->addTrait(scale);
    parent->addChild(style);
    return style;
}

} // namespace

TEST(Emitter, PlayingRaisesFlagsOnceAndStoppingLowersThem)
{
    tbtest::TestScene scene;
    tbEmitter* emitter = addEmitter(scene.addGroup(), "bird");
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
        emitter = addEmitter(scene, "w");
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

TEST(Emitter, ComesBackFromAFileSilent)
{
    const tbRef<tbEmitter> emitter(new tbEmitter);
    emitter->setWaveName("wind.wav");
    emitter->setMaxDistance(55);
    emitter->setPan(-0.5f);
    emitter->enableLooping(true);
    emitter->enablePositionable(false);
    emitter->enableDoppler(true);
    emitter->play();
    const tbRef<tbEmitter> read = tbtest::savedCopy(emitter.get());
    ASSERT_TRUE(read);
    EXPECT_STREQ(read->getWaveName(), "wind.wav");
    EXPECT_EQ(read->getMaxDistance(), 55.0f);
    EXPECT_EQ(read->getPan(), -0.5f);
    EXPECT_TRUE(read->isLoopingEnabled() && read->isDopplerEnabled());
    EXPECT_FALSE(read->isPositionable() || read->isPlaying());
    EXPECT_TRUE(read->anyTravFlags(tbGroup::TF_HAS_EMITTER));
    const tbRef<tbGroup> copy(emitter->makeCopy());
    EXPECT_TRUE(static_cast<tbEmitter*>(copy.get())->isPlaying());
}

TEST(Listener, HearsWhatPlaysAndNothingElse)
{
    tbtest::TestScene scene;
    tbEmitter* outer = addEmitter(scene, "outer");
    tbEmitter* inner = addEmitter(outer, "inner");
    addEmitter(scene, "silent");
    inner->play();
    const tbRef<RecordingListener> listener(new RecordingListener);
    listener->listen(scene);
    EXPECT_EQ(listener->heard, "inner@100/100 ");
    outer->play();
    inner->setWaveName(nullptr);
    listener->listen(scene);
    EXPECT_EQ(listener->heard, "outer@100/100 -@100/100 ");
}

TEST(Listener, ScalesHoldForTheirSubtreeOnly)
{
    tbtest::TestScene scene;
    addEmitter(scene, "a")->play();
    tbStyle* quiet = addScaled<tbAudioLevelScale>(scene, 0.5f);
    addEmitter(quiet, "b")->play();
    addEmitter(addScaled<tbAudioPriorityScale>(quiet, 0.25f), "c")->play();
    addEmitter(scene, "d")->play();
    const tbRef<RecordingListener> listener(new RecordingListener);
    for (int walk = 0; walk < 2; ++walk)
    {
        listener->listen(scene);
        EXPECT_EQ(listener->heard, "a@100/100 b@50/100 c@50/25 d@100/100 ");
    }
}

TEST(Listener, PrunedContextsTakeNoAudioTraits)
{
    const tbRef<RecordingListener> listener(new RecordingListener);
    auto* prune = new tbPrune;
    prune->enable(true);
    const tbRef<tbAudioLevelScale> scale(new tbAudioLevelScale);
    listener->addTrait(scale.get());
    listener->addTrait(static_cast<tbAudioTrait*>(nullptr));
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

TEST(Listener, DevicesReportTheEndOfASound)
{
    const tbRef<tbEmitter> emitter(new tbEmitter);
    const tbRef<RecordingListener> listener(new RecordingListener);
    emitter->play();
    EXPECT_TRUE(listener->hasBeenUpdated(emitter.get()));
    EXPECT_FALSE(listener->hasBeenUpdated(emitter.get()));
    listener->hasStopped(emitter.get());
    EXPECT_FALSE(emitter->isPlaying());
}

TEST(Listener, PlacementAndMatrixFollowEachOther)
{
    const tbRef<RecordingListener> listener(new RecordingListener);
    const tbMatrix place = tbtest::turn(30, 20, 10) * tbtest::translation(1, 2, 3);
    listener->setHPR(30, 20, 10);
    listener->setXYZ(1, 2, 3);
    EXPECT_TRUE(tbtest::near(*listener->getMatrix(), place));
    const tbRef<RecordingListener> other(new RecordingListener);
    other->setMatrix(place);
    EXPECT_TRUE(tbtest::near(*other->getHPR(), tbVec3(30, 20, 10), 1e-3f));
    EXPECT_EQ(*other->getXYZ(), tbVec3(1, 2, 3));
}
