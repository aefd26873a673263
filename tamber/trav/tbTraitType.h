#pragma once

#include <tamber/kernel/tbType.h>

struct tbiTraitTypes;

// What the runtime types of the three trait families have in common: each numbers its types in the order of their
// making, and a type's number is the place of its traits in a tbTraitStack.
class TB_API tbTraitType : public tbType
{
protected:
    tbTraitType(tbiTraitTypes& familyTypes, tbType* parent, const char* name, CreateFunc create,
                RemoveFunc remove, tbPlugIn* plugIn);
    /// The last type of the family takes the free place, and its number.
    ~tbTraitType() override;

private:
    tbiTraitTypes& family;
};
