#pragma once

#include <tamber/trav/tbTravTrait.h>

// The collider mask of a subtree: colliders whose own mask shares no bit with it pass over the subtree, and every
// hit recorded there carries it.
class TB_API tbColliderMask : public tbTravTrait
{
    TB_CLASS(tbColliderMask, tbTravTrait)

public:
    static constexpr unsigned DEFAULT_MASK = 0xFFFFFFFF;

    tbColliderMask();
    tbColliderMask(const tbColliderMask& other);
    tbColliderMask& operator=(const tbColliderMask& other);
    bool operator==(const tbColliderMask& other) const { return mask == other.mask; }

    tbBase* createCopy() const override;
    tbBase* createDisposableCopy(tbArena* arena) const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    /// The context's collider mask becomes the mask.
    void apply(tbTravContext* context) const override;
    bool isEqual(tbTrait* other) const override;

    virtual void setMask(unsigned newMask);

    unsigned getMask() const { return mask; }

protected:
    tbColliderMask(const tbColliderMask& other, Disposable disposable);
    ~tbColliderMask() override;

private:
    std::uint32_t mask = DEFAULT_MASK;
};
