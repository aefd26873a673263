#pragma once

#include <tamber/kernel/tbBase.h>
#include <tamber/math/tbVec3.h>

#include <string>

class tbEmitter;

// One sound as a listener of the null module took it up.
struct tbNullSound
{
    const tbEmitter* emitter =
        nullptr; ///< not referenced: compare it, and follow it only while its graph lives
    tbVec3 position = tbVec3(0, 0, 0); ///< in world coordinates
    std::string wave;                  ///< empty for an emitter without a wave
    bool looping = false;
    float minDistance = 0.0f;
    float maxDistance = 0.0f;
    float priority = 1.0f;
    float priorityScale = 1.0f;
    float audioLevel = 1.0f;
    float audioLevelScale = 1.0f;
    float pan = 0.0f;
    float pitch = 1.0f;
    bool doppler = false;
};

// How programs read what was heard: they need this header, and no link to the module.
class tbNullRecorder
{
public:
    /// What the last walk took up and nobody silenced since, in the order of the walk.
    virtual int getNumSounds() const = 0;
    /// Null when there is no such sound. Valid until the next walk.
    virtual const tbNullSound* getSound(int i) const = 0;
    /// All walks, and all sounds taken up, since the listener was made.
    virtual std::int64_t getNumWalks() const = 0;
    virtual std::int64_t getNumCommits() const = 0;

    /// The record of a listener of the null module; null for any other object.
    static tbNullRecorder* of(tbBase* object) { return dynamic_cast<tbNullRecorder*>(object); }

protected:
    ~tbNullRecorder() = default;
};
