#pragma once

#include <tamber/trav/tbTravTrait.h>

// Selects which kinds of nodes a collider tests in a subtree.
class TB_API tbColliderTarget : public tbTravTrait
{
    TB_CLASS(tbColliderTarget, tbTravTrait)

public:
    /// The same bits as in tbTravContext::FLAGS.
    enum TARGETS : std::uint32_t
    {
        TARGET_TRANSFORMS = 0x10000,
        TARGET_FENCES = 0x20000,
        TARGET_GEOMETRY = 0x40000,
        TARGET_ALL = 0x70000
    };

    tbColliderTarget();
    tbColliderTarget(const tbColliderTarget& other);
    tbColliderTarget& operator=(const tbColliderTarget& other);
    bool operator==(const tbColliderTarget& other) const { return targets == other.targets; }

    tbBase* createCopy() const override;
    tbBase* createDisposableCopy(tbArena* arena) const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    /// Replaces the target bits of the context's flags; the others stay.
    void apply(tbTravContext* context) const override;
    bool isEqual(tbTrait* other) const override;

    /// Bits outside TARGET_ALL are dropped.
    virtual void setTargets(unsigned newTargets);

    unsigned getTargets() const { return targets; }

protected:
    tbColliderTarget(const tbColliderTarget& other, Disposable disposable);
    ~tbColliderTarget() override;

private:
    std::uint32_t targets = TARGET_ALL;
};
