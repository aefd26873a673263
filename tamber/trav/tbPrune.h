#pragma once

#include <tamber/trav/tbTravTrait.h>

// Cuts a style's subtree off the walk while it is enabled.
class TB_API tbPrune : public tbTravTrait
{
    TB_CLASS(tbPrune, tbTravTrait)

public:
    tbPrune();
    tbPrune(const tbPrune& other);
    tbPrune& operator=(const tbPrune& other);

    tbBase* createCopy() const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    /// Sets or clears the context's prune flag.
    void apply(tbTravContext* context) const override;
    bool isEqual(tbTrait* other) const override;

    virtual void enable(bool newEnabled);

    bool isEnabled() const { return enabled; }

protected:
    ~tbPrune() override;

private:
    bool enabled = false;
};
