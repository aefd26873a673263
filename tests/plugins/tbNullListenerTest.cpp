#include <plugins/null/tbNullListener.h>

#include <tamber/audio/tbAudioLevelScale.h>
#include <tamber/audio/tbAudioPriorityScale.h>
#include <tamber/audio/tbEmitter.h>
#include <tamber/kernel/tbStats.h>
#include <tests/support/Near.h>
#include <tests/support/TestScene.h>

#include <gtest/gtest.h>

namespace
{

tbEmitter* addPlaying(tbGroup* parent, const char* wave)
{
    auto* emitter = new tbEmitter;
    emitter->setWaveName(wave);
    parent->addChild(emitter);
    emitter->play();
    return emitter;
}

class NullListenerTest : public testing::Test
{
protected:
    template <class Scale>
    tbStyle* addScaled(tbGroup* parent, float factor)
    {
        auto* scale = new Scale;
        scale->set(factor);
        return scene.addStyle(parent, scale);
    }
    /// What a walk hands over, in its order: the wave and both scales in percent.
    std::string heard()
    {
        std::string text;
        listener->listen(scene);
        for (int i = 0; i < listener->getNumSounds(); ++i)
        {
            const tbNullSound& sound = *listener->getSound(i);
            text += sound.wave + '@' + std::to_string(int(sound.audioLevelScale * 100)) + '/' +
                    std::to_string(int(sound.priorityScale * 100)) + ' ';
        }
        return text;
    }

    tbtest::TestScene scene;
    tbRef<tbNullListener> listener = new tbNullListener;
};

// Counts the direct calls of its scene.
class CalledGroup : public tbGroup
{
public:
    using tbGroup::applyDirect;
    void applyDirect(tbListener*, bool before) const override { calls += before ? "(" : ")"; }

    mutable std::string calls;
};

} // namespace

TEST_F(NullListenerTest, WritesDownEveryParameterWithThePlaceInTheWorld)
{
    tbEmitter* emitter = addPlaying(scene.addTransform(nullptr, 10, 0, 0), "bell.wav");
    emitter->setXYZ(tbVec3(1, 2, 3));
    emitter->setMinDistance(4);
    emitter->setMaxDistance(50);
    emitter->setAudioLevel(0.5f);
    emitter->setPriority(7);
    emitter->setPitch(1.5f);
    emitter->setPan(-0.25f);
    emitter->enableLooping(true);
    emitter->enableDoppler(true);
    listener->listen(scene);
    ASSERT_EQ(listener->getNumSounds(), 1);
    const tbNullSound& sound = *listener->getSound(0);
    EXPECT_EQ(sound.emitter, emitter);
    EXPECT_TRUE(tbtest::near(sound.position, tbVec3(11, 2, 3)));
    EXPECT_EQ(sound.wave, "bell.wav");
    EXPECT_EQ(sound.minDistance, 4.0f);
    EXPECT_EQ(sound.maxDistance, 50.0f);
    EXPECT_EQ(sound.audioLevel, 0.5f);
    EXPECT_EQ(sound.priority, 7.0f);
    EXPECT_EQ(sound.pitch, 1.5f);
    EXPECT_EQ(sound.pan, -0.25f);
    EXPECT_TRUE(sound.looping && sound.doppler);
    EXPECT_EQ(listener->getSound(1), nullptr);
}

TEST_F(NullListenerTest, HearsWhatPlaysWithScalesThatHoldForTheirSubtreeOnly)
{
    addPlaying(scene, "a");
    tbStyle* quiet = addScaled<tbAudioLevelScale>(scene, 0.5f);
    auto* silent = new tbEmitter;
    quiet->addChild(silent);
    addPlaying(silent, "b");
    addPlaying(addScaled<tbAudioPriorityScale>(quiet, 0.25f), "c");
    addPlaying(scene, nullptr);
    for (int walk = 1; walk <= 2; ++walk)
    {
        EXPECT_EQ(heard(), "a@100/100 b@50/100 c@50/25 @100/100 ") << walk;
        EXPECT_EQ(listener->getNumCommits(), 4 * walk);
    }
}

TEST_F(NullListenerTest, SilentBranchesAreNotVisited)
{
    scene.addTree(nullptr, 4, 3);
    scene->addChild(new tbEmitter);
    const tbRef<tbStats> stats(new tbStats);
    listener->getTravContext()->setStats(stats.get());
    addPlaying(scene.addGroup(), "one");
    listener->listen(scene);
    EXPECT_EQ(listener->getNumSounds(), 1);
    EXPECT_EQ(stats->getCount(tbGroup::getClassType()), 1);
    EXPECT_EQ(stats->getCount(tbEmitter::getClassType()), 1);
}

TEST_F(NullListenerTest, SilencedAndSelectedEmitters)
{
    tbEmitter* horn = addPlaying(scene, "horn");
    tbEmitter* drum = addPlaying(scene, "drum");
    listener->listen(scene);
    listener->select(horn);
    EXPECT_STREQ(listener->getWave(), "horn");
    listener->silence(horn);
    ASSERT_EQ(listener->getNumSounds(), 1);
    EXPECT_EQ(listener->getSound(0)->emitter, drum);
    listener->select(horn);
    EXPECT_EQ(listener->getWave(), nullptr);
    EXPECT_TRUE(!listener->isOpen() && listener->open() && listener->isOpen());
    listener->close();
    EXPECT_EQ(listener->getNumSounds(), 0);
}

TEST_F(NullListenerTest, SceneCallsAroundTheWalkAndNothingHearsNothing)
{
    auto* node = new CalledGroup;
    scene->addChild(node);
    scene->addDirectCall(tbScene::DIRECT_LISTENER_BEFORE, node);
    scene->addDirectCall(tbScene::DIRECT_LISTENER_AFTER, node);
    listener->listen(scene);
    EXPECT_EQ(node->calls, "()");
    listener->listen(nullptr);
    listener->setTravContext(nullptr);
    listener->listen(scene);
    EXPECT_EQ(listener->getNumWalks(), 1);
}
