#include <tamber/collide/tbColliderTarget.h>

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/trav/tbTravContext.h>

TB_DEFINE_TRAV_TRAIT_CLASS(tbColliderTarget, tbTravTrait)

tbColliderTarget::tbColliderTarget()
{
    initInstance();
}

tbColliderTarget::tbColliderTarget(const tbColliderTarget& other) : tbTravTrait(other), targets(other.targets)
{
    initInstance();
}

tbColliderTarget::tbColliderTarget(const tbColliderTarget& other, Disposable disposable)
    : tbTravTrait(other, disposable),
      targets(other.targets)
{
}

tbColliderTarget& tbColliderTarget::operator=(const tbColliderTarget& other) = default;

tbColliderTarget::~tbColliderTarget()
{
    deleteInstance();
}

tbBase* tbColliderTarget::createCopy() const
{
    return tbiCopyOf(*this);
}

tbBase* tbColliderTarget::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbColliderTarget(*this, Disposable{arena});
}

tbEntry* tbColliderTarget::read(tbFile* file, tbEntry* entry)
{
    entry = tbTravTrait::read(file, entry);
    if (entry)
        targets = unsigned(entry->readInt()) & TARGET_ALL;
    return entry;
}

tbEntry* tbColliderTarget::write(tbFile* file, tbEntry* entry) const
{
    entry = tbTravTrait::write(file, entry);
    if (entry)
        entry->writeInt(int(targets));
    return entry;
}

void tbColliderTarget::apply(tbTravContext* context) const
{
    context->setFlags((context->getFlags() & ~unsigned(TARGET_ALL)) | targets);
}

bool tbColliderTarget::isEqual(tbTrait* other) const
{
    return isSameKind(other) && *this == *static_cast<const tbColliderTarget*>(other);
}

void tbColliderTarget::setTargets(unsigned newTargets)
{
    targets = newTargets & TARGET_ALL;
}
