#pragma once

#include <tamber/trav/tbTravTrait.h>

// Selects which kinds of nodes the camera walk tests against the view volume below a style or camera.
class TB_API tbCull : public tbTravTrait
{
    TB_CLASS(tbCull, tbTravTrait)

public:
    static constexpr unsigned DEFAULT_MASK = 0x1500;

    tbCull();
    tbCull(const tbCull& other);
    /// A copy for createDisposableCopy(): it lives in the arena and is not registered with its class.
    tbCull(const tbCull& other, tbArena* arena);
    tbCull& operator=(const tbCull& other);

    tbBase* createCopy() const override;
    tbBase* createDisposableCopy(tbArena* arena) const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    /// Replaces the four cull bits of the context's flags by the mask.
    void apply(tbTravContext* context) const override;
    bool isEqual(tbTrait* other) const override;

    /// Cull bits of tbTravContext::FLAGS. Any other bit is kept, and set in the context too: the mask is not
    /// filtered, on purpose, and programs use it to raise further flags.
    virtual void setMask(unsigned newMask);

    unsigned getMask() const { return mask; }

protected:
    ~tbCull() override;

private:
    std::uint32_t mask = DEFAULT_MASK;
};
