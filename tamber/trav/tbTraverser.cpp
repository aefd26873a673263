#include <tamber/trav/tbTraverser.h>

#include <tamber/graph/tbGroup.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/trav/tbTravContext.h>

TB_DEFINE_CLASS(tbTraverser, tbBase)

tbTraverser::tbTraverser()
{
    initInstance();
}

tbTraverser::tbTraverser(const tbTraverser& other)
    : tbBase(other),
      groupBreakPoint(other.groupBreakPoint),
      isOfTypeBreakPoint(other.isOfTypeBreakPoint),
      exactTypeBreakPoint(other.exactTypeBreakPoint),
      context(other.context)
{
    initInstance();
}

tbTraverser& tbTraverser::operator=(const tbTraverser& other) = default;

tbTraverser::~tbTraverser()
{
    deleteInstance();
}

tbBase* tbTraverser::createCopy() const
{
    return tbiCopyOf(*this);
}

void tbTraverser::traverse(tbGroup* root)
{
    if (!root || !context)
        return;
    reset();
    root->apply(this, false);
}

void tbTraverser::reset()
{
    if (context)
        context->reset();
}

tbTraverser::TRAV_STATE tbTraverser::apply(tbGroup* group)
{
    if (group == groupBreakPoint.get())
        return TRAV_STOP;
    if (exactTypeBreakPoint && group->getType() == exactTypeBreakPoint)
        return TRAV_STOP;
    if (isOfTypeBreakPoint && group->getType()->isOfType(isOfTypeBreakPoint))
        return TRAV_STOP;
    return TRAV_CONTINUE;
}

tbTraverser::TRAV_STATE tbTraverser::preApply(tbGroup*)
{
    return TRAV_CONTINUE;
}

void tbTraverser::setGroupBreakPoint(tbGroup* group)
{
    groupBreakPoint = group;
}

void tbTraverser::setIsOfTypeBreakPoint(const tbType* type)
{
    isOfTypeBreakPoint = type;
}

void tbTraverser::setExactTypeBreakPoint(const tbType* type)
{
    exactTypeBreakPoint = type;
}

void tbTraverser::setTravContext(tbTravContext* newContext)
{
    context = newContext;
}
