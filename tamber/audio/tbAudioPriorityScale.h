#pragma once

#include <tamber/audio/tbAudioScale.h>

// Scales the priority of every emitter heard below the node that carries it.
class TB_API tbAudioPriorityScale : public tbAudioScale
{
    TB_CLASS(tbAudioPriorityScale, tbAudioScale)

public:
    tbAudioPriorityScale();
    tbAudioPriorityScale(const tbAudioPriorityScale& other);
    /// A copy for createDisposableCopy(): it lives in the arena and is not registered with its class.
    tbAudioPriorityScale(const tbAudioPriorityScale& other, tbArena* arena);
    tbAudioPriorityScale& operator=(const tbAudioPriorityScale& other) = default;

    tbBase* createCopy() const override;
    tbBase* createDisposableCopy(tbArena* arena) const override;
    using tbAudioScale::apply;
    using tbAudioScale::get;
    void apply(tbListener* listener) const override;

protected:
    ~tbAudioPriorityScale() override;
};
