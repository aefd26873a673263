#pragma once

#include <tamber/trav/tbAudioTraitType.h>
#include <tamber/trav/tbTrait.h>

class tbListener;

// The family of traits that hand sound state to the listener's device. The trait stack calls apply(tbListener*) when the
// trait must take effect and is not in effect already.
class TB_API tbAudioTrait : public tbTrait
{
    TB_CLASS_OF(tbAudioTrait, tbTrait, tbAudioTraitType)

public:
    void apply(tbTravContext* context) const override;
    /// Brings the state to the listener's device, and tells the trait stack with setAppliedTrait().
    virtual void apply(tbListener* listener) const = 0;

protected:
    tbAudioTrait();
    tbAudioTrait(const tbAudioTrait& other);
    tbAudioTrait(const tbAudioTrait& other, Disposable disposable);
    tbAudioTrait& operator=(const tbAudioTrait& other);
    ~tbAudioTrait() override;
};
