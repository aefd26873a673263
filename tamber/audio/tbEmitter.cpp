#include <tamber/audio/tbEmitter.h>

#include <tamber/audio/tbListener.h>
#include <tamber/graph/tbGroupType.h>
#include <tamber/graph/tbScene.h>
#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/kernel/tbiText.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/math/tbMatrix.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>

#include <cstring>

TB_DEFINE_NODE_CLASS(tbEmitter, tbGroup)

namespace
{

constexpr unsigned TF_HAS_PLAYING_EMITTER = 0x4000;

} // namespace

tbEmitter::tbEmitter() : position(0, 0, 0)
{
    initInstance();
    addTravFlags(TF_HAS_EMITTER);
}

tbEmitter::tbEmitter(const tbEmitter& other) : tbGroup(other), position(0, 0, 0)
{
    initInstance();
    addTravFlags(TF_HAS_EMITTER);
    assign(other);
}

tbEmitter::tbEmitter(const tbEmitter& other, Disposable disposable)
    : tbGroup(other, disposable),
      emitterFlags(other.emitterFlags),
      position(other.position),
      minDistance(other.minDistance),
      maxDistance(other.maxDistance),
      audioLevel(other.audioLevel),
      priority(other.priority),
      pitch(other.pitch),
      pan(other.pan),
      looping(other.looping)
{
    if (!other.waveName)
        return;
    const std::size_t bytes = std::strlen(other.waveName) + 1;
    waveName = static_cast<char*>(disposable.arena->malloc(bytes));
    if (waveName)
        std::memcpy(waveName, other.waveName, bytes);
}

tbEmitter& tbEmitter::operator=(const tbEmitter& other)
{
    if (this != &other)
    {
        tbGroup::operator=(other);
        assign(other);
    }
    return *this;
}

tbEmitter::~tbEmitter()
{
    deleteInstance();
    tbScene::forgetEmitter(this);
    tbMemory::free(waveName);
}

// A copy of an emitter that plays, plays: splitting a shared emitter makes it heard at every place.
void tbEmitter::assign(const tbEmitter& other)
{
    const bool wasPlaying = isPlaying();
    emitterFlags = other.emitterFlags;
    position = other.position;
    tbEmitter::setWaveName(other.waveName);
    minDistance = other.minDistance;
    maxDistance = other.maxDistance;
    audioLevel = other.audioLevel;
    priority = other.priority;
    pitch = other.pitch;
    pan = other.pan;
    looping = other.looping;
    if (isPlaying())
        dirtyUp(TF_HAS_PLAYING_EMITTER | TF_AUDIO | TF_UPDATE);
    else if (wasPlaying)
        cleanUp(TF_HAS_PLAYING_EMITTER);
}

void tbEmitter::copy(const tbEmitter& other)
{
    assign(other);
    tbGroup::copy(other);
}

void tbEmitter::clone(const tbEmitter& other)
{
    assign(other);
    tbGroup::clone(other);
}

tbBase* tbEmitter::createCopy() const
{
    return tbiCopyOf(*this);
}

tbBase* tbEmitter::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbEmitter(*this, Disposable{arena});
}

tbGroup* tbEmitter::copyGroup() const
{
    return makeLike(this, &tbEmitter::copy);
}

tbGroup* tbEmitter::cloneGroup() const
{
    return makeLike(this, &tbEmitter::clone);
}

void tbEmitter::play()
{
    if (isPlaying())
        return;
    emitterFlags |= UPDATED | PLAYING;
    addTravFlags(TF_UPDATE);
    dirtyUp(TF_HAS_PLAYING_EMITTER | TF_AUDIO);
}

void tbEmitter::stop()
{
    if (!isPlaying())
        return;
    emitterFlags &= ~(UPDATED | PLAYING);
    addTravFlags(TF_UPDATE);
    dirtyUp(TF_AUDIO);
    cleanUp(TF_HAS_PLAYING_EMITTER);
}

bool tbEmitter::hasBeenUpdated()
{
    const bool updated = (emitterFlags & UPDATED) != 0;
    emitterFlags &= ~UPDATED;
    return updated;
}

void tbEmitter::hasStopped()
{
    stop();
}

void tbEmitter::setXYZ(const tbVec3& where)
{
    position = where;
}

void tbEmitter::xform(const tbMatrix& m)
{
    if ((m.getType() & tbMatrix::MATRIX_IDENT) == 0)
        position.xformPt(tbVec3(position), m);
}

void tbEmitter::setWaveName(const char* wave)
{
    tbiSetText(waveName, wave);
}

void tbEmitter::enableLooping(bool on)
{
    looping = on;
}

void tbEmitter::setMinDistance(float distance)
{
    minDistance = distance;
}

void tbEmitter::setMaxDistance(float distance)
{
    maxDistance = distance;
}

void tbEmitter::setPriority(float value)
{
    priority = value;
}

void tbEmitter::setAudioLevel(float level)
{
    audioLevel = level;
}

void tbEmitter::setPitch(float value)
{
    pitch = value;
}

void tbEmitter::setPan(float value)
{
    pan = value;
}

void tbEmitter::enableDoppler(bool on)
{
    setFlag(DOPPLER, on);
}

void tbEmitter::enablePositionable(bool on)
{
    setFlag(POSITIONABLE, on);
}

void tbEmitter::setFlag(unsigned flag, bool on)
{
    emitterFlags = on ? emitterFlags | flag : emitterFlags & ~flag;
}

// The list of playing emitters is not ordered: a removal moves its last entry into the gap.
void tbEmitter::update(tbTravContext* context)
{
    if (tbScene* scene = context->getScene())
    {
        if (isPlaying())
            scene->addPlayingEmitter(this);
        else
            scene->removePlayingEmitter(this);
    }
    tbGroup::update(context);
}

void tbEmitter::apply(tbListener* listener) const
{
    if (isPlaying())
    {
        tbTravContext* context = listener->getTravContext();
        if (tbTraitStack* stack = context ? context->getTraitStack() : nullptr)
            stack->applyAudioTraits(listener);
        listener->setWave(waveName);
        listener->enableLooping(looping);
        listener->setMinDistance(minDistance);
        listener->setMaxDistance(maxDistance);
        listener->setAudioLevel(audioLevel);
        listener->setPriority(priority);
        listener->setPitch(pitch);
        listener->setPan(pan);
        listener->enableDoppler(isDopplerEnabled());
        listener->commit(this);
    }
    tbGroup::apply(listener);
}

void tbEmitter::removedFrom(tbGroup* parent)
{
    tbScene::forgetEmitter(this);
    // A scene that still holds it by another way takes it up again with the next update.
    if (isPlaying() && getNumParents() > 0)
        dirtyUp(TF_AUDIO);
    tbGroup::removedFrom(parent);
}

// An emitter never loses the bit that says that it is one, and keeps the one of playing while it plays.
void tbEmitter::cleanUp(unsigned bits)
{
    tbGroup::cleanUp(bits & ~(TF_HAS_EMITTER | (isPlaying() ? TF_HAS_PLAYING_EMITTER : 0u)));
}

// A file never says that a sound plays: playing belongs to the moment.
tbEntry* tbEmitter::read(tbFile* file, tbEntry* entry)
{
    entry = tbGroup::read(file, entry);
    if (!entry)
        return nullptr;
    emitterFlags = unsigned(entry->readInt()) & ~(UPDATED | PLAYING);
    position.read(entry);
    const int length = entry->readCount(1);
    tbEmitter::setWaveName(nullptr);
    if (length > 0)
    {
        waveName = static_cast<char*>(tbMemory::malloc(std::size_t(length)));
        if (!waveName)
        {
            entry->fail("memory is out");
            return nullptr;
        }
        entry->readString(waveName, length);
    }
    minDistance = entry->readFloat();
    maxDistance = entry->readFloat();
    audioLevel = entry->readFloat();
    priority = entry->readFloat();
    pitch = entry->readFloat();
    pan = entry->readFloat();
    looping = entry->readInt() != 0;
    addTravFlags(TF_HAS_EMITTER);
    removeTravFlags(TF_HAS_PLAYING_EMITTER);
    return entry->hasFailed() ? nullptr : entry;
}

tbEntry* tbEmitter::write(tbFile* file, tbEntry* entry) const
{
    tbEntry* created = tbGroup::write(file, entry);
    if (!entry)
        entry = created;
    if (!entry)
        return nullptr;
    entry->writeInt(int(emitterFlags & ~(UPDATED | PLAYING)));
    position.write(entry);
    entry->writeInt(waveName ? int(std::strlen(waveName)) + 1 : 0);
    if (waveName)
        entry->writeString(waveName);
    entry->writeFloat(minDistance);
    entry->writeFloat(maxDistance);
    entry->writeFloat(audioLevel);
    entry->writeFloat(priority);
    entry->writeFloat(pitch);
    entry->writeFloat(pan);
    entry->writeInt(looping ? 1 : 0);
    return created;
}
