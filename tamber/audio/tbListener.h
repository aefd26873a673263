#pragma once

#include <tamber/containers/tbList.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/math/tbMatrix.h>
#include <tamber/math/tbVec3.h>

class tbAudioTrait;
class tbEmitter;
class tbGroup;
class tbTravContext;
class tbTravTrait;

// The ear of a scene. The kernel walks the graph for it and hands it each playing emitter's parameters; a sound
// plug-in completes the class and makes them heard. Here the setters of parameters do nothing.
class TB_API tbListener : public tbBase
{
    TB_CLASS(tbListener, tbBase)

public:
    /// Walks the graph with this listener.
    virtual void listen(tbGroup* root) = 0;
    virtual void loadSounds();
    virtual bool open() = 0;
    virtual void close() = 0;
    virtual bool isOpen() const = 0;
    virtual void beginListen() = 0;
    virtual void endListen() = 0;
    virtual void select(const tbEmitter* emitter) = 0;
    /// Takes up the parameters that were just set for `emitter`.
    virtual void commit(const tbEmitter* emitter) = 0;
    virtual void silence(const tbEmitter* emitter) = 0;
    virtual void setMasterLevel(float level) = 0;
    virtual float getMasterLevel() const = 0;
    /// Null traits and traits without a type are ignored. The listener references what it holds.
    virtual void addTrait(tbTravTrait* trait);
    virtual void addTrait(tbAudioTrait* trait);
    virtual void removeTrait(tbTravTrait* trait);
    virtual void removeTrait(tbAudioTrait* trait);
    virtual void setTravContext(tbTravContext* context);
    /// Pushes the traversal traits and, unless the context is pruned, the audio traits.
    virtual void applyTraits();
    virtual void setXYZ(const tbVec3& position);
    virtual void setXYZ(float x, float y, float z);
    /// Degrees.
    virtual void setHPR(const tbVec3& hpr);
    virtual void setHPR(float heading, float pitch, float roll);
    virtual void setMatrix(const tbMatrix& placement);
    virtual void setWave(const char* name);
    virtual const char* getWave() const;
    virtual void enableLooping(bool looping);
    virtual bool isLoopingEnabled() const;
    virtual void setMinDistance(float distance);
    virtual float getMinDistance() const;
    virtual void setMaxDistance(float distance);
    virtual float getMaxDistance() const;
    virtual void setPriority(float priority);
    virtual float getPriority() const;
    virtual void setPriorityScale(float scale);
    virtual float getPriorityScale() const;
    virtual void setAudioLevel(float level);
    virtual float getAudioLevel() const;
    virtual void setAudioLevelScale(float scale);
    virtual float getAudioLevelScale() const;
    virtual void setPan(float pan);
    virtual float getPan() const;
    virtual void setPitch(float pitch);
    virtual float getPitch() const;
    virtual void enableDoppler(bool doppler);
    virtual bool isDopplerEnabled() const;

    const tbMatrix* getMatrix() const { return &matrix; }
    const tbVec3* getXYZ() const { return &position; }
    const tbVec3* getHPR() const { return &orientation; }
    tbTravContext* getTravContext() const { return travContext; }
    int getNumAudioTraits() const { return audioTraits.getNum(); }
    tbAudioTrait* getAudioTrait(int i) const { return audioTraits[i]; }
    int getNumTravTraits() const { return travTraits.getNum(); }
    tbTravTrait* getTravTrait(int i) const { return travTraits[i]; }

protected:
    tbListener();
    tbListener(const tbListener& other);
    tbListener& operator=(const tbListener& other);
    ~tbListener() override;

    // What a sound plug-in keeps with an emitter.
    static void* getEmitterData(const tbEmitter* emitter);
    static void setEmitterData(tbEmitter* emitter, void* data);
    static unsigned int getEmitterFlags(const tbEmitter* emitter);
    /// Whether playing changed since the last question; clears the mark.
    static bool hasBeenUpdated(tbEmitter* emitter);
    /// The device reports that the sound has ended.
    static void hasStopped(tbEmitter* emitter);

private:
    tbMatrix matrix;
    tbVec3 position;
    tbVec3 orientation;
    tbTList<tbAudioTrait*> audioTraits;
    tbTList<tbTravTrait*> travTraits;
    tbTravContext* travContext;
};
