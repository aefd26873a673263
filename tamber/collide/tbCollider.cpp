#include <tamber/collide/tbCollider.h>

#include <tamber/collide/tbFence.h>
#include <tamber/collide/tbiColliderContext.h>
#include <tamber/graph/tbScene.h>
#include <tamber/graph/tbTransform.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/kernel/tbTime.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/math/tbQuat.h>
#include <tamber/render/tbGeometry.h>
#include <tamber/thread/tbEvent.h>
#include <tamber/thread/tbiSpinMutex.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbTravPath.h>
#include <tamber/trav/tbTravTrait.h>
#include <tamber/trav/tbiScopes.h>
#include <tamber/trav/tbiTraitList.h>
#include <tamber/volume/tbBox.h>
#include <tamber/volume/tbSphere.h>

#include <atomic>
#include <mutex>

TB_DEFINE_CLASS(tbCollider, tbBase)

namespace
{

constinit std::atomic<tbTravContext*> sharedTravCon{
    nullptr}; // the class holds one reference, each user another

// Contexts that a walk is using. A walk that an event starts on one of them would ruin it.
class BusyContext
{
public:
    explicit BusyContext(const tbTravContext* context) : mine(begin(context)) {}
    ~BusyContext()
    {
        if (mine)
            end(mine);
    }
    BusyContext(const BusyContext&) = delete;
    BusyContext& operator=(const BusyContext&) = delete;

    bool isFree() const { return mine != nullptr; }

private:
    static constexpr int MAX_WALKS = 64;
    static constinit tbiSpinMutex mutex;
    static constinit const tbTravContext* busy[MAX_WALKS];

    static const tbTravContext* begin(const tbTravContext* context)
    {
        const std::lock_guard guard(mutex);
        const tbTravContext** free = nullptr;
        for (const tbTravContext*& slot : busy)
        {
            if (slot == context)
                return nullptr;
            if (!slot)
                free = &slot;
        }
        if (free)
            *free = context;
        return free ? context : nullptr;
    }

    static void end(const tbTravContext* context)
    {
        const std::lock_guard guard(mutex);
        for (const tbTravContext*& slot : busy)
            if (slot == context)
                slot = nullptr;
    }

    const tbTravContext* mine;
};

constinit tbiSpinMutex BusyContext::mutex;
constinit const tbTravContext* BusyContext::busy[MAX_WALKS] = {};

tbTravContext* shareContext()
{
    tbTravContext* shared = sharedTravCon.load(std::memory_order_acquire);
    if (!shared)
    {
        auto* made = new tbTravContext;
        if (!made)
            return nullptr;
        made->ref();
        made->setTraitStack(new tbTraitStack(tbTraitStack::TRAV_STACK, true));
        if (sharedTravCon.compare_exchange_strong(shared, made))
            shared = made;
        else
            made->unRef(); // another thread was first
    }
    shared->ref();
    return shared;
}

tbEvent* makeEvent()
{
    auto* event = new tbEvent;
    if (event)
        event->ref();
    return event;
}

template <class Item>
bool addNew(tbTList<Item*>& list, Item* item)
{
    if (item && list.add(item) >= 0)
        return true;
    delete item;
    return false;
}

template <class Item>
void cut(tbTList<Item*>& list, int num)
{
    while (list.getNum() > num)
        delete list.removeLast();
}

void savePath(tbTravPath*& path, const tbTravStack& stack)
{
    if (path)
        *path = stack;
    else
        path = new tbTravPath(stack);
}

} // namespace

void tbiReleaseColliderContext()
{
    if (tbTravContext* shared = sharedTravCon.exchange(nullptr))
        shared->unRef();
}

tbCollider::tbCollider()
    : position(0, 0, 0),
      orientation(0, 0, 0),
      travContext(shareContext()),
      rayHitEvent(makeEvent()),
      volumeHitEvent(makeEvent())
{
    initInstance();
}

tbCollider::tbCollider(const tbCollider& other)
    : tbBase(other),
      travContext(shareContext()),
      rayHitEvent(makeEvent()),
      volumeHitEvent(makeEvent())
{
    initInstance();
    assign(other);
}

tbCollider& tbCollider::operator=(const tbCollider& other)
{
    if (this != &other)
    {
        tbBase::operator=(other);
        assign(other);
    }
    return *this;
}

tbCollider::~tbCollider()
{
    deleteInstance();
    tbCollider::removeAllRays();
    dropVolumes();
    tbiDropTraits(traits);
    if (rayHitEvent)
        rayHitEvent->unRef();
    if (volumeHitEvent)
        volumeHitEvent->unRef();
    if (travContext)
        travContext->unRef();
}

tbBase* tbCollider::createCopy() const
{
    return tbiCopyOf(*this);
}

// Rays, settings and traits; hits, events and context stay each collider's own.
void tbCollider::assign(const tbCollider& other)
{
    position = other.position;
    orientation = other.orientation;
    colliderMask = other.colliderMask;
    saveMask = other.saveMask;
    rayHitMode = other.rayHitMode;
    volumeHitMode = other.volumeHitMode;
    dropVolumes();
    volumeMode = other.volumeMode;
    localVolume = volumeMode == VOLUME_USER ? other.localVolume : nullptr;
    tbCollider::removeAllRays();
    for (const tbRay* ray : other.localRays)
        tbCollider::addRay(*ray);
    tbiDropTraits(traits);
    tbiHoldTraits(traits, other.traits);
}

// Bits once set stay, so that every user of a collider gets at least what it asked for.
void tbCollider::setSaveMask(unsigned int mask)
{
    saveMask = std::uint8_t(saveMask | (mask & 0xF));
}

void tbCollider::setRayHitMode(RAY_HIT_MODE mode)
{
    rayHitMode = mode;
}

void tbCollider::addRay(const tbRay& ray)
{
    if (localRays.getNum() >= MAX_RAYS)
        return;
    const int before = localRays.getNum();
    const bool added = addNew(localRays, new tbRay(ray)) && addNew(worldRays, new tbRay) &&
                       addNew(workingRays, new tbRay) && addNew(hits, new tbHit);
    if (added)
        return;
    cut(localRays, before);
    cut(worldRays, before);
    cut(workingRays, before);
}

void tbCollider::removeAllRays()
{
    for (int i = 0; i < localRays.getNum(); ++i)
    {
        delete localRays[i];
        delete worldRays[i];
        delete workingRays[i];
        delete hits[i];
    }
    localRays.reset();
    worldRays.reset();
    workingRays.reset();
    hits.reset();
}

void tbCollider::dropVolumes()
{
    if (ownsLocalVolume())
        delete localVolume;
    delete worldVolume;
    delete workingVolume;
    localVolume = nullptr;
    worldVolume = nullptr;
    workingVolume = nullptr;
}

void tbCollider::setVolumeMode(VOLUME_MODE mode)
{
    if (mode != volumeMode || ownsLocalVolume())
        dropVolumes();
    volumeMode = mode;
}

void tbCollider::setVolumeHitMode(VOLUME_HIT_MODE mode)
{
    volumeHitMode = mode;
}

void tbCollider::setVolume(tbVolume* volume)
{
    dropVolumes();
    volumeMode = VOLUME_USER;
    localVolume = volume;
}

void tbCollider::setXYZ(float x, float y, float z)
{
    position.set(x, y, z);
}

void tbCollider::setXYZ(const tbVec3& where)
{
    position = where;
}

void tbCollider::setHPR(float heading, float pitch, float roll)
{
    orientation.set(heading, pitch, roll);
}

void tbCollider::setHPR(const tbVec3& hpr)
{
    orientation = hpr;
}

void tbCollider::setQuat(const tbQuat& rotation)
{
    rotation.getHPR(orientation);
}

void tbCollider::getXYZ(float& x, float& y, float& z) const
{
    x = position[0];
    y = position[1];
    z = position[2];
}

void tbCollider::getXYZ(tbVec3& where) const
{
    where = position;
}

void tbCollider::getHPR(float& heading, float& pitch, float& roll) const
{
    heading = orientation[0];
    pitch = orientation[1];
    roll = orientation[2];
}

void tbCollider::getHPR(tbVec3& hpr) const
{
    hpr = orientation;
}

void tbCollider::getQuat(tbQuat& rotation) const
{
    rotation.setHPR(orientation);
}

void tbCollider::setTravContext(tbTravContext* context)
{
    if (context)
        context->ref();
    if (travContext)
        travContext->unRef();
    travContext = context;
}

void tbCollider::addTrait(tbTravTrait* trait)
{
    tbiHoldTrait(traits, trait);
}

void tbCollider::removeTrait(tbTravTrait* trait)
{
    tbiDropTrait(traits, trait);
}

void tbCollider::applyTraits()
{
    if (travContext)
        tbiPushTraits(traits, travContext);
}

void tbCollider::setColliderMask(unsigned int mask)
{
    colliderMask = mask;
}

tbMatrix tbCollider::placement() const
{
    tbMatrix matrix;
    matrix.makeHPR(orientation[0], orientation[1], orientation[2]);
    matrix.setXYZ(position[0], position[1], position[2]);
    return matrix;
}

int tbCollider::intersect(tbGroup* root)
{
    if (!root || !travContext)
        return 0;
    // An event may let the collider, its context or the graph go. What nobody holds stays the caller's.
    const tbRef<tbCollider> keptThis(getRefCount() > 0 ? this : nullptr);
    const tbRef<tbTravContext> keptContext(travContext);
    const tbRef<tbGroup> keptRoot(root->getRefCount() > 0 ? root : nullptr);
    const BusyContext busy(travContext);
    if (!busy.isFree())
        return 0;
    tbScene* scene = root->isOfType(tbScene::getClassType()) ? static_cast<tbScene*>(root) : nullptr;
    if (scene)
        scene->applyDirect(this, true);
    const double start = travContext->getStats() ? tbGetTime() : 0.0;
    walk(root);
    if (rayHitMode != RAY_HIT_ALL && lastRayWithHit() >= 0)
        tbEvent::trigger(rayHitEvent, this);
    const int found = result();
    if (scene)
        scene->applyDirect(this, false);
    if (tbStats* stats = keptContext->getStats())
        stats->addCollision(tbGetTime() - start);
    return found;
}

void tbCollider::walk(tbGroup* root)
{
    const tbMatrix matrix = placement();
    numFences = numVolumes = numTransforms = numGeometries = 0;
    prepareRays(matrix);
    volumeHit.kind = 0;
    if (volumeMode == VOLUME_USER || ownsLocalVolume())
        prepareVolume(matrix);
    travContext->reset();
    if (tbTraitStack* stack = travContext->getTraitStack())
        stack->applyDefaultTravTraits(travContext);
    applyTraits();
    rayHitMade = false;
    root->apply(this);
}

void tbCollider::prepareRays(const tbMatrix& matrix)
{
    for (int i = getNumRays() - 1; i >= 0; --i)
    {
        worldRays[i]->xform(*localRays[i], matrix);
        *workingRays[i] = *worldRays[i];
        hits[i]->kind = 0;
        hits[i]->distance = localRays[i]->getLength();
    }
}

void tbCollider::prepareVolume(const tbMatrix& matrix)
{
    if (volumeMode == VOLUME_USER)
    {
        delete worldVolume;
        delete workingVolume;
        worldVolume = localVolume ? localVolume->createCopy() : nullptr;
        workingVolume = localVolume ? localVolume->createCopy() : nullptr;
    }
    else
        buildVolume();
    if (!localVolume || !worldVolume || !workingVolume)
        return;
    worldVolume->copy(*localVolume);
    worldVolume->xform(matrix);
    workingVolume->copy(*worldVolume);
}

void tbCollider::buildVolume()
{
    if (!localVolume)
        for (tbVolume** volume : {&localVolume, &worldVolume, &workingVolume})
            *volume = volumeMode == VOLUME_SPHERE ? static_cast<tbVolume*>(new tbSphere) : new tbBox;
    if (!localVolume || !worldVolume || !workingVolume)
    {
        dropVolumes();
        return;
    }
    localVolume->makeEmpty();
    for (int i = getNumRays() - 1; i >= 0; --i)
    {
        if (!(localRays[i]->getLength() > 0.0f))
        {
            dropVolumes();
            return;
        }
        localVolume->extendAround(*localRays[i]);
    }
}

int tbCollider::lastRayWithHit() const
{
    for (int i = getNumRays() - 1; i >= 0; --i)
        if (hits[i]->kind != 0)
            return i;
    return -1;
}

int tbCollider::result() const
{
    if (rayHitMode == RAY_HIT_NONE || getNumRays() == 0)
        return volumeHitMode != VOLUME_HIT_NONE && volumeHit.kind != 0 ? 1 : 0;
    if (!rayHitMade)
        return 0;
    int found = 0;
    for (const tbHit* hit : hits)
        found += hit->kind != 0 ? 1 : 0;
    return found;
}

tbVolume::CONTAINMENT tbCollider::intersects(const tbTransform* node)
{
    return intersects(node, *node->getVolume(), TARGET_TRANSFORM);
}

tbVolume::CONTAINMENT tbCollider::intersects(const tbFence* node)
{
    return intersects(node, *node->getVolume(), TARGET_FENCE);
}

tbVolume::CONTAINMENT tbCollider::intersects(const tbGeometry* node)
{
    tbBox bounds;
    {
        const tbiVolumeScope inUse(travContext,
                                   &bounds); // keeps the walk for the bounds away from this context
        const_cast<tbGeometry*>(node)->getBoundingVolume(bounds); // changes nothing but what it caches
    }
    return intersects(node, bounds, TARGET_GEOMETRY);
}

tbVolume::CONTAINMENT tbCollider::intersects(const tbGroup* node, const tbVolume& volume, unsigned int target)
{
    ++numVolumes;
    const bool testsRays = getNumRays() > 0 && rayHitMode != RAY_HIT_NONE;
    if (workingVolume && travContext->anyFlags(target))
    {
        if (!workingVolume->intersects(volume))
            return tbVolume::OUTSIDE;
        recordVolumeHit(node, target);
        if (!testsRays)
            return tbVolume::PARTIAL;
    }
    return testsRays && anyRayMeets(volume, target) ? tbVolume::PARTIAL : tbVolume::OUTSIDE;
}

void tbCollider::recordVolumeHit(const tbGroup* node, unsigned int target)
{
    if (volumeHitMode == VOLUME_HIT_NONE || (volumeHitMode == VOLUME_HIT_FIRST && volumeHit.kind != 0))
        return;
    volumeHit.kind = target;
    volumeHit.mask = travContext->getColliderMask();
    volumeHit.node = node;
    save(volumeHit);
    if (volumeHitMode == VOLUME_HIT_ALL)
        tbEvent::trigger(volumeHitEvent, this);
}

// True with the first ray that meets the volume. Rays that were asked before it and missed are not asked again
// below this node, unless it is geometry.
bool tbCollider::anyRayMeets(const tbVolume& volume, unsigned int target)
{
    const unsigned failed = travContext->getFailedRayMask();
    for (int i = 0; i < getNumRays(); ++i)
    {
        const unsigned bit = 1u << i;
        if ((failed & bit) != 0)
            continue;
        const bool shortened = hits[i]->kind != 0;
        const bool meets = shortened ? tbRay(*workingRays[i], hits[i]->distance).intersects(volume)
                                     : workingRays[i]->intersects(volume);
        if (meets)
            return true;
        if (target != TARGET_GEOMETRY)
        {
            travContext->addFailedRayMask(bit);
            if (tbStats* stats = travContext->getStats())
                stats->addFailedRay();
        }
    }
    return false;
}

void tbCollider::save(tbHit& hit) const
{
    if ((saveMask & SAVE_PATH) != 0)
        savePath(hit.path, travContext->getTravStack());
    if ((saveMask & SAVE_NAMED_PATH) != 0)
        savePath(hit.namedPath, travContext->getNamedTravStack());
    if ((saveMask & SAVE_MATRIX) != 0)
        hit.matrix = travContext->getMatrix();
    if ((saveMask & SAVE_INVERT_MATRIX) != 0)
        hit.invertMatrix = travContext->getInvertMatrix();
}

void tbCollider::generateRayHit(int ray, const tbGroup* node, const tbVec3& point, float distance,
                                int primitive, int index)
{
    if (ray < 0 || ray >= getNumRays())
        return;
    tbHit& hit = *hits[ray];
    if (rayHitMode == RAY_HIT_NEAREST && hit.distance > 0.0f && distance >= hit.distance)
        return;
    if (rayHitMode == RAY_HIT_FARTHEST && hit.kind != 0 && hit.distance > 0.0f && distance <= hit.distance)
        return;
    rayHitMade = true;
    hit.kind = TARGET_GEOMETRY;
    hit.primitive = primitive;
    hit.index = index;
    hit.point.xformPt(point, travContext->getMatrix());
    hit.normal.set(0, 0, 0);
    save(hit);
    hit.distance = distance;
    hit.node = node;
    hit.mask = travContext->getColliderMask();
    if (rayHitMode == RAY_HIT_ALL)
        tbEvent::trigger(rayHitEvent, this);
}

void tbCollider::applyMatrix(const tbMatrix& matrix, unsigned int failedRays)
{
    if (worldVolume && workingVolume)
    {
        workingVolume->copy(*worldVolume);
        workingVolume->xform(matrix);
    }
    for (int i = 0; i < getNumRays(); ++i)
    {
        // One line for each ray and node: people watch how well their fences work by it.
        if ((failedRays & (1u << i)) != 0)
            tbMessage("SKIPPING FAILED RAY \n");
        else
            workingRays[i]->xform(*worldRays[i], matrix);
    }
}

void tbCollider::updateStats(const tbGroup*) {}
