#pragma once

#include <tamber/graph/tbGroup.h>
#include <tamber/math/tbMatrix.h>
#include <tamber/math/tbVec3.h>
#include <tamber/volume/tbSphere.h>

#include <atomic>

// A group that turns its subtree towards the viewer during the camera walk: its +Y axis points at the camera.
//
// The other walks have no viewer. They use the facing of the last camera walk where there was one, and before that
// only the position: what is picked or heard is what was seen last. Bounds hold every facing.
class TB_API tbBillboard : public tbGroup
{
    TB_CLASS(tbBillboard, tbGroup)

public:
    /// How the up direction is chosen.
    enum MODE : int
    {
        MODE_AXIS = 0,      // the axis, carried by the billboard's model matrix
        MODE_CAMERA_UP = 1, // as near to the camera's up as the facing allows
        MODE_WORLD_UP = 2,  // as near to +Z as the facing allows
        MODE_FIXED_UP = 3   // +Z as it is
    };

    tbBillboard();
    tbBillboard(const tbBillboard& other);
    /// Children stay.
    tbBillboard& operator=(const tbBillboard& other);

    virtual void setAxis(const tbVec3& direction);
    virtual void setMode(MODE mode);
    /// The place in the billboard's own coordinates.
    virtual void setXYZ(float x, float y, float z);
    virtual void setXYZ(const tbVec3& place);

    const tbVec3* getAxis() const { return &axis; }
    MODE getMode() const { return mode; }
    const tbVec3* getXYZ() const { return &position; }
    const tbSphere* getVolume() const { return &volume; }

    /// The matrix that faces the camera: the children's coordinates to world, for the model-to-world matrix `model`.
    void computeFullMatrix(const tbMatrix& model, tbMatrix& full, tbTravContext* context,
                           tbCamera* camera) const;

    tbBase* createCopy() const override;
    tbBase* createDisposableCopy(tbArena* arena) const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    void updateFences(tbTravContext* context) override;
    void update(tbTravContext* context) override;
    tbTraverser::TRAV_STATE apply(tbTraverser* traverser, bool noPreApply) override;
    void apply(tbCollider* collider) const override;
    void apply(tbListener* listener) const override;
    void apply(tbCamera* camera) const override;

protected:
    tbBillboard(const tbBillboard& other, Disposable disposable);
    ~tbBillboard() override;

    tbGroup* copyGroup() const override;
    tbGroup* cloneGroup() const override;
    void dirtyUp(unsigned bits) override;
    using tbGroup::dirtyUp;
    void copy(const tbBillboard& other);
    void clone(const tbBillboard& other);

private:
    void assign(const tbBillboard& other);
    void rememberFacing(const tbMatrix& model, const tbMatrix& full) const;
    tbMatrix lastFacing() const;
    tbVec3 upFor(const tbMatrix& model, const tbVec3& direction, const tbCamera* camera) const;

    tbSphere volume; // of the subtree, around the children's origin, in the children's coordinates
    MODE mode = MODE_FIXED_UP;
    tbVec3 axis;
    tbVec3 position;
    // Children's to the billboard's own coordinates, as the last camera walk saw it. Several cameras may walk at
    // once; each writes the whole matrix, and readers take it only when no writer was in between.
    mutable std::atomic<unsigned> facingVersion{0}; // odd while being written, 0 for none yet
    mutable std::atomic<float> facing[16];
};
