#include <tamber/collide/tbBoxFence.h>

#include <tamber/graph/tbGroupType.h>
#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbiWhole.h>

TB_DEFINE_NODE_CLASS(tbBoxFence, tbFence)

tbBoxFence::tbBoxFence()
{
    initInstance();
}

tbBoxFence::tbBoxFence(const tbBoxFence& other) : tbFence(other), volume(other.volume)
{
    initInstance();
}

tbBoxFence::tbBoxFence(const tbBoxFence& other, Disposable disposable)
    : tbFence(other, disposable),
      volume(other.volume)
{
}

tbBoxFence& tbBoxFence::operator=(const tbBoxFence& other)
{
    tbFence::operator=(other);
    volume = other.volume;
    return *this;
}

tbBoxFence::~tbBoxFence()
{
    deleteInstance();
}

void tbBoxFence::makeEmpty()
{
    volume.makeEmpty();
}

void tbBoxFence::extendAround(const tbVolume& other)
{
    volume.extendAround(other);
}

void tbBoxFence::setMinCorner(const tbVec3& corner)
{
    volume.setMin(corner);
    dirtyUp(TF_FENCE);
}

void tbBoxFence::setMaxCorner(const tbVec3& corner)
{
    volume.setMax(corner);
    dirtyUp(TF_FENCE);
}

tbBase* tbBoxFence::createCopy() const
{
    return tbiCopyOf(*this);
}

tbBase* tbBoxFence::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbBoxFence(*this, Disposable{arena});
}

tbGroup* tbBoxFence::copyGroup() const
{
    return makeLike(this, &tbBoxFence::copy);
}

tbGroup* tbBoxFence::cloneGroup() const
{
    return makeLike(this, &tbBoxFence::clone);
}

void tbBoxFence::copy(const tbBoxFence& other)
{
    volume = other.volume;
    tbFence::copy(other);
}

void tbBoxFence::clone(const tbBoxFence& other)
{
    volume = other.volume;
    tbFence::clone(other);
}

tbEntry* tbBoxFence::read(tbFile* file, tbEntry* entry)
{
    entry = tbFence::read(file, entry);
    if (entry)
        volume.read(entry);
    return entry;
}

tbEntry* tbBoxFence::write(tbFile* file, tbEntry* entry) const
{
    tbEntry* created = tbFence::write(file, entry);
    if (!entry)
        entry = created;
    if (entry)
        volume.write(entry);
    return created;
}
