#include "tbiTraitApply.h"

#include <tamber/display/tbCamera.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbVisualTrait.h>

void tbiApplyTrait(const tbVisualTrait* trait, tbCamera* camera, const std::atomic<tbTraitApplyFunc>& func)
{
    if (!camera)
        return;
    camera->setAppliedVisualTrait(trait);
    if (tbTravContext* context = camera->getTravContext())
        if (tbTraitStack* stack = context->getTraitStack())
            stack->setAppliedTrait(trait);
    if (tbTraitApplyFunc draw = func.load(std::memory_order_acquire))
        draw(trait, camera);
}

void tbiSetTransparencyInput(tbTravContext* context, unsigned bits, bool on)
{
    if (on)
        context->addFlags(bits);
    else
        context->removeFlags(bits);
    context->setTransparencyFlags();
}
