#pragma once

#include <tamber/collide/tbFence.h>
#include <tamber/volume/tbBox.h>

// A fence whose volume is an axis-aligned box.
class TB_API tbBoxFence : public tbFence
{
    TB_CLASS(tbBoxFence, tbFence)

public:
    tbBoxFence();
    tbBoxFence(const tbBoxFence& other);
    /// Children stay.
    tbBoxFence& operator=(const tbBoxFence& other);

    const tbVolume* getVolume() const override { return &volume; }
    tbVolume* getVolume() override { return &volume; }
    void makeEmpty() override;
    void extendAround(const tbVolume& other) override;
    /// A fence in AUTO mode drops what was set by hand at its next bounds pass.
    virtual void setMinCorner(const tbVec3& corner);
    virtual void setMaxCorner(const tbVec3& corner);

    const tbBox* getBox() const { return &volume; }

    tbBase* createCopy() const override;
    tbBase* createDisposableCopy(tbArena* arena) const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;

protected:
    tbBoxFence(const tbBoxFence& other, Disposable disposable);
    ~tbBoxFence() override;

    tbGroup* copyGroup() const override;
    tbGroup* cloneGroup() const override;
    void copy(const tbBoxFence& other);
    void clone(const tbBoxFence& other);

private:
    tbBox volume;
};
