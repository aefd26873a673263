#include "tbModel.h"

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbiText.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/trav/tbTravContext.h>

#include "tbiMaskScope.h"

#include <cstring>

TB_DEFINE_NODE_CLASS(tbModel, tbTransform)

tbModel::tbModel() : colliderMask(new tbColliderMask)
{
    initInstance();
    setColliderMask(0);
}

tbModel::tbModel(const tbModel& other)
    : tbTransform(other),
      enabled(other.enabled),
      colliderMask(new tbColliderMask)
{
    initInstance();
    assign(other);
}

tbModel::~tbModel()
{
    deleteInstance();
    tbMemory::free(fileName);
}

// What copies and assignment do behind the transform's part.
void tbModel::assign(const tbModel& other)
{
    setFileName(other.fileName);
    enabled = other.enabled;
    if (colliderMask && other.colliderMask)
        *colliderMask = *other.colliderMask;
}

tbModel& tbModel::operator=(const tbModel& other)
{
    if (this != &other)
    {
        tbTransform::operator=(other);
        assign(other);
    }
    return *this;
}

void tbModel::copy(const tbModel& other)
{
    if (this == &other)
        return;
    tbTransform::copy(other);
    assign(other);
}

void tbModel::clone(const tbModel& other)
{
    if (this == &other)
        return;
    tbTransform::clone(other);
    assign(other);
}

tbBase* tbModel::createCopy() const
{
    return tbiCopyOf(*this);
}

tbGroup* tbModel::copyGroup() const
{
    return makeLike(this, &tbModel::copy);
}

tbGroup* tbModel::cloneGroup() const
{
    return makeLike(this, &tbModel::clone);
}

void tbModel::setFileName(const char* path)
{
    tbiSetText(fileName, path);
}

unsigned tbModel::getColliderMask() const
{
    return colliderMask ? colliderMask->getMask() : 0;
}

void tbModel::setColliderMask(unsigned mask)
{
    if (colliderMask)
        colliderMask->setMask(mask);
}

void tbModel::enable(bool on)
{
    enabled = on;
    if (on)
        dirtyUp(getTravFlags());
}

tbEntry* tbModel::write(tbFile* file, tbEntry* entry) const
{
    tbEntry* created = tbTransform::write(file, entry);
    tbEntry* target = entry ? entry : created;
    if (!target)
        return nullptr;
    target->writeInt(fileName ? int(std::strlen(fileName)) + 1 : 0);
    if (fileName)
        target->writeString(fileName);
    target->writeInt(enabled ? 1 : 0);
    target->writeInt(int(getColliderMask()));
    return created;
}

tbEntry* tbModel::read(tbFile* file, tbEntry* entry)
{
    entry = tbTransform::read(file, entry);
    if (!entry)
        return nullptr;
    const int length = entry->readCount(1);
    setFileName(nullptr);
    if (length > 0)
    {
        fileName = static_cast<char*>(tbMemory::malloc(std::size_t(length)));
        if (!fileName)
            return nullptr;
        entry->readString(fileName, length);
    }
    enabled = entry->readBool();
    setColliderMask(unsigned(entry->readInt()));
    return entry->hasFailed() ? nullptr : entry;
}

void tbModel::update(tbTravContext* context)
{
    if (enabled)
        tbTransform::update(context);
}

// Bounds above that are renewed while the model is off do not hold it: they are stale when it is enabled again, which
// raises this flag in them.
void tbModel::updateFences(tbTravContext* context)
{
    if (enabled)
        tbTransform::updateFences(context);
    else
        addTravFlags(TF_FENCE);
}

void tbModel::apply(tbListener* listener) const
{
    if (enabled)
        tbTransform::apply(listener);
}

void tbModel::apply(tbCamera* camera) const
{
    if (enabled)
        tbTransform::apply(camera);
}

tbTraverser::TRAV_STATE tbModel::apply(tbTraverser* traverser, bool noPreApply)
{
    if (!noPreApply)
        if (const tbTraverser::TRAV_STATE answer = traverser->preApply(this);
            answer != tbTraverser::TRAV_CONTINUE)
            return answer;
    if (!enabled)
        return tbTraverser::TRAV_CONTINUE;
    tbiMaskScope masked(traverser->getTravContext(), colliderMask.get());
    const tbTraverser::TRAV_STATE state = tbTransform::apply(traverser, true);
    if (state == tbTraverser::TRAV_STOP)
        masked.leave();
    return state;
}
