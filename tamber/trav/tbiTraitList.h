// Lists of traits as nodes, cameras, listeners and colliders keep them: with a reference on each, in the order in
// which a walk pushes them.
#pragma once

#include <tamber/containers/tbList.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>

/// Appends a trait. Null and traits without a type are refused.
template <class Trait>
bool tbiHoldTrait(tbTList<Trait*>& traits, Trait* trait)
{
    if (!trait || !trait->getType() || traits.add(trait) < 0)
        return false;
    trait->ref();
    return true;
}

template <class Trait>
void tbiHoldTraits(tbTList<Trait*>& traits, const tbTList<Trait*>& source)
{
    for (Trait* trait : source)
        tbiHoldTrait(traits, trait);
}

/// The last trait moves into the free place. A stranger is ignored.
template <class Trait>
void tbiDropTrait(tbTList<Trait*>& traits, Trait* trait)
{
    if (traits.checkRemove(trait))
        trait->unRef();
}

template <class Trait>
void tbiDropTraits(tbTList<Trait*>& traits)
{
    for (Trait* trait : traits)
        trait->unRef();
    traits.reset();
}

/// Nothing happens while the context has no trait stack; so in tbiPopTraits().
template <class Trait>
void tbiPushTraits(const tbTList<Trait*>& traits, tbTravContext* context)
{
    if (tbTraitStack* stack = context->getTraitStack())
        for (Trait* trait : traits)
            stack->pushTrait(trait, context);
}

/// In reverse order.
template <class Trait>
void tbiPopTraits(const tbTList<Trait*>& traits, tbTravContext* context)
{
    if (tbTraitStack* stack = context->getTraitStack())
        for (int i = traits.getNum() - 1; i >= 0; --i)
            stack->popTrait(traits[i], context);
}
