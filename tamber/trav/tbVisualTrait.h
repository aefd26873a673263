#pragma once

#include <tamber/trav/tbTrait.h>
#include <tamber/trav/tbVisualTraitType.h>

class tbCamera;

// The family of traits that hand render state to the camera's device. The trait stack calls apply(tbCamera*) when the
// trait must take effect and is not in effect already.
class TB_API tbVisualTrait : public tbTrait
{
    TB_CLASS_OF(tbVisualTrait, tbTrait, tbVisualTraitType)

public:
    void apply(tbTravContext* context) const override;
    /// Brings the state to the camera's device, and tells the trait stack with setAppliedTrait().
    virtual void apply(tbCamera* camera) const = 0;

protected:
    tbVisualTrait();
    tbVisualTrait(const tbVisualTrait& other);
    tbVisualTrait(const tbVisualTrait& other, Disposable disposable);
    tbVisualTrait& operator=(const tbVisualTrait& other);
    ~tbVisualTrait() override;
};
