#include "tbTransform.h"

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/math/tbQuat.h>
#include <tamber/math/tbVec3.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbiScopes.h>

TB_DEFINE_NODE_CLASS(tbTransform, tbGroup)

static_assert(sizeof(void*) != 8 || sizeof(tbTransform) <= 192, "transforms are many: keep them small");

namespace
{

// Every change but a shared instance alone makes bounds stale.
constexpr unsigned CHANGES_BOUNDS = 0xF7;
// Contents that want to know when a transform above them changes.
constexpr unsigned FOLLOWS_MATRIX = 0x3000;

} // namespace

tbTransform::tbTransform()
{
    initInstance();
    matrix.makeIdent();
}

tbTransform::tbTransform(const tbMatrix& m) : matrix(m)
{
    initInstance();
}

tbTransform::tbTransform(const tbTransform& other)
    : tbGroup(other),
      volume(other.volume),
      matrix(other.matrix)
{
    initInstance();
}

tbTransform::tbTransform(const tbTransform& other, Disposable disposable)
    : tbGroup(other, disposable),
      volume(other.volume),
      matrix(other.matrix)
{
}

tbTransform::~tbTransform()
{
    deleteInstance();
}

tbTransform& tbTransform::operator=(const tbTransform& other)
{
    if (this != &other)
    {
        tbGroup::operator=(other);
        assign(other);
    }
    return *this;
}

// What copy(), clone() and assignment do behind the group's part.
void tbTransform::assign(const tbTransform& other)
{
    volume = other.volume;
    matrix = other.matrix;
    dirtyUp(TF_MATRIX | TF_FENCE);
    dirtyChildren();
}

void tbTransform::copy(const tbTransform& other)
{
    if (this == &other)
        return;
    tbGroup::operator=(other);
    assign(other);
    tbGroup::copy(other);
}

void tbTransform::clone(const tbTransform& other)
{
    if (this == &other)
        return;
    tbGroup::operator=(other);
    assign(other);
    tbGroup::clone(other);
}

tbBase* tbTransform::createCopy() const
{
    return tbiCopyOf(*this);
}

tbBase* tbTransform::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbTransform(*this, Disposable{arena});
}

tbGroup* tbTransform::copyGroup() const
{
    return makeLike(this, &tbTransform::copy);
}

tbGroup* tbTransform::cloneGroup() const
{
    return makeLike(this, &tbTransform::clone);
}

tbEntry* tbTransform::write(tbFile* file, tbEntry* entry) const
{
    tbEntry* created = tbGroup::write(file, entry);
    if (tbEntry* target = entry ? entry : created)
        matrix.write(target);
    return created;
}

tbEntry* tbTransform::read(tbFile* file, tbEntry* entry)
{
    entry = tbGroup::read(file, entry);
    if (!entry)
        return nullptr;
    matrix.read(entry);
    volume.makeEmpty();
    return entry->hasFailed() ? nullptr : entry;
}

void tbTransform::getXYZ(float& x, float& y, float& z) const
{
    matrix.getXYZ(x, y, z);
}

void tbTransform::getXYZ(tbVec3& xyz) const
{
    float x, y, z;
    matrix.getXYZ(x, y, z);
    xyz = tbVec3(x, y, z);
}

void tbTransform::getHPR(float& h, float& p, float& r) const
{
    matrix.getHPR(h, p, r);
}

void tbTransform::getHPR(tbVec3& hpr) const
{
    float h, p, r;
    matrix.getHPR(h, p, r);
    hpr = tbVec3(h, p, r);
}

void tbTransform::getQuat(tbQuat& quat) const
{
    quat.setMatrix(matrix);
}

void tbTransform::setMatrix(const tbMatrix& m)
{
    matrix = m;
    matrixChanged();
}

void tbTransform::changed()
{
    dirtyUp(TF_MATRIX);
}

void tbTransform::setXYZ(float x, float y, float z)
{
    matrix.setXYZ(x, y, z);
    matrixChanged();
}

void tbTransform::setXYZ(const tbVec3& xyz)
{
    setXYZ(xyz[0], xyz[1], xyz[2]);
}

void tbTransform::setHPR(float h, float p, float r)
{
    matrix.setHPR(h, p, r);
    matrixChanged();
}

void tbTransform::setHPR(const tbVec3& hpr)
{
    setHPR(hpr[0], hpr[1], hpr[2]);
}

void tbTransform::setQuat(const tbQuat& quat)
{
    quat.getMatrix(matrix);
    matrixChanged();
}

void tbTransform::matrixChanged()
{
    dirtyChildren();
    dirtyUpFlags();
}

void tbTransform::dirtyChildren()
{
    dirtyDown(this, FOLLOWS_MATRIX, TF_MATRIX);
}

// Parents get these two flags and not the node's whole set: only matrix and bounds are news to them.
void tbTransform::dirtyUpFlags()
{
    constexpr unsigned NEWS = TF_MATRIX | TF_FENCE;
    addTravFlags(TF_MATRIX);
    const unsigned wanted = getTravFlags() | NEWS;
    for (tbGroup* parent : getParents())
        if ((wanted & ~parent->getTravFlags()) != 0)
            dirtyUpFrom(parent, NEWS);
}

void tbTransform::dirtyUp(unsigned bits)
{
    tbGroup::dirtyUp((bits & CHANGES_BOUNDS) != 0 ? bits | TF_FENCE : bits);
}

void tbTransform::addedTo(tbGroup* parent)
{
    addTravFlags(TF_MATRIX);
    dirtyChildren();
    tbGroup::addedTo(parent);
}

void tbTransform::removedFrom(tbGroup* parent)
{
    addTravFlags(TF_MATRIX);
    dirtyChildren();
    tbGroup::removedFrom(parent);
}
