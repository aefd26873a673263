#include "tbNullListener.h"

#include <tamber/audio/tbEmitter.h>
#include <tamber/graph/tbScene.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>

#include <algorithm>

TB_DEFINE_CLASS(tbNullListener, tbListener)

namespace
{

constexpr unsigned TF_HAS_PLAYING_EMITTER = 0x4000;

// A listener that no memory was left for has no context.
void visitWhatPlays(tbTravContext* context)
{
    if (context)
        context->setTravMask(TF_HAS_PLAYING_EMITTER);
}

} // namespace

tbNullListener::tbNullListener()
{
    initInstance();
    visitWhatPlays(getTravContext());
}

tbNullListener::tbNullListener(const tbNullListener& other)
    : tbListener(other),
      masterLevel(other.masterLevel)
{
    initInstance();
    visitWhatPlays(getTravContext());
}

tbNullListener& tbNullListener::operator=(const tbNullListener& other)
{
    tbListener::operator=(other);
    masterLevel = other.masterLevel;
    return *this;
}

tbNullListener::~tbNullListener()
{
    deleteInstance();
}

tbBase* tbNullListener::createCopy() const
{
    return new tbNullListener(*this);
}

bool tbNullListener::open()
{
    opened = true;
    return true;
}

void tbNullListener::close()
{
    opened = false;
    beginListen();
}

void tbNullListener::listen(tbGroup* root)
{
    tbTravContext* walk = getTravContext();
    if (!root || !walk)
        return;
    const bool isScene = root->isOfType(tbScene::getClassType());
    walk->setScene(isScene ? static_cast<tbScene*>(root) : nullptr);
    if (isScene)
        root->applyDirect(this, true);
    walk->reset();
    beginListen();
    if (tbTraitStack* stack = walk->getTraitStack())
        stack->applyDefaultAudioTraits(this, true);
    applyTraits();
    static_cast<const tbGroup*>(root)->apply(this);
    endListen();
    if (isScene)
        root->applyDirect(this, false);
}

void tbNullListener::beginListen()
{
    current = {};
    sounds.clear();
}

void tbNullListener::endListen()
{
    ++numWalks;
}

void tbNullListener::select(const tbEmitter* emitter)
{
    const auto last = std::find_if(sounds.rbegin(), sounds.rend(),
                                   [emitter](const tbNullSound& sound) { return sound.emitter == emitter; });
    current = last != sounds.rend() ? *last : tbNullSound();
}

void tbNullListener::commit(const tbEmitter* emitter)
{
    if (!emitter)
        return;
    current.emitter = emitter;
    current.position = *emitter->getXYZ();
    if (const tbTravContext* walk = getTravContext())
        current.position.xformPt(*emitter->getXYZ(), walk->getMatrix());
    sounds.push_back(current);
    ++numCommits;
}

void tbNullListener::silence(const tbEmitter* emitter)
{
    std::erase_if(sounds, [emitter](const tbNullSound& sound) { return sound.emitter == emitter; });
}

void tbNullListener::setWave(const char* wave)
{
    current.wave = wave ? wave : "";
}

const char* tbNullListener::getWave() const
{
    return current.wave.empty() ? nullptr : current.wave.c_str();
}

const tbNullSound* tbNullListener::getSound(int i) const
{
    return i >= 0 && i < getNumSounds() ? &sounds[std::size_t(i)] : nullptr;
}
