#include <tamber/collide/tbColliderMask.h>

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/trav/tbTravContext.h>

TB_DEFINE_TRAV_TRAIT_CLASS(tbColliderMask, tbTravTrait)

tbColliderMask::tbColliderMask()
{
    initInstance();
}

tbColliderMask::tbColliderMask(const tbColliderMask& other) : tbTravTrait(other), mask(other.mask)
{
    initInstance();
}

tbColliderMask::tbColliderMask(const tbColliderMask& other, Disposable disposable)
    : tbTravTrait(other, disposable),
      mask(other.mask)
{
}

tbColliderMask& tbColliderMask::operator=(const tbColliderMask& other) = default;

tbColliderMask::~tbColliderMask()
{
    deleteInstance();
}

tbBase* tbColliderMask::createCopy() const
{
    return tbiCopyOf(*this);
}

tbBase* tbColliderMask::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbColliderMask(*this, Disposable{arena});
}

tbEntry* tbColliderMask::read(tbFile* file, tbEntry* entry)
{
    entry = tbTravTrait::read(file, entry);
    if (entry)
        mask = unsigned(entry->readInt());
    return entry;
}

tbEntry* tbColliderMask::write(tbFile* file, tbEntry* entry) const
{
    entry = tbTravTrait::write(file, entry);
    if (entry)
        entry->writeInt(int(mask));
    return entry;
}

void tbColliderMask::apply(tbTravContext* context) const
{
    context->setColliderMask(mask);
}

bool tbColliderMask::isEqual(tbTrait* other) const
{
    return isSameKind(other) && *this == *static_cast<const tbColliderMask*>(other);
}

void tbColliderMask::setMask(unsigned newMask)
{
    mask = newMask;
}
