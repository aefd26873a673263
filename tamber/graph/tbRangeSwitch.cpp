#include <tamber/graph/tbRangeSwitch.h>

#include <tamber/audio/tbListener.h>
#include <tamber/collide/tbCollider.h>
#include <tamber/display/tbCamera.h>
#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbiScopes.h>
#include <tamber/volume/tbSphere.h>

#include <algorithm>

// One child's band.
struct tbiRange : public tbAllocated<tbiRange>
{
    float range = 1000.0f;
    float transition = 50.0f;
    float inverseWidth = 0.0004f; // not 1 / (2 * 50): drawings have been tuned to this first value

    void setTransition(float halfWidth)
    {
        transition = halfWidth;
        inverseWidth = 1.0f / (2.0f * halfWidth);
    }
    float begin() const { return range - transition; }
    float end() const { return range + transition; }
    float blend(float distance) const { return (distance - begin()) * inverseWidth; }
};

TB_DEFINE_NODE_CLASS(tbRangeSwitch, tbSwitch)

namespace
{

constexpr float NEXT_RANGE = 1000.0f;
constexpr int RECORD_SIZE = 3 * int(sizeof(float));

} // namespace

tbRangeSwitch::tbRangeSwitch() : center(0, 0, 0)
{
    initInstance();
}

tbRangeSwitch::tbRangeSwitch(const tbRangeSwitch& other) : tbSwitch(other), center(0, 0, 0)
{
    initInstance();
    assign(other);
}

tbRangeSwitch::tbRangeSwitch(const tbRangeSwitch& other, Disposable disposable)
    : tbSwitch(other, disposable),
      center(other.center),
      transitionEnabled(other.transitionEnabled),
      centerFixed(other.centerFixed)
{
}

tbRangeSwitch& tbRangeSwitch::operator=(const tbRangeSwitch& other)
{
    tbSwitch::operator=(other);
    assign(other);
    return *this;
}

tbRangeSwitch::~tbRangeSwitch()
{
    deleteInstance();
    removeChildren();
    removeRanges();
}

void tbRangeSwitch::assign(const tbRangeSwitch& other)
{
    center = other.center;
    transitionEnabled = other.transitionEnabled;
    centerFixed = other.centerFixed;
}

void tbRangeSwitch::removeRanges()
{
    for (tbiRange* range : ranges)
        delete range;
    ranges.reset();
}

void tbRangeSwitch::addRange(const tbiRange& range)
{
    auto* added = new tbiRange(range);
    if (added && ranges.add(added) < 0)
        delete added;
}

void tbRangeSwitch::copyRanges(const tbRangeSwitch& other)
{
    removeRanges();
    for (const tbiRange* range : other.ranges)
        addRange(*range);
    resizeRanges(getNumChildren());
}

void tbRangeSwitch::copy(const tbRangeSwitch& other)
{
    tbSwitch::copy(other);
    assign(other);
    copyRanges(other);
}

void tbRangeSwitch::clone(const tbRangeSwitch& other)
{
    tbSwitch::clone(other);
    assign(other);
    copyRanges(other);
}

tbBase* tbRangeSwitch::createCopy() const
{
    return tbiCopyOf(*this);
}

tbBase* tbRangeSwitch::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbRangeSwitch(*this, Disposable{arena});
}

tbGroup* tbRangeSwitch::copyGroup() const
{
    return makeLike(this, &tbRangeSwitch::copy);
}

tbGroup* tbRangeSwitch::cloneGroup() const
{
    return makeLike(this, &tbRangeSwitch::clone);
}

// A record at `i`: the first of all with the starting values, at the end one band farther than the last, and
// elsewhere with the values of the record before, so that bands stay in order.
bool tbRangeSwitch::insertRange(int i)
{
    auto* range = new tbiRange;
    if (!range)
        return false;
    if (i > 0)
    {
        const tbiRange* previous = ranges[i - 1];
        range->range = i == ranges.getNum() ? previous->range + NEXT_RANGE : previous->range;
        range->setTransition(previous->transition);
    }
    const int before = ranges.getNum();
    ranges.insert(i, range);
    if (ranges.getNum() > before)
        return true;
    delete range;
    return false;
}

void tbRangeSwitch::removeRange(int i)
{
    delete ranges[i];
    ranges.removeOrderedIndex(i);
}

void tbRangeSwitch::resizeRanges(int n)
{
    while (ranges.getNum() > n)
        delete ranges.removeLast();
    while (ranges.getNum() < n && insertRange(ranges.getNum()))
    {
    }
}

bool tbRangeSwitch::addChild(tbGroup* child)
{
    const int i = ranges.getNum();
    if (!insertRange(i))
        return false;
    const bool added = tbSwitch::addChild(child);
    if (!added)
        removeRange(i);
    return added;
}

bool tbRangeSwitch::insertChild(int i, tbGroup* child)
{
    if (i < 0 || i > getNumChildren())
        return false;
    const int place = std::min(i, ranges.getNum());
    if (!insertRange(place))
        return false;
    const bool inserted = tbSwitch::insertChild(i, child);
    if (!inserted)
        removeRange(place);
    return inserted;
}

bool tbRangeSwitch::removeChild(tbGroup* child)
{
    const int i = getChildIndex(child);
    if (ranges.indexInRange(i))
        removeRange(i);
    return tbSwitch::removeChild(child);
}

void tbRangeSwitch::enableTransition(bool enable)
{
    transitionEnabled = enable;
}

bool tbRangeSwitch::setRange(int i, float range)
{
    if (!ranges.indexInRange(i))
        return false;
    ranges[i]->range = range;
    return true;
}

float tbRangeSwitch::getRange(int i) const
{
    return ranges.indexInRange(i) ? ranges[i]->range : 0.0f;
}

bool tbRangeSwitch::setTransition(int i, float halfWidth)
{
    if (!ranges.indexInRange(i))
        return false;
    ranges[i]->setTransition(halfWidth);
    return true;
}

float tbRangeSwitch::getTransition(int i) const
{
    return ranges.indexInRange(i) ? ranges[i]->transition : 0.0f;
}

// Lets go of a frozen centre, so the next bounds pass replaces it; autoCenter() is what keeps one.
void tbRangeSwitch::setCenter(const tbVec3& point)
{
    center = point;
    centerFixed = false;
    dirtyUp(TF_FENCE);
}

void tbRangeSwitch::autoCenter()
{
    if (centerFixed)
        return;
    centerFixed = true;
    dirtyUp(TF_FENCE);
}

float tbRangeSwitch::calcSwitch(float distance, const tbTravContext* context, short& nearChild,
                                short& farChild) const
{
    const float d = distance * context->getRangeSwitchScale();
    const int n = ranges.getNum();
    int i = 0;
    while (i < n && !(d <= ranges[i]->range))
        ++i;
    int nearIndex = -1;
    int farIndex = -1;
    float t = 0.0f;
    if (i < n)
    {
        nearIndex = i;
        if (transitionEnabled && d <= ranges[i]->begin())
        {
            if (i >= 1 && d < ranges[i - 1]->end())
            {
                t = ranges[i - 1]->blend(d);
                nearIndex = i - 1;
                farIndex = i;
            }
        }
        else if (transitionEnabled)
        {
            t = ranges[i]->blend(d);
            farIndex = i + 1 < n ? i + 1 : -1;
        }
    }
    else if (n > 0 && transitionEnabled && d < ranges[n - 1]->end())
    {
        t = ranges[n - 1]->blend(d);
        nearIndex = n - 1;
    }
    const int last = std::min(getNumChildren() - 1, 0x7FFF);
    nearChild = short(std::min(nearIndex, last));
    farChild = short(std::min(farIndex, last));
    return t;
}

float tbRangeSwitch::eyeDistance(const tbTravContext* context) const
{
    tbVec3 eye;
    eye.xformPt(center, context->getMatrix());
    return eye.length();
}

tbGroup* tbRangeSwitch::selected(const tbTravContext* context) const
{
    short nearChild = -1;
    short farChild = -1;
    calcSwitch(eyeDistance(context), context, nearChild, farChild);
    return nearChild >= 0 ? getChild(nearChild) : nullptr;
}

void tbRangeSwitch::apply(tbCamera* camera) const
{
    tbTravContext* context = camera->getTravContext();
    if (tbStats* stats = context->getStats())
        stats->incCount(this);
    short nearChild = -1;
    short farChild = -1;
    const float t = calcSwitch(eyeDistance(context), context, nearChild, farChild);
    if (nearChild < 0)
        return;
    if (farChild < 0)
    {
        context->setTransitionScale(1.0f);
        context->setTransitionMode(tbTransition::TRANSITION_NONE);
        getChild(nearChild)->apply(camera);
        return;
    }
    const float scale = context->getTransitionScale();
    const tbTransition::MODE mode = context->getTransitionMode();
    context->setTransitionScale(t);
    context->setTransitionMode(tbTransition::TRANSITION_OUT);
    getChild(nearChild)->apply(camera);
    context->setTransitionScale(1.0f - t);
    context->setTransitionMode(tbTransition::TRANSITION_IN);
    getChild(farChild)->apply(camera);
    context->setTransitionScale(scale);
    context->setTransitionMode(mode);
}

void tbRangeSwitch::apply(tbListener* listener) const
{
    if (tbStats* stats = listener->getTravContext()->getStats())
        stats->incCount(this);
    if (getNumChildren() > 0)
        getChild(0)->apply(listener);
}

void tbRangeSwitch::apply(tbCollider* collider) const
{
    tbTravContext* context = collider->getTravContext();
    if (tbStats* stats = context->getStats())
        stats->incCount(this);
    const tbiGroupScope onPath(context, this);
    if (const tbGroup* child = selected(context))
        child->apply(collider);
}

tbTraverser::TRAV_STATE tbRangeSwitch::apply(tbTraverser* traverser, bool noPreApply)
{
    if (!noPreApply)
    {
        const tbTraverser::TRAV_STATE before = traverser->preApply(this);
        if (before != tbTraverser::TRAV_CONTINUE)
            return before;
    }
    tbTravContext* context = traverser->getTravContext();
    if (tbStats* stats = context->getStats())
        stats->incCount(this);
    tbiGroupScope onPath(context, this);
    if (!onPath)
        return tbTraverser::TRAV_CONTINUE;
    tbTraverser::TRAV_STATE state = traverser->apply(this);
    if (state == tbTraverser::TRAV_CONTINUE)
        if (tbGroup* child = selected(context))
            state = child->apply(traverser, false);
    if (state != tbTraverser::TRAV_STOP)
        return tbTraverser::TRAV_CONTINUE;
    onPath.leave();
    return tbTraverser::TRAV_STOP;
}

void tbRangeSwitch::updateFences(tbTravContext* context)
{
    if (centerFixed)
    {
        tbGroup::updateFences(context);
        return;
    }
    tbVolume* enclosing = context->getVolume();
    tbSphere bounds;
    {
        const tbiVolumeScope extended(context, &bounds);
        const tbiIdentScope ownFrame(context);
        if (extended && ownFrame)
            tbGroup::updateFences(context);
    }
    if (bounds.isEmpty())
        return;
    center = *bounds.getCenter();
    if (enclosing)
    {
        bounds.xform(context->getMatrix());
        enclosing->extendAround(bounds);
    }
}

tbEntry* tbRangeSwitch::read(tbFile* file, tbEntry* entry)
{
    entry = tbSwitch::read(file, entry);
    if (!entry)
        return nullptr;
    const int stored = entry->readCount(RECORD_SIZE);
    removeRanges();
    for (int i = 0; i < stored; ++i)
    {
        tbiRange read;
        read.range = entry->readFloat();
        read.transition = entry->readFloat();
        read.inverseWidth = entry->readFloat();
        addRange(read);
    }
    resizeRanges(getNumChildren());
    centerFixed = entry->readInt() != 0;
    center.read(entry);
    transitionEnabled = entry->readInt() != 0;
    return entry->hasFailed() ? nullptr : entry;
}

tbEntry* tbRangeSwitch::write(tbFile* file, tbEntry* entry) const
{
    tbEntry* created = tbSwitch::write(file, entry);
    if (!entry)
        entry = created;
    if (!entry)
        return nullptr;
    entry->writeInt(ranges.getNum());
    for (const tbiRange* range : ranges)
    {
        entry->writeFloat(range->range);
        entry->writeFloat(range->transition);
        entry->writeFloat(range->inverseWidth);
    }
    entry->writeInt(centerFixed ? 1 : 0);
    center.write(entry);
    entry->writeInt(transitionEnabled ? 1 : 0);
    return created;
}
