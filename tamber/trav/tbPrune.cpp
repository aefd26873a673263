#include <tamber/trav/tbPrune.h>

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/trav/tbTravContext.h>

TB_DEFINE_TRAV_TRAIT_CLASS(tbPrune, tbTravTrait)

tbPrune::tbPrune()
{
    initInstance();
}

tbPrune::tbPrune(const tbPrune& other) : tbTravTrait(other), enabled(other.enabled)
{
    initInstance();
}

tbPrune& tbPrune::operator=(const tbPrune& other) = default;

tbPrune::~tbPrune()
{
    deleteInstance();
}

tbBase* tbPrune::createCopy() const
{
    return tbiCopyOf(*this);
}

tbEntry* tbPrune::read(tbFile* file, tbEntry* entry)
{
    entry = tbTravTrait::read(file, entry);
    if (entry)
        enabled = entry->readBool();
    return entry;
}

tbEntry* tbPrune::write(tbFile* file, tbEntry* entry) const
{
    entry = tbTravTrait::write(file, entry);
    if (entry)
        entry->writeInt(enabled ? 1 : 0);
    return entry;
}

void tbPrune::apply(tbTravContext* context) const
{
    if (enabled)
        context->addFlags(tbTravContext::PRUNE);
    else
        context->removeFlags(tbTravContext::PRUNE);
}

bool tbPrune::isEqual(tbTrait* other) const
{
    return isSameKind(other) && enabled == static_cast<const tbPrune*>(other)->enabled;
}

void tbPrune::enable(bool newEnabled)
{
    enabled = newEnabled;
}
