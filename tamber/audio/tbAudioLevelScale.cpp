#include <tamber/audio/tbAudioLevelScale.h>

#include <tamber/audio/tbListener.h>
#include <tamber/kernel/tbiWhole.h>

TB_DEFINE_AUDIO_TRAIT_CLASS(tbAudioLevelScale, tbAudioScale)

tbAudioLevelScale::tbAudioLevelScale()
{
    initInstance();
}

tbAudioLevelScale::tbAudioLevelScale(const tbAudioLevelScale& other) : tbAudioScale(other)
{
    initInstance();
}

tbAudioLevelScale::tbAudioLevelScale(const tbAudioLevelScale& other, tbArena* arena)
    : tbAudioScale(other, Disposable{arena})
{
}

tbAudioLevelScale::~tbAudioLevelScale()
{
    deleteInstance();
}

tbBase* tbAudioLevelScale::createCopy() const
{
    return tbiCopyOf(*this);
}

tbBase* tbAudioLevelScale::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbAudioLevelScale(*this, arena);
}

void tbAudioLevelScale::apply(tbListener* listener) const
{
    listener->setAudioLevelScale(get());
    recordApplied(listener);
}
