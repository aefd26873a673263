#pragma once

#include <tamber/graph/tbGroup.h>
#include <tamber/math/tbMatrix.h>
#include <tamber/volume/tbSphere.h>

class tbQuat;
class tbVec3;

// The node that places its subtree: every walk multiplies its matrix onto the current one around the children. It
// caches the bounding sphere of the subtree in its own coordinates, valid while TF_FENCE is clear.
class TB_API tbTransform : public tbGroup
{
    TB_CLASS(tbTransform, tbGroup)

public:
    tbTransform();
    explicit tbTransform(const tbMatrix& m);
    tbTransform(const tbTransform& other);
    /// Children stay.
    tbTransform& operator=(const tbTransform& other);

    /// Who edits the matrix in place calls changed() afterwards.
    tbMatrix* getMatrix() { return &matrix; }
    const tbMatrix* getMatrix() const { return &matrix; }
    const tbSphere* getVolume() const { return &volume; }
    bool isIdentity() const { return (matrix.getType() & tbMatrix::MATRIX_IDENT) != 0; }
    void getXYZ(float& x, float& y, float& z) const;
    void getXYZ(tbVec3& xyz) const;
    /// Degrees.
    void getHPR(float& h, float& p, float& r) const;
    void getHPR(tbVec3& hpr) const;
    void getQuat(tbQuat& quat) const;

    virtual void setMatrix(const tbMatrix& m);
    /// The matrix was edited in place.
    virtual void changed();
    virtual void setXYZ(float x, float y, float z);
    virtual void setXYZ(const tbVec3& xyz);
    /// Degrees; the translation stays.
    virtual void setHPR(float h, float p, float r);
    virtual void setHPR(const tbVec3& hpr);
    /// The whole matrix becomes the rotation: the translation is lost.
    virtual void setQuat(const tbQuat& quat);

    using tbGroup::apply;
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
    tbTransform(const tbTransform& other, Disposable disposable);
    ~tbTransform() override;

    tbGroup* copyGroup() const override;
    tbGroup* cloneGroup() const override;
    void addedTo(tbGroup* parent) override;
    void removedFrom(tbGroup* parent) override;
    void dirtyUp(unsigned bits) override;

    /// TF_MATRIX here, and bounds stale in every parent that does not know it yet.
    void dirtyUpFlags();
    void copy(const tbTransform& other);
    void clone(const tbTransform& other);

private:
    void dirtyChildren();
    void matrixChanged();
    void assign(const tbTransform& other);

    tbSphere volume;
    tbMatrix matrix;
};
