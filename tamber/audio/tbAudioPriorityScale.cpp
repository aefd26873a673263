#include <tamber/audio/tbAudioPriorityScale.h>

#include <tamber/audio/tbListener.h>
#include <tamber/kernel/tbiWhole.h>

TB_DEFINE_AUDIO_TRAIT_CLASS(tbAudioPriorityScale, tbAudioScale)

tbAudioPriorityScale::tbAudioPriorityScale()
{
    initInstance();
}

tbAudioPriorityScale::tbAudioPriorityScale(const tbAudioPriorityScale& other) : tbAudioScale(other)
{
    initInstance();
}

tbAudioPriorityScale::tbAudioPriorityScale(const tbAudioPriorityScale& other, tbArena* arena)
    : tbAudioScale(other, Disposable{arena})
{
}

tbAudioPriorityScale::~tbAudioPriorityScale()
{
    deleteInstance();
}

tbBase* tbAudioPriorityScale::createCopy() const
{
    return tbiCopyOf(*this);
}

tbBase* tbAudioPriorityScale::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbAudioPriorityScale(*this, arena);
}

void tbAudioPriorityScale::apply(tbListener* listener) const
{
    listener->setPriorityScale(get());
    recordApplied(listener);
}
