#pragma once

#include <tamber/graph/tbSwitch.h>
#include <tamber/math/tbVec3.h>

struct tbiRange;

// A switch that picks a child by the distance between the eye and a centre: level of detail. Each child has a band
// that reaches up to its range; with transitions enabled, neighbouring bands blend around the range between them.
class TB_API tbRangeSwitch : public tbSwitch
{
    TB_CLASS(tbRangeSwitch, tbSwitch)

public:
    tbRangeSwitch();
    tbRangeSwitch(const tbRangeSwitch& other);
    /// Children and their ranges stay.
    tbRangeSwitch& operator=(const tbRangeSwitch& other);

    /// The range switch keeps its own flag and never animates.
    void enableTransition(bool enable) override;
    /// The far end of child `i`'s band. False when `i` is no child.
    virtual bool setRange(int i, float range);
    /// Half the width of the blending zone around child `i`'s range. False when `i` is no child.
    virtual bool setTransition(int i, float halfWidth);
    /// Sets the centre until the next bounds pass, which puts it into the middle of the subtree's bounds: callers
    /// that want a centre to stay call autoCenter() after that pass.
    virtual void setCenter(const tbVec3& point);
    /// Freezes the centre where it is.
    virtual void autoCenter();

    /// 0 when `i` is no child.
    float getRange(int i) const;
    float getTransition(int i) const;
    bool isTransitionEnabled() const { return transitionEnabled; }
    const tbVec3* getCenter() const { return &center; }
    bool isCenterFixed() const { return centerFixed; }

    tbBase* createCopy() const override;
    tbBase* createDisposableCopy(tbArena* arena) const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    void updateFences(tbTravContext* context) override;
    tbTraverser::TRAV_STATE apply(tbTraverser* traverser, bool noPreApply) override;
    void apply(tbCollider* collider) const override;
    void apply(tbListener* listener) const override;
    void apply(tbCamera* camera) const override;
    bool addChild(tbGroup* child) override;
    bool insertChild(int i, tbGroup* child) override;
    bool removeChild(tbGroup* child) override;

protected:
    tbRangeSwitch(const tbRangeSwitch& other, Disposable disposable);
    ~tbRangeSwitch() override;

    tbGroup* copyGroup() const override;
    tbGroup* cloneGroup() const override;
    void copy(const tbRangeSwitch& other);
    void clone(const tbRangeSwitch& other);

private:
    /// Picks the children for a distance, -1 for none, and returns the blend between them.
    float calcSwitch(float distance, const tbTravContext* context, short& nearChild, short& farChild) const;
    float eyeDistance(const tbTravContext* context) const;
    tbGroup* selected(const tbTravContext* context) const;
    bool insertRange(int i);
    void resizeRanges(int n);
    void removeRange(int i);
    void addRange(const tbiRange& range);
    void removeRanges();
    void copyRanges(const tbRangeSwitch& other);
    void assign(const tbRangeSwitch& other);

    tbTList<tbiRange*> ranges;
    tbVec3 center;
    bool transitionEnabled = false;
    bool centerFixed = false;
};
