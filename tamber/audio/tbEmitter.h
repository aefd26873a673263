#pragma once

#include <tamber/graph/tbGroup.h>
#include <tamber/math/tbVec3.h>

class tbMatrix;

// A node that sounds. It carries the parameters of one sound and whether it plays; the listener walk hands them to
// the sound plug-in. Setters of parameters only store: a playing sound takes them up with the next walk.
class TB_API tbEmitter : public tbGroup
{
    TB_CLASS(tbEmitter, tbGroup)

public:
    tbEmitter();
    tbEmitter(const tbEmitter& other);
    tbEmitter& operator=(const tbEmitter& other);

    tbBase* createCopy() const override;
    tbBase* createDisposableCopy(tbArena* arena) const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    void update(tbTravContext* context) override;
    using tbGroup::apply;
    void apply(tbListener* listener) const override;

    virtual void setXYZ(const tbVec3& position);
    /// Carries the position by `m`.
    virtual void xform(const tbMatrix& m);
    /// A copy of `name`; null frees it.
    virtual void setWaveName(const char* name);
    virtual void enableLooping(bool looping);
    virtual void setMinDistance(float distance);
    virtual void setMaxDistance(float distance);
    virtual void setPriority(float priority);
    virtual void setAudioLevel(float level);
    virtual void setPitch(float pitch);
    virtual void setPan(float pan);
    virtual void enableDoppler(bool doppler);
    virtual void enablePositionable(bool positionable);

    void play();
    void stop();
    bool isPlaying() const { return (emitterFlags & PLAYING) != 0; }
    const tbVec3* getXYZ() const { return &position; }
    const char* getWaveName() const { return waveName; }
    bool isLoopingEnabled() const { return looping; }
    float getMinDistance() const { return minDistance; }
    float getMaxDistance() const { return maxDistance; }
    float getPriority() const { return priority; }
    float getAudioLevel() const { return audioLevel; }
    float getPitch() const { return pitch; }
    float getPan() const { return pan; }
    bool isDopplerEnabled() const { return (emitterFlags & DOPPLER) != 0; }
    bool isPositionable() const { return (emitterFlags & POSITIONABLE) != 0; }

protected:
    tbEmitter(const tbEmitter& other, Disposable disposable);
    ~tbEmitter() override;

    tbGroup* copyGroup() const override;
    tbGroup* cloneGroup() const override;
    void removedFrom(tbGroup* parent) override;
    void cleanUp(unsigned bits) override;

    void copy(const tbEmitter& other);
    void clone(const tbEmitter& other);

private:
    friend class tbListener;

    static constexpr unsigned UPDATED = 0x1; // raised by play(), asked for and cleared by the device
    static constexpr unsigned PLAYING = 0x4;
    static constexpr unsigned POSITIONABLE = 0x8;
    static constexpr unsigned DOPPLER = 0x10;

    void assign(const tbEmitter& other);
    void setFlag(unsigned flag, bool on);
    bool hasBeenUpdated();
    void hasStopped();

    unsigned int emitterFlags = POSITIONABLE;
    tbVec3 position;
    char* waveName = nullptr;
    float minDistance = 1.0f;
    float maxDistance = 100.0f;
    float audioLevel = 1.0f;
    float priority = 1.0f;
    float pitch = 1.0f;
    float pan = 0.0f;
    bool looping = false;
    void* emitterData = nullptr; // the sound plug-in's
};
