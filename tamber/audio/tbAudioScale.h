#pragma once

#include <tamber/trav/tbAudioTrait.h>

// What the two scales share: one factor that a listener multiplies into its own computation.
class TB_API tbAudioScale : public tbAudioTrait
{
public:
    bool operator==(const tbAudioScale& other) const;

    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    bool isEqual(tbTrait* other) const override;
    using tbAudioTrait::apply;

    /// Stored as given; what a negative factor means is the listener's affair.
    virtual void set(float factor);

    float get() const { return scale; }

protected:
    tbAudioScale() = default;
    tbAudioScale(const tbAudioScale& other) = default;
    tbAudioScale(const tbAudioScale& other, Disposable disposable);
    tbAudioScale& operator=(const tbAudioScale& other) = default;
    ~tbAudioScale() override = default;

    /// Tells the listener's trait stack that this trait is in effect.
    void recordApplied(tbListener* listener) const;

private:
    float scale = 1.0f;
};
