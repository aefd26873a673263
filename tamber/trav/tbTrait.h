#pragma once

#include <tamber/kernel/tbBase.h>

class tbTravContext;
template <class Trait>
class tbiTraitFamily;

// A piece of state that a node hands down to its subtree. Styles, cameras, listeners and colliders carry traits; a
// walk pushes them on its context's tbTraitStack on entry and pops them on exit. There are three families: visual,
// audio and traversal traits.
class TB_API tbTrait : public tbBase
{
    TB_CLASS(tbTrait, tbBase)

public:
    enum MODE : std::int16_t
    {
        OFF = 0,      // never pushed, never applied
        ON = 1,       // in effect until a trait of the same type further down replaces it
        OVERRIDE = 2, // as ON, but traits of the same type further down are ignored unless they are FORCE
        FORCE = 3     // in effect even below an OVERRIDE trait
    };

    /// Equal mode and equal shareable flag.
    bool operator==(const tbTrait& other) const;

    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;

    virtual void setApplyMode(MODE newMode);
    /// Whether clones of a style may hold this very trait; the others get a copy.
    virtual void enableShareable(bool enable);
    /// Writes the trait's settings into the context of a walk; the base does nothing.
    virtual void apply(tbTravContext* context) const;
    /// Same runtime type, mode, shareable flag and own fields.
    virtual bool isEqual(tbTrait* other) const = 0;

    MODE getApplyMode() const { return mode; }
    /// Whether the modes let this trait take effect where `above`, of the same type, is in effect; null for none.
    bool replaces(const tbTrait* above) const
    {
        if (mode == OFF || !above)
            return mode != OFF;
        if (above->mode == OVERRIDE)
            return this == above || mode == FORCE;
        return above->mode == ON || above->mode == FORCE;
    }
    bool isShareable() const { return shareable != 0; }

protected:
    tbTrait();
    tbTrait(const tbTrait& other);
    tbTrait(const tbTrait& other, Disposable disposable);
    tbTrait& operator=(const tbTrait& other);
    ~tbTrait() override;

    /// The part of isEqual() that all traits share: same runtime type, mode and shareable flag.
    bool isSameKind(const tbTrait* other) const;

private:
    template <class Trait>
    friend class tbiTraitFamily;

    static std::uint32_t makeSerial();

    MODE mode = ON;
    std::int16_t shareable = 1;
    const std::uint32_t serial = makeSerial(); // tells this trait from those that lived at its address before
};
