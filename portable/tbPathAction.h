#pragma once

#include <portable/tbMotionAction.h>
#include <tamber/math/tbInterpTable.h>
#include <tamber/math/tbSpline.h>

// Moves a transform along a spline, evenly or by the spline's parameter, and turns it into the way when it is told.
class TB_PORTABLE_API tbPathAction : public tbMotionAction
{
    TB_CLASS(tbPathAction, tbMotionAction)

public:
    tbPathAction();
    tbPathAction(const tbPathAction& other);
    tbPathAction& operator=(const tbPathAction& other);

    void setSpline(const tbSpline& curve) { spline = curve; }
    const tbSpline& getSpline() const { return spline; }
    /// Seconds for the whole way; not positive: there is no motion.
    void setDuration(float seconds) { duration = seconds; }
    float getDuration() const { return duration; }
    /// What follows the end, and comes before the start, of the way.
    void setExtrapolation(tbExtrapolation kind) { extrapolation = kind; }
    tbExtrapolation getExtrapolation() const { return extrapolation; }
    /// Even: equal ways in equal times; else equal steps of the parameter.
    void setEven(bool on) { even = on; }
    bool isEven() const { return even; }
    /// +Y of the transform points along the way.
    void setOriented(bool on) { oriented = on; }
    bool isOriented() const { return oriented; }

    tbBase* createCopy() const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;

protected:
    ~tbPathAction() override;

    tbGroup* copyGroup() const override;
    tbGroup* cloneGroup() const override;
    bool evaluate(float seconds, tbMatrix& placement) const override;

private:
    tbSpline spline;
    float duration = 1.0f;
    tbExtrapolation extrapolation = tbExtrapolation::LOOP;
    bool even = true;
    bool oriented = false;
};
