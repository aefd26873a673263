#pragma once

#include <tamber/trav/tbTrait.h>
#include <tamber/trav/tbTravTraitType.h>

// The family of traits that set up the walk itself: apply(tbTravContext*) writes the context.
class TB_API tbTravTrait : public tbTrait
{
    TB_CLASS_OF(tbTravTrait, tbTrait, tbTravTraitType)

protected:
    tbTravTrait();
    tbTravTrait(const tbTravTrait& other);
    tbTravTrait(const tbTravTrait& other, Disposable disposable);
    tbTravTrait& operator=(const tbTravTrait& other);
    ~tbTravTrait() override;
};
