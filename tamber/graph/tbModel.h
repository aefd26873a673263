#pragma once

#include <tamber/graph/tbTransform.h>
#include <tamber/kernel/tbRef.h>

class tbColliderMask;

// A transform that stands for one loaded model: it knows the file it came from, can be switched off as a whole, and
// hands a collider mask down while collider and traverser walk it.
class TB_API tbModel : public tbTransform
{
    TB_CLASS(tbModel, tbTransform)

public:
    tbModel();
    tbModel(const tbModel& other);
    tbModel& operator=(const tbModel& other);

    /// Null when the model was not loaded from a file.
    const char* getFileName() const { return fileName; }
    bool isEnabled() const { return enabled; }
    unsigned getColliderMask() const;

    /// A model that is off is neither updated, bounded nor visited.
    virtual void enable(bool on);
    virtual void setColliderMask(unsigned mask);

    using tbTransform::apply;
    tbBase* createCopy() const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    void updateFences(tbTravContext* context) override;
    void update(tbTravContext* context) override;
    tbTraverser::TRAV_STATE apply(tbTraverser* traverser, bool noPreApply) override;
    void apply(tbCollider* collider) const override;
    void apply(tbListener* listener) const override;
    void apply(tbCamera* camera) const override;

protected:
    ~tbModel() override;

    tbGroup* copyGroup() const override;
    tbGroup* cloneGroup() const override;
    void copy(const tbModel& other);
    void clone(const tbModel& other);

private:
    friend class tbLoader;

    void assign(const tbModel& other);
    void setFileName(const char* path);

    char* fileName = nullptr;
    bool enabled = true;
    tbRef<tbColliderMask> colliderMask;
};
