#include "tbFaceCull.h"

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbArena.h>

#include "tbiTraitApply.h"

TB_DEFINE_VISUAL_TRAIT_CLASS(tbFaceCull, tbVisualTrait)

namespace
{
std::atomic<tbTraitApplyFunc> faceCullFunc{nullptr};
}

tbFaceCull::tbFaceCull()
{
    initInstance();
}

tbFaceCull::tbFaceCull(const tbFaceCull& other) : tbVisualTrait(other), face(other.face)
{
    initInstance();
}

tbFaceCull::tbFaceCull(const tbFaceCull& other, Disposable disposable)
    : tbVisualTrait(other, disposable),
      face(other.face)
{
}

tbFaceCull& tbFaceCull::operator=(const tbFaceCull& other)
{
    tbVisualTrait::operator=(other);
    face = other.face;
    return *this;
}

tbFaceCull::~tbFaceCull()
{
    deleteInstance();
}

bool tbFaceCull::setFace(FACE value)
{
    if (value < CULL_NONE || value > CULL_BOTH)
        return false;
    face = value;
    return true;
}

void tbFaceCull::setApplyFunc(tbTraitApplyFunc func)
{
    faceCullFunc.store(func, std::memory_order_release);
}

tbBase* tbFaceCull::createCopy() const
{
    return new tbFaceCull(*this);
}

tbBase* tbFaceCull::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbFaceCull(*this, Disposable{arena});
}

tbEntry* tbFaceCull::read(tbFile* file, tbEntry* entry)
{
    entry = tbVisualTrait::read(file, entry);
    if (entry)
        setFace(FACE(entry->readInt()));
    return entry;
}

tbEntry* tbFaceCull::write(tbFile* file, tbEntry* entry) const
{
    entry = tbVisualTrait::write(file, entry);
    if (entry)
        entry->writeInt(face);
    return entry;
}

bool tbFaceCull::isEqual(tbTrait* other) const
{
    return isSameKind(other) && face == static_cast<const tbFaceCull*>(other)->face;
}

void tbFaceCull::apply(tbCamera* camera) const
{
    tbiApplyTrait(this, camera, faceCullFunc);
}
