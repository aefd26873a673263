#pragma once

#include <tamber/collide/tbColliderMask.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbiScopes.h>

/// A model's collider mask on the trait stack; passed over on a context without one.
class tbiMaskScope : public tbiScope
{
public:
    tbiMaskScope(tbTravContext* walk, tbColliderMask* colliderMask)
        : tbiScope(walk->getTraitStack() ? walk : nullptr),
          mask(colliderMask)
    {
        if (context)
            context->getTraitStack()->pushTrait(mask, context);
    }
    ~tbiMaskScope()
    {
        if (context && context->getTraitStack())
            context->getTraitStack()->popTrait(mask, context);
    }

private:
    tbColliderMask* mask;
};
