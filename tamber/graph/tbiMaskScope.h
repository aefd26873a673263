#pragma once

#include <tamber/collide/tbColliderMask.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbiScopes.h>

/// A model's collider mask on the trait stack; passed over on a context without one. It is held: a traverser may take
/// the model that it visits out of the graph.
class tbiMaskScope : public tbiScope
{
public:
    tbiMaskScope(tbTravContext* walk, tbColliderMask* colliderMask)
        : tbiScope(walk->getTraitStack() ? walk : nullptr),
          mask(colliderMask)
    {
        if (context)
            context->getTraitStack()->pushTrait(mask.get(), context);
    }
    ~tbiMaskScope()
    {
        if (context && context->getTraitStack())
            context->getTraitStack()->popTrait(mask.get(), context);
    }

private:
    const tbRef<tbColliderMask> mask;
};
