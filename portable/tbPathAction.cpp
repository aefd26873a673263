#include "tbPathAction.h"

#include <tamber/graph/tbGroupType.h>
#include <tamber/io/tbEntry.h>
#include <tamber/math/tbFloatInterpTable.h>
#include <tamber/math/tbMatrix.h>

TB_DEFINE_NODE_CLASS(tbPathAction, tbMotionAction)

tbPathAction::tbPathAction()
{
    initInstance();
}

tbPathAction::tbPathAction(const tbPathAction& other)
    : tbMotionAction(other),
      spline(other.spline),
      duration(other.duration),
      extrapolation(other.extrapolation),
      even(other.even),
      oriented(other.oriented)
{
    initInstance();
}

tbPathAction& tbPathAction::operator=(const tbPathAction& other)
{
    tbMotionAction::operator=(other);
    spline = other.spline;
    duration = other.duration;
    extrapolation = other.extrapolation;
    even = other.even;
    oriented = other.oriented;
    return *this;
}

tbPathAction::~tbPathAction()
{
    deleteInstance();
}

tbBase* tbPathAction::createCopy() const
{
    return new tbPathAction(*this);
}

tbGroup* tbPathAction::copyGroup() const
{
    auto* node = new tbPathAction(*this);
    if (!node)
        return nullptr;
    addGroupMapping(this, node);
    return node;
}

tbGroup* tbPathAction::cloneGroup() const
{
    return copyGroup();
}

bool tbPathAction::evaluate(float seconds, tbMatrix& placement) const
{
    if (spline.getNumSegments() == 0 || !(duration > 0.0f))
        return false;
    tbFloatInterpTable way;
    way.setExtrapolation(extrapolation);
    way.addKey(0.0f, 0.0f);
    way.addKey(duration, even ? spline.getLength() : float(spline.getNumSegments()));
    const float reached = way.get(seconds);
    const float parameter = even ? spline.getParameterAtLength(reached) : reached;
    if (oriented)
        placement.makeAlongDirection(spline.getTangent(parameter));
    placement.setXYZ(spline.getPosition(parameter));
    return true;
}

tbEntry* tbPathAction::read(tbFile* file, tbEntry* entry)
{
    entry = tbMotionAction::read(file, entry);
    if (!entry || !spline.read(entry))
        return nullptr;
    duration = entry->readFloat();
    extrapolation = tbExtrapolation(entry->readInt());
    even = entry->readInt() != 0;
    oriented = entry->readInt() != 0;
    return entry->hasFailed() ? nullptr : entry;
}

tbEntry* tbPathAction::write(tbFile* file, tbEntry* entry) const
{
    entry = tbMotionAction::write(file, entry);
    if (!entry)
        return nullptr;
    spline.write(entry);
    entry->writeFloat(duration);
    entry->writeInt(int(extrapolation));
    entry->writeInt(even ? 1 : 0);
    entry->writeInt(oriented ? 1 : 0);
    return entry;
}
