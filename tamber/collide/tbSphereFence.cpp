#include <tamber/collide/tbSphereFence.h>

#include <tamber/graph/tbGroupType.h>
#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbiWhole.h>

TB_DEFINE_NODE_CLASS(tbSphereFence, tbFence)

tbSphereFence::tbSphereFence()
{
    initInstance();
}

tbSphereFence::tbSphereFence(const tbSphereFence& other) : tbFence(other), volume(other.volume)
{
    initInstance();
}

tbSphereFence::tbSphereFence(const tbSphereFence& other, Disposable disposable)
    : tbFence(other, disposable),
      volume(other.volume)
{
}

tbSphereFence& tbSphereFence::operator=(const tbSphereFence& other)
{
    tbFence::operator=(other);
    volume = other.volume;
    return *this;
}

tbSphereFence::~tbSphereFence()
{
    deleteInstance();
}

void tbSphereFence::makeEmpty()
{
    volume.makeEmpty();
}

void tbSphereFence::extendAround(const tbVolume& other)
{
    volume.extendAround(other);
}

void tbSphereFence::setRadius(float radius)
{
    volume.setRadius(radius);
    dirtyUp(TF_FENCE);
}

void tbSphereFence::setCenter(const tbVec3& center)
{
    volume.setCenter(center);
    dirtyUp(TF_FENCE);
}

tbBase* tbSphereFence::createCopy() const
{
    return tbiCopyOf(*this);
}

tbBase* tbSphereFence::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbSphereFence(*this, Disposable{arena});
}

tbGroup* tbSphereFence::copyGroup() const
{
    return makeLike(this, &tbSphereFence::copy);
}

tbGroup* tbSphereFence::cloneGroup() const
{
    return makeLike(this, &tbSphereFence::clone);
}

void tbSphereFence::copy(const tbSphereFence& other)
{
    volume = other.volume;
    tbFence::copy(other);
}

void tbSphereFence::clone(const tbSphereFence& other)
{
    volume = other.volume;
    tbFence::clone(other);
}

tbEntry* tbSphereFence::read(tbFile* file, tbEntry* entry)
{
    entry = tbFence::read(file, entry);
    if (entry)
        volume.read(entry);
    return entry;
}

tbEntry* tbSphereFence::write(tbFile* file, tbEntry* entry) const
{
    tbEntry* created = tbFence::write(file, entry);
    if (!entry)
        entry = created;
    if (entry)
        volume.write(entry);
    return created;
}
