#pragma once

#include <portable/tbMotionAction.h>
#include <tamber/math/tbQuatInterpTable.h>
#include <tamber/math/tbVec3InterpTable.h>

// Moves a transform by keys of place, rotation and scale, each at times of its own. A kind without keys stays neutral.
class TB_PORTABLE_API tbKeyFrameAction : public tbMotionAction
{
    TB_CLASS(tbKeyFrameAction, tbMotionAction)

public:
    tbKeyFrameAction();
    tbKeyFrameAction(const tbKeyFrameAction& other);
    tbKeyFrameAction& operator=(const tbKeyFrameAction& other);

    tbVec3InterpTable& getPositions() { return positions; }
    const tbVec3InterpTable& getPositions() const { return positions; }
    tbQuatInterpTable& getRotations() { return rotations; }
    const tbQuatInterpTable& getRotations() const { return rotations; }
    /// Factors along the axes.
    tbVec3InterpTable& getScales() { return scales; }
    const tbVec3InterpTable& getScales() const { return scales; }
    /// Of all three.
    void setExtrapolation(tbExtrapolation kind);

    tbBase* createCopy() const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;

protected:
    ~tbKeyFrameAction() override;

    tbGroup* copyGroup() const override;
    tbGroup* cloneGroup() const override;
    bool evaluate(float seconds, tbMatrix& placement) const override;

private:
    tbVec3InterpTable positions;
    tbQuatInterpTable rotations;
    tbVec3InterpTable scales;
};
