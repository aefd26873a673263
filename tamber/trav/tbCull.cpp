#include <tamber/trav/tbCull.h>

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/trav/tbTravContext.h>

TB_DEFINE_TRAV_TRAIT_CLASS(tbCull, tbTravTrait)

tbCull::tbCull()
{
    initInstance();
}

tbCull::tbCull(const tbCull& other) : tbTravTrait(other), mask(other.mask)
{
    initInstance();
}

tbCull::tbCull(const tbCull& other, tbArena* arena) : tbTravTrait(other, Disposable{arena}), mask(other.mask)
{
}

tbCull& tbCull::operator=(const tbCull& other) = default;

tbCull::~tbCull()
{
    deleteInstance();
}

tbBase* tbCull::createCopy() const
{
    return tbiCopyOf(*this);
}

tbBase* tbCull::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbCull(*this, arena);
}

tbEntry* tbCull::read(tbFile* file, tbEntry* entry)
{
    entry = tbTravTrait::read(file, entry);
    if (entry)
        mask = unsigned(entry->readInt());
    return entry;
}

tbEntry* tbCull::write(tbFile* file, tbEntry* entry) const
{
    entry = tbTravTrait::write(file, entry);
    if (entry)
        entry->writeInt(int(mask));
    return entry;
}

void tbCull::apply(tbTravContext* context) const
{
    context->setFlags((context->getFlags() & ~unsigned(tbTravContext::CULL_ALL)) | mask);
}

bool tbCull::isEqual(tbTrait* other) const
{
    return isSameKind(other) && mask == static_cast<const tbCull*>(other)->mask;
}

void tbCull::setMask(unsigned newMask)
{
    mask = newMask;
}
