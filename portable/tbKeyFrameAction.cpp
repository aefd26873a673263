#include "tbKeyFrameAction.h"

#include <tamber/graph/tbGroupType.h>
#include <tamber/math/tbMatrix.h>

TB_DEFINE_NODE_CLASS(tbKeyFrameAction, tbMotionAction)

tbKeyFrameAction::tbKeyFrameAction()
{
    initInstance();
}

tbKeyFrameAction::tbKeyFrameAction(const tbKeyFrameAction& other)
    : tbMotionAction(other),
      positions(other.positions),
      rotations(other.rotations),
      scales(other.scales)
{
    initInstance();
}

tbKeyFrameAction& tbKeyFrameAction::operator=(const tbKeyFrameAction& other)
{
    tbMotionAction::operator=(other);
    positions = other.positions;
    rotations = other.rotations;
    scales = other.scales;
    return *this;
}

tbKeyFrameAction::~tbKeyFrameAction()
{
    deleteInstance();
}

void tbKeyFrameAction::setExtrapolation(tbExtrapolation kind)
{
    positions.setExtrapolation(kind);
    rotations.setExtrapolation(kind);
    scales.setExtrapolation(kind);
}

tbBase* tbKeyFrameAction::createCopy() const
{
    return new tbKeyFrameAction(*this);
}

tbGroup* tbKeyFrameAction::copyGroup() const
{
    auto* node = new tbKeyFrameAction(*this);
    if (!node)
        return nullptr;
    addGroupMapping(this, node);
    return node;
}

tbGroup* tbKeyFrameAction::cloneGroup() const
{
    return copyGroup();
}

bool tbKeyFrameAction::evaluate(float seconds, tbMatrix& placement) const
{
    if (positions.getNumKeys() == 0 && rotations.getNumKeys() == 0 && scales.getNumKeys() == 0)
        return false;
    if (rotations.getNumKeys() > 0)
        rotations.get(seconds).getMatrix(placement);
    if (scales.getNumKeys() > 0)
        placement.preScale(scales.get(seconds));
    if (positions.getNumKeys() > 0)
        placement.setXYZ(positions.get(seconds));
    return true;
}

tbEntry* tbKeyFrameAction::read(tbFile* file, tbEntry* entry)
{
    entry = tbMotionAction::read(file, entry);
    return entry && positions.read(entry) && rotations.read(entry) && scales.read(entry) ? entry : nullptr;
}

tbEntry* tbKeyFrameAction::write(tbFile* file, tbEntry* entry) const
{
    entry = tbMotionAction::write(file, entry);
    if (!entry)
        return nullptr;
    positions.write(entry);
    rotations.write(entry);
    scales.write(entry);
    return entry;
}
