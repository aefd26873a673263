#include "tbMotionAction.h"

#include <tamber/graph/tbScene.h>
#include <tamber/graph/tbTransform.h>
#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbTime.h>
#include <tamber/trav/tbTravContext.h>

TB_DEFINE_ABSTRACT_NODE_CLASS(tbMotionAction, tbActionNode)

tbMotionAction::tbMotionAction()
{
    initInstance();
}

tbMotionAction::tbMotionAction(const tbMotionAction& other)
    : tbActionNode(other),
      target(other.target),
      held(other.held),
      speed(other.speed),
      offset(other.getTime()),
      paused(other.paused)
{
    initInstance();
}

tbMotionAction& tbMotionAction::operator=(const tbMotionAction& other)
{
    if (this == &other)
        return *this;
    tbActionNode::operator=(other);
    target = other.target;
    held = other.held;
    speed = other.speed;
    offset = other.getTime();
    clockStart = -1.0;
    paused = other.paused;
    return *this;
}

tbMotionAction::~tbMotionAction()
{
    deleteInstance();
}

void tbMotionAction::setTarget(tbTransform* transform)
{
    if (target == transform)
        return; // a target that a file named is not let go
    target = transform;
    held.reset();
}

tbTransform* tbMotionAction::getTarget() const
{
    if (target)
        return target;
    for (tbGroup* parent : getParents())
        if (parent->isOfType(tbTransform::getClassType()))
            return static_cast<tbTransform*>(parent);
    return nullptr;
}

float tbMotionAction::getTime() const
{
    if (paused || clockStart < 0.0)
        return offset;
    return offset + float(tbGetTime() - clockStart) * speed;
}

void tbMotionAction::setTime(float seconds)
{
    offset = seconds;
    clockStart = clockStart < 0.0 ? clockStart : tbGetTime();
}

void tbMotionAction::setSpeed(float factor)
{
    setTime(getTime());
    speed = factor;
}

void tbMotionAction::pause(bool on)
{
    setTime(getTime());
    paused = on;
    if (!on)
        dirtyUp(TF_UPDATE); // the next update takes it up
}

bool tbMotionAction::moveTo(float seconds)
{
    tbTransform* moved = getTarget();
    tbMatrix placement;
    placement.makeIdent();
    if (!moved || !evaluate(seconds, placement))
        return false;
    moved->setMatrix(placement);
    return true;
}

bool tbMotionAction::apply(tbBase*, tbEvent*)
{
    if (clockStart < 0.0)
        clockStart = tbGetTime();
    return moveTo(getTime());
}

void tbMotionAction::update(tbTravContext* context)
{
    tbScene* scene = context->getScene();
    if (scene && !paused)
        scene->addDirectCall(tbScene::DIRECT_UPDATE_BEFORE, this);
    tbActionNode::update(context);
}

void tbMotionAction::updateDirect(tbScene* scene, bool)
{
    if (!paused)
        apply(scene, nullptr);
}

// Two that hold each other would never be released. What is above the other parents was seen when they came.
void tbMotionAction::addedTo(tbGroup* parent)
{
    if (held && (held.get() == parent || held->hasDescendant(parent)))
    {
        held->ref();
        tbTransform* above = held.get();
        held.reset();
        above->unRefNoDelete();
    }
    tbActionNode::addedTo(parent);
}

void tbMotionAction::resolveGroup(const tbGroup* prev, tbGroup* copy)
{
    if (target == prev)
        setTarget(copy && copy->isOfType(tbTransform::getClassType()) ? static_cast<tbTransform*>(copy)
                                                                      : nullptr);
}

// A target above this node is being read when this node is: it comes back as the parent's place, which is what an
// action below its target needs.
tbEntry* tbMotionAction::read(tbFile* file, tbEntry* entry)
{
    entry = tbActionNode::read(file, entry);
    if (!entry)
        return nullptr;
    speed = entry->readFloat();
    offset = entry->readFloat();
    paused = entry->readInt() != 0;
    clockStart = -1.0;
    tbBase* object = entry->readInt() != 0 ? readRef(file, entry) : nullptr;
    const bool canMove = object && object->isOfType(tbTransform::getClassType());
    if (object && !canMove)
        entry->passOver("a target of a motion that is no transform");
    setTarget(canMove ? static_cast<tbTransform*>(object) : nullptr);
    held = target;
    return entry;
}

tbEntry* tbMotionAction::write(tbFile* file, tbEntry* entry) const
{
    entry = tbActionNode::write(file, entry);
    if (!entry)
        return nullptr;
    entry->writeFloat(speed);
    entry->writeFloat(getTime());
    entry->writeInt(paused ? 1 : 0);
    const bool named = target && !hasParent(target);
    entry->writeInt(named ? 1 : 0);
    if (named)
        target->writeRef(file, entry);
    return entry;
}
