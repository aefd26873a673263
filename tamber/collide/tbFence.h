#pragma once

#include <tamber/graph/tbGroup.h>
#include <tamber/volume/tbVolume.h>

// A group with a bounding volume around its subtree, in its own coordinates. The collider and the camera test the
// volume first and skip, or accept as a whole, what lies below.
class TB_API tbFence : public tbGroup
{
    TB_CLASS(tbFence, tbGroup)

public:
    enum MODE : int
    {
        AUTO = 0, // the volume is rebuilt when the bounds below change
        FIXED = 1 // the volume is set by hand and stays
    };

    /// Going from FIXED to AUTO makes the next bounds pass rebuild the volume.
    virtual void setMode(MODE mode);
    virtual const tbVolume* getVolume() const = 0;
    virtual tbVolume* getVolume() = 0;
    virtual void makeEmpty() = 0;
    virtual void extendAround(const tbVolume& volume) = 0;

    MODE getMode() const { return mode; }

    using tbGroup::apply;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    void updateFences(tbTravContext* context) override;
    void apply(tbCollider* collider) const override;
    void apply(tbCamera* camera) const override;

protected:
    tbFence();
    tbFence(const tbFence& other);
    tbFence(const tbFence& other, Disposable disposable);
    tbFence& operator=(const tbFence& other);
    ~tbFence() override;

    void addedTo(tbGroup* parent) override;
    void removedFrom(tbGroup* parent) override;
    void dirtyUp(unsigned bits) override;
    using tbGroup::dirtyUp;

    void copy(const tbFence& other);
    void clone(const tbFence& other);

private:
    void rebuild(tbTravContext* context);
    tbVolume::CONTAINMENT seenBy(const tbCamera* camera) const;
    template <class Walker>
    void descend(Walker* walker, tbTravContext* context, tbVolume::CONTAINMENT found) const;

    MODE mode = AUTO;
};
