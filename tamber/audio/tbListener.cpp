#include <tamber/audio/tbListener.h>

#include <tamber/audio/tbEmitter.h>
#include <tamber/trav/tbAudioTrait.h>
#include <tamber/trav/tbAudioTraitType.h>
#include <tamber/trav/tbTravTrait.h>
#include <tamber/trav/tbTravTraitType.h>
#include <tamber/trav/tbiTraitList.h>

TB_DEFINE_ABSTRACT_CLASS(tbListener, tbBase)

namespace
{

tbTravContext* makeContext()
{
    auto* context = new tbTravContext;
    if (!context)
        return nullptr;
    context->ref();
    constexpr auto kinds = tbTraitStack::AUDIO_STACK | tbTraitStack::TRAV_STACK;
    context->setTraitStack(new tbTraitStack(kinds, true));
    return context;
}

} // namespace

tbListener::tbListener() : position(0, 0, 0), orientation(0, 0, 0), travContext(makeContext())
{
    initInstance();
    matrix.makeIdent();
}

tbListener::tbListener(const tbListener& other)
    : tbBase(other),
      matrix(other.matrix),
      position(other.position),
      orientation(other.orientation),
      travContext(makeContext())
{
    initInstance();
    tbiHoldTraits(audioTraits, other.audioTraits);
    tbiHoldTraits(travTraits, other.travTraits);
}

tbListener& tbListener::operator=(const tbListener& other)
{
    if (this == &other)
        return *this;
    tbBase::operator=(other);
    matrix = other.matrix;
    position = other.position;
    orientation = other.orientation;
    tbiDropTraits(audioTraits);
    tbiDropTraits(travTraits);
    tbiHoldTraits(audioTraits, other.audioTraits);
    tbiHoldTraits(travTraits, other.travTraits);
    return *this;
}

tbListener::~tbListener()
{
    deleteInstance();
    tbiDropTraits(audioTraits);
    tbiDropTraits(travTraits);
    if (travContext)
        travContext->unRef();
}

void tbListener::loadSounds() {}

void tbListener::addTrait(tbTravTrait* trait)
{
    tbiHoldTrait(travTraits, trait);
}

void tbListener::addTrait(tbAudioTrait* trait)
{
    tbiHoldTrait(audioTraits, trait);
}

void tbListener::removeTrait(tbTravTrait* trait)
{
    tbiDropTrait(travTraits, trait);
}

void tbListener::removeTrait(tbAudioTrait* trait)
{
    tbiDropTrait(audioTraits, trait);
}

void tbListener::setTravContext(tbTravContext* context)
{
    if (context)
        context->ref();
    if (travContext)
        travContext->unRef();
    travContext = context;
}

void tbListener::applyTraits()
{
    if (!travContext)
        return;
    tbiPushTraits(travTraits, travContext);
    if (!travContext->anyFlags(tbTravContext::PRUNE))
        tbiPushTraits(audioTraits, travContext);
}

void tbListener::setXYZ(const tbVec3& where)
{
    position = where;
    matrix.setXYZ(where[0], where[1], where[2]);
}

void tbListener::setXYZ(float x, float y, float z)
{
    setXYZ(tbVec3(x, y, z));
}

void tbListener::setHPR(const tbVec3& hpr)
{
    orientation = hpr;
    matrix.setHPR(hpr[0], hpr[1], hpr[2]);
}

void tbListener::setHPR(float heading, float pitch, float roll)
{
    setHPR(tbVec3(heading, pitch, roll));
}

void tbListener::setMatrix(const tbMatrix& placement)
{
    matrix = placement;
    matrix.getXYZ(position[0], position[1], position[2]);
    matrix.getHPR(orientation[0], orientation[1], orientation[2]);
}

// What a listener without a device answers.
void tbListener::setWave(const char*) {}
const char* tbListener::getWave() const
{
    return nullptr;
}
void tbListener::enableLooping(bool) {}
bool tbListener::isLoopingEnabled() const
{
    return false;
}
void tbListener::setMinDistance(float) {}
float tbListener::getMinDistance() const
{
    return 0.0f;
}
void tbListener::setMaxDistance(float) {}
float tbListener::getMaxDistance() const
{
    return 0.0f;
}
void tbListener::setPriority(float) {}
float tbListener::getPriority() const
{
    return 1.0f;
}
void tbListener::setPriorityScale(float) {}
float tbListener::getPriorityScale() const
{
    return 1.0f;
}
void tbListener::setAudioLevel(float) {}
float tbListener::getAudioLevel() const
{
    return 1.0f;
}
void tbListener::setAudioLevelScale(float) {}
float tbListener::getAudioLevelScale() const
{
    return 1.0f;
}
void tbListener::setPan(float) {}
float tbListener::getPan() const
{
    return 0.0f;
}
void tbListener::setPitch(float) {}
float tbListener::getPitch() const
{
    return 1.0f;
}
void tbListener::enableDoppler(bool) {}
bool tbListener::isDopplerEnabled() const
{
    return false;
}

void* tbListener::getEmitterData(const tbEmitter* emitter)
{
    return emitter->emitterData;
}

void tbListener::setEmitterData(tbEmitter* emitter, void* data)
{
    emitter->emitterData = data;
}

unsigned int tbListener::getEmitterFlags(const tbEmitter* emitter)
{
    return emitter->emitterFlags;
}

bool tbListener::hasBeenUpdated(tbEmitter* emitter)
{
    return emitter->hasBeenUpdated();
}

void tbListener::hasStopped(tbEmitter* emitter)
{
    emitter->hasStopped();
}
