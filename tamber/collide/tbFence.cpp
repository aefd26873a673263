#include <tamber/collide/tbFence.h>

#include <tamber/collide/tbCollider.h>
#include <tamber/collide/tbiCarried.h>
#include <tamber/display/tbCamera.h>
#include <tamber/graph/tbGroupType.h>
#include <tamber/io/tbEntry.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbiScopes.h>
#include <tamber/volume/tbFrustum.h>

#include <memory>

TB_DEFINE_ABSTRACT_NODE_CLASS(tbFence, tbGroup)

namespace
{

// Every change below but a shared instance alone may change bounds.
constexpr unsigned CHANGES_BOUNDS = 0xF7;

} // namespace

tbFence::tbFence()
{
    initInstance();
    addTravFlags(TF_FENCE);
}

tbFence::tbFence(const tbFence& other) : tbGroup(other), mode(other.mode)
{
    initInstance();
    addTravFlags(TF_FENCE);
}

tbFence::tbFence(const tbFence& other, Disposable disposable) : tbGroup(other, disposable), mode(other.mode)
{
}

tbFence& tbFence::operator=(const tbFence& other)
{
    tbGroup::operator=(other);
    mode = other.mode;
    return *this;
}

tbFence::~tbFence()
{
    deleteInstance();
}

void tbFence::copy(const tbFence& other)
{
    mode = other.mode;
    tbGroup::copy(other);
    dirtyUp(TF_FENCE);
}

void tbFence::clone(const tbFence& other)
{
    mode = other.mode;
    tbGroup::clone(other);
    dirtyUp(TF_FENCE);
}

void tbFence::setMode(MODE wanted)
{
    const bool wasFixed = mode == FIXED;
    mode = wanted;
    if (wasFixed && wanted == AUTO)
        dirtyUp(TF_FENCE);
}

void tbFence::addedTo(tbGroup* parent)
{
    addTravFlags(TF_FENCE);
    tbGroup::addedTo(parent);
}

void tbFence::removedFrom(tbGroup* parent)
{
    addTravFlags(TF_FENCE);
    tbGroup::removedFrom(parent);
}

void tbFence::dirtyUp(unsigned bits)
{
    if ((bits & CHANGES_BOUNDS) != 0)
        bits |= TF_FENCE;
    tbGroup::dirtyUp(bits);
}

void tbFence::updateFences(tbTravContext* context)
{
    if (anyTravFlags(TF_FENCE))
        rebuild(context);
    if (tbVolume* enclosing = context->getVolume())
        tbiWithCarried(*getVolume(), context->getMatrix(),
                       [enclosing](const tbVolume& carried) { enclosing->extendAround(carried); });
}

// A fixed fence keeps its volume, but what lies below it is brought up to date all the same, into a volume that
// nobody asks for.
void tbFence::rebuild(tbTravContext* context)
{
    const std::unique_ptr<tbVolume> unused(mode == FIXED ? getVolume()->createCopy() : nullptr);
    tbVolume* target = mode == FIXED ? unused.get() : getVolume();
    if (!target)
        return;
    target->makeEmpty();
    const tbiVolumeScope extended(context, target);
    const tbiIdentScope ownFrame(context);
    if (extended && ownFrame)
        tbGroup::updateFences(context);
}

void tbFence::apply(tbCollider* collider) const
{
    tbTravContext* context = collider->getTravContext();
    if (!context->anyFlags(tbTravContext::COLLIDE_FENCES))
    {
        tbGroup::apply(collider);
        return;
    }
    switch (context->getCullResult())
    {
    case tbVolume::OUTSIDE:
        return;
    case tbVolume::INSIDE:
        tbGroup::apply(collider);
        return;
    default:
        break;
    }
    // Rays that fail below are tried again beside this fence.
    const tbiFailedRayScope ownRays(context);
    descend(collider, context, collider->intersects(this));
}

void tbFence::apply(tbCamera* camera) const
{
    tbTravContext* context = camera->getTravContext();
    if (!context->anyFlags(tbTravContext::CULL_FENCES))
    {
        tbGroup::apply(camera);
        return;
    }
    switch (context->getCullResult())
    {
    case tbVolume::OUTSIDE:
        return;
    case tbVolume::INSIDE:
        tbGroup::apply(camera);
        return;
    default:
        break;
    }
    descend(camera, context, seenBy(camera));
}

// Walks on below the fence as its test tells: not at all, or with what is now known of the subtree.
template <class Walker>
void tbFence::descend(Walker* walker, tbTravContext* context, tbVolume::CONTAINMENT found) const
{
    if (found == tbVolume::OUTSIDE)
        return;
    if (found != tbVolume::INSIDE)
    {
        tbGroup::apply(walker);
        return;
    }
    const tbiCullScope inside(context, tbVolume::INSIDE);
    tbGroup::apply(walker);
}

tbVolume::CONTAINMENT tbFence::seenBy(const tbCamera* camera) const
{
    const tbVolume& frustum = *camera->getFrustum();
    tbVolume::CONTAINMENT found = tbVolume::OUTSIDE;
    tbiWithCarried(*getVolume(), camera->getTravContext()->getMatrix(),
                   [&](const tbVolume& carried) { found = frustum.contains(carried); });
    return found;
}

tbEntry* tbFence::read(tbFile* file, tbEntry* entry)
{
    entry = tbGroup::read(file, entry);
    if (entry)
        mode = MODE(entry->readInt());
    return entry;
}

tbEntry* tbFence::write(tbFile* file, tbEntry* entry) const
{
    tbEntry* created = tbGroup::write(file, entry);
    if (!entry)
        entry = created;
    if (entry)
        entry->writeInt(mode);
    return created;
}
