#pragma once

#include <tamber/audio/tbAudioScale.h>

// Scales the audio level of every emitter heard below the node that carries it.
class TB_API tbAudioLevelScale : public tbAudioScale
{
    TB_CLASS(tbAudioLevelScale, tbAudioScale)

public:
    tbAudioLevelScale();
    tbAudioLevelScale(const tbAudioLevelScale& other);
    /// A copy for createDisposableCopy(): it lives in the arena and is not registered with its class.
    tbAudioLevelScale(const tbAudioLevelScale& other, tbArena* arena);
    tbAudioLevelScale& operator=(const tbAudioLevelScale& other) = default;

    tbBase* createCopy() const override;
    tbBase* createDisposableCopy(tbArena* arena) const override;
    using tbAudioScale::apply;
    using tbAudioScale::get;
    void apply(tbListener* listener) const override;

protected:
    ~tbAudioLevelScale() override;
};
