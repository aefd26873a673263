#pragma once

#include <tamber/collide/tbFence.h>
#include <tamber/volume/tbSphere.h>

// A fence whose volume is a sphere.
class TB_API tbSphereFence : public tbFence
{
    TB_CLASS(tbSphereFence, tbFence)

public:
    tbSphereFence();
    tbSphereFence(const tbSphereFence& other);
    /// Children stay.
    tbSphereFence& operator=(const tbSphereFence& other);

    const tbVolume* getVolume() const override { return &volume; }
    tbVolume* getVolume() override { return &volume; }
    void makeEmpty() override;
    void extendAround(const tbVolume& other) override;
    /// A fence in AUTO mode drops what was set by hand at its next bounds pass.
    virtual void setRadius(float radius);
    virtual void setCenter(const tbVec3& center);

    const tbSphere* getSphere() const { return &volume; }

    tbBase* createCopy() const override;
    tbBase* createDisposableCopy(tbArena* arena) const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;

protected:
    tbSphereFence(const tbSphereFence& other, Disposable disposable);
    ~tbSphereFence() override;

    tbGroup* copyGroup() const override;
    tbGroup* cloneGroup() const override;
    void copy(const tbSphereFence& other);
    void clone(const tbSphereFence& other);

private:
    tbSphere volume;
};
