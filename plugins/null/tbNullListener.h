#pragma once

#include <plugins/null/tbNullApi.h>
#include <plugins/null/tbNullSound.h>
#include <tamber/audio/tbListener.h>

#include <vector>

// A listener without a device: it walks a graph as a sounding one does and writes down what it would play. Opened or
// not, it hears the same.
class TB_NULL_API tbNullListener : public tbListener, public tbNullRecorder
{
    TB_CLASS(tbNullListener, tbListener)

public:
    /// Visits the branches in which something plays. A context set later brings a travel mask of its own.
    tbNullListener();
    /// Placement, traits and master level are copied; the copy has heard nothing and is closed.
    tbNullListener(const tbNullListener& other);
    tbNullListener& operator=(const tbNullListener& other);

    /// Any node may be the root; a scene also makes its direct calls. Nothing is acquired: the caller holds the
    /// scene for query.
    void listen(tbGroup* root) override;
    bool open() override;
    void close() override;
    bool isOpen() const override { return opened; }
    /// Forgets what was heard; listen() begins with it.
    void beginListen() override;
    void endListen() override;
    /// The parameters become those that were committed for `emitter` last, or the initial ones.
    void select(const tbEmitter* emitter) override;
    void commit(const tbEmitter* emitter) override;
    /// Takes the sounds of `emitter` out of the record.
    void silence(const tbEmitter* emitter) override;
    void setMasterLevel(float level) override { masterLevel = level; }
    float getMasterLevel() const override { return masterLevel; }

    // The parameters that the next commit() takes up.
    void setWave(const char* wave) override;
    /// Null while there is none.
    const char* getWave() const override;
    void enableLooping(bool looping) override { current.looping = looping; }
    bool isLoopingEnabled() const override { return current.looping; }
    void setMinDistance(float distance) override { current.minDistance = distance; }
    float getMinDistance() const override { return current.minDistance; }
    void setMaxDistance(float distance) override { current.maxDistance = distance; }
    float getMaxDistance() const override { return current.maxDistance; }
    void setPriority(float priority) override { current.priority = priority; }
    float getPriority() const override { return current.priority; }
    void setPriorityScale(float scale) override { current.priorityScale = scale; }
    float getPriorityScale() const override { return current.priorityScale; }
    void setAudioLevel(float level) override { current.audioLevel = level; }
    float getAudioLevel() const override { return current.audioLevel; }
    void setAudioLevelScale(float scale) override { current.audioLevelScale = scale; }
    float getAudioLevelScale() const override { return current.audioLevelScale; }
    void setPan(float pan) override { current.pan = pan; }
    float getPan() const override { return current.pan; }
    void setPitch(float pitch) override { current.pitch = pitch; }
    float getPitch() const override { return current.pitch; }
    void enableDoppler(bool doppler) override { current.doppler = doppler; }
    bool isDopplerEnabled() const override { return current.doppler; }

    tbBase* createCopy() const override;
    int getNumSounds() const override { return int(sounds.size()); }
    const tbNullSound* getSound(int i) const override;
    std::int64_t getNumWalks() const override { return numWalks; }
    std::int64_t getNumCommits() const override { return numCommits; }

protected:
    ~tbNullListener() override;

private:
    bool opened = false;
    float masterLevel = 1.0f;
    tbNullSound current;
    std::vector<tbNullSound> sounds;
    std::int64_t numWalks = 0;
    std::int64_t numCommits = 0;
};
