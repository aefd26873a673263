#pragma once

#include <tamber/trav/tbTravTrait.h>

// Selects how the drawing side orders what it draws below a style or camera.
class TB_API tbSort : public tbTravTrait
{
    TB_CLASS(tbSort, tbTravTrait)

public:
    static constexpr unsigned DEFAULT_MASK = 0x100000;

    tbSort();
    tbSort(const tbSort& other);
    tbSort& operator=(const tbSort& other);

    tbBase* createCopy() const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    /// Replaces the two sort bits of the context's flags by the mask.
    void apply(tbTravContext* context) const override;
    bool isEqual(tbTrait* other) const override;

    /// Keeps the two sort bits of tbTravContext::FLAGS only.
    virtual void setMask(unsigned newMask);

    unsigned getMask() const { return mask; }

protected:
    ~tbSort() override;

private:
    std::uint32_t mask = DEFAULT_MASK;
};
