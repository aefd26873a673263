#include <tamber/trav/tbSort.h>

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/trav/tbTravContext.h>

TB_DEFINE_TRAV_TRAIT_CLASS(tbSort, tbTravTrait)

tbSort::tbSort()
{
    initInstance();
}

tbSort::tbSort(const tbSort& other) : tbTravTrait(other), mask(other.mask)
{
    initInstance();
}

tbSort& tbSort::operator=(const tbSort& other) = default;

tbSort::~tbSort()
{
    deleteInstance();
}

tbBase* tbSort::createCopy() const
{
    return tbiCopyOf(*this);
}

// Unlike setMask(), keeps every bit of the file: a file read and written again stays the same.
tbEntry* tbSort::read(tbFile* file, tbEntry* entry)
{
    entry = tbTravTrait::read(file, entry);
    if (entry)
        mask = unsigned(entry->readInt());
    return entry;
}

tbEntry* tbSort::write(tbFile* file, tbEntry* entry) const
{
    entry = tbTravTrait::write(file, entry);
    if (entry)
        entry->writeInt(int(mask));
    return entry;
}

void tbSort::apply(tbTravContext* context) const
{
    context->setFlags((context->getFlags() & ~unsigned(tbTravContext::SORT_ALL)) | mask);
}

bool tbSort::isEqual(tbTrait* other) const
{
    return isSameKind(other) && mask == static_cast<const tbSort*>(other)->mask;
}

void tbSort::setMask(unsigned newMask)
{
    mask = newMask & tbTravContext::SORT_ALL;
}
