#pragma once

#include <tamber/kernel/tbBase.h>

class tbAudioTrait;
class tbAudioTraitType;
class tbCamera;
class tbListener;
class tbTravContext;
class tbTravTrait;
class tbTravTraitType;
class tbVisualTrait;
class tbVisualTraitType;

// The traits in effect at the current place of a walk: one stack for each trait type, whose top is in effect, or
// the type's default when the stack is empty. Traversal traits work when they are pushed; visual and audio traits
// reach the camera or listener when they differ from what was applied last.
//
// Traits of a family that the stack does not keep, and of types made since the last reset(), are passed over.
// Traits on the stacks and applied traits are not referenced. A stack serves one walk at a time and is not locked.
class TB_API tbTraitStack : public tbBase
{
    TB_CLASS(tbTraitStack, tbBase)

public:
    enum STACK_TYPES : std::uint32_t
    {
        VISUAL_STACK = 0x1,
        AUDIO_STACK = 0x2,
        TRAV_STACK = 0x4,
        DEFAULT_STACK = 0x8, // keep a default trait of every type
        ALL_STACKS = 0x7
    };
    friend constexpr STACK_TYPES operator|(STACK_TYPES a, STACK_TYPES b)
    {
        return STACK_TYPES(unsigned(a) | unsigned(b));
    }
    enum LIST_TYPE : std::int32_t
    {
        TOP_LIST = 0,    // the top of every stack that is not empty, in the order of the types
        DEFAULT_LIST = 1 // the default of every type that has one, in the order of the types
    };

    /// Keeps the families that `types` names, and default traits when `keepDefaults` is set.
    explicit tbTraitStack(STACK_TYPES types = ALL_STACKS, bool keepDefaults = true);
    /// An empty stack for the same families.
    tbTraitStack(const tbTraitStack& other);
    tbTraitStack& operator=(const tbTraitStack& other);

    tbBase* createCopy() const override;

    /// A trait in mode OFF, and one below an OVERRIDE trait of the same type, is not pushed.
    virtual void pushTrait(tbTravTrait* trait, tbTravContext* context);
    virtual void pushTrait(tbAudioTrait* trait, tbTravContext* context);
    virtual void pushTrait(tbVisualTrait* trait, tbTravContext* context);
    /// Nothing happens unless `trait` is the top of its stack: that keeps refused pushes balanced.
    virtual void popTrait(tbTravTrait* trait, tbTravContext* context);
    virtual void popTrait(tbAudioTrait* trait, tbTravContext* context);
    virtual void popTrait(tbVisualTrait* trait, tbTravContext* context);
    /// A trait's apply(tbListener*) or apply(tbCamera*) tells that the device has its state now.
    virtual void setAppliedTrait(const tbAudioTrait* trait);
    virtual void setAppliedTrait(const tbVisualTrait* trait);
    /// Brings a geometry's own traits to the camera, after applyVisualTraitStacks(). Types that the geometry before
    /// had set and this one does not go back to their defaults; no type is set twice.
    virtual void applyTraits(tbCamera* camera, int num, const tbVisualTrait** traits);
    /// Brings every visual type whose stack has changed to the camera.
    virtual void applyVisualTraitStacks(tbCamera* camera);
    /// Brings the types that geometries have set back to their defaults.
    virtual void applyDefaultVisualTraits(tbCamera* camera);
    /// Sets every visual type to its default, whatever was applied before.
    virtual void applyAllDefaultVisualTraits(tbCamera* camera);
    /// Brings every audio type whose stack has changed to the listener.
    virtual void applyAudioTraits(tbListener* listener);
    /// Sets every audio type to its default; without `force` only those that are not there already.
    virtual void applyDefaultAudioTraits(tbListener* listener, bool force);
    virtual void applyDefaultTravTraits(tbTravContext* context);
    /// Takes in types that came or went since the last call, and with `all` empties every stack. What was applied
    /// is remembered, so that the next walk skips unchanged state.
    virtual void reset(bool all);
    virtual void resetVisualStacks();
    virtual void resetAudioStacks();
    virtual void resetTravStacks();

    /// Null when the stack is empty.
    tbVisualTrait* getTop(const tbVisualTraitType* type) const;
    tbAudioTrait* getTop(const tbAudioTraitType* type) const;
    tbTravTrait* getTop(const tbTravTraitType* type) const;
    /// The trait that the device was given last, which may be gone by now: to be compared, not followed. Null when
    /// there was none.
    const tbVisualTrait* getAppliedTrait(const tbVisualTraitType* type) const;
    const tbAudioTrait* getAppliedTrait(const tbAudioTraitType* type) const;

    /// A new array with room for one trait of each type; `count` says how many stand in it. It comes from `arena`
    /// or, when that is null, from the heap: then the caller gives it to tbMemory::free(). With an arena and
    /// `copy`, disposable copies in the arena stand for dynamic traits, for use after the walk has moved on. Null
    /// and 0 for a family that is not kept and when memory is out.
    const tbVisualTrait** getVisualTraits(LIST_TYPE list, int& count, tbArena* arena = nullptr,
                                          bool copy = false) const;
    const tbAudioTrait** getAudioTraits(LIST_TYPE list, int& count, tbArena* arena = nullptr,
                                        bool copy = false) const;
    const tbTravTrait** getTravTraits(LIST_TYPE list, int& count) const;

    int getNumVisualTraitStacks() const;
    int getNumAudioTraitStacks() const;
    int getNumTravTraitStacks() const;
    /// Changes whenever the visual traits in effect may have changed.
    int getVisualStackID() const { return int(visualStackID); }
    /// For the sound plug-in: the kernel's pushes and pops leave it alone.
    int getAudioStackID() const { return int(audioStackID); }
    STACK_TYPES getStackTypes() const { return stackTypes; }

protected:
    ~tbTraitStack() override;

private:
    struct Families;

    void reallocArrays();

    std::uint32_t visualStackID = 0; // unsigned, so that it may wrap around
    std::uint32_t audioStackID = 0;
    STACK_TYPES stackTypes;
    Families* families; // in the place below: no walk has to do without
    static constexpr std::size_t FAMILIES_SIZE = 384;
    alignas(std::max_align_t) unsigned char familiesPlace[FAMILIES_SIZE];
};
