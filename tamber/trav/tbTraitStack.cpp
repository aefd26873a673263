#include <tamber/trav/tbTraitStack.h>

#include <tamber/audio/tbListener.h>
#include <tamber/display/tbCamera.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/trav/tbAudioTrait.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbTravTrait.h>
#include <tamber/trav/tbVisualTrait.h>
#include <tamber/trav/tbiTraitFamily.h>

TB_DEFINE_UNSAVED_CLASS(tbTraitStack, tbBase)

struct tbTraitStack::Families : public tbAllocated<Families>
{
    tbiTraitFamily<tbVisualTrait> visual;
    tbiTraitFamily<tbAudioTrait> audio;
    tbiTraitFamily<tbTravTrait> trav;
    tbiTypeSet changedVisual;    // pushed or popped since the stacks were applied
    tbiTypeSet nonDefaultVisual; // applied from outside the stacks: the defaults must be restored
    tbiTypeSet keptVisual;       // scratch of applyTraits()
    tbiTypeSet changedAudio;
};

namespace
{

template <class Trait>
void count(const Trait* trait, const tbTravContext* context)
{
    if (tbStats* stats = context ? context->getStats() : nullptr)
        stats->incCount(trait);
}

/// Device is a camera or a listener.
template <class Trait, class Device>
void applyCounted(const Trait* trait, Device* device)
{
    count(trait, device ? device->getTravContext() : nullptr);
    trait->apply(device);
}

} // namespace

tbTraitStack::tbTraitStack(STACK_TYPES types, bool keepDefaults)
    : stackTypes(keepDefaults ? types | DEFAULT_STACK : types),
      families(new (static_cast<void*>(familiesPlace)) Families)
{
    static_assert(sizeof(Families) <= FAMILIES_SIZE);
    initInstance();
    reallocArrays();
}

tbTraitStack::tbTraitStack(const tbTraitStack& other)
    : tbBase(other),
      stackTypes(other.stackTypes),
      families(new (static_cast<void*>(familiesPlace)) Families)
{
    initInstance();
    reallocArrays();
}

tbTraitStack& tbTraitStack::operator=(const tbTraitStack& other)
{
    if (this == &other)
        return *this;
    tbBase::operator=(other);
    stackTypes = other.stackTypes;
    families->~Families();
    families = new (static_cast<void*>(familiesPlace)) Families;
    reallocArrays();
    ++visualStackID;
    return *this;
}

tbTraitStack::~tbTraitStack()
{
    deleteInstance();
    families->~Families();
}

tbBase* tbTraitStack::createCopy() const
{
    return tbiCopyOf(*this);
}

void tbTraitStack::reallocArrays()
{
    Families& f = *families;
    const tbiMemoryWatch memory;
    const bool keepDefaults = (stackTypes & DEFAULT_STACK) != 0;
    if ((stackTypes & VISUAL_STACK) != 0 && f.visual.update(keepDefaults))
    {
        const int num = f.visual.getNum();
        f.changedVisual.resize(num);
        f.nonDefaultVisual.resize(num);
        f.keptVisual.resize(num);
        for (int type = 0; type < num && keepDefaults; ++type)
            f.nonDefaultVisual.add(type);
    }
    if ((stackTypes & AUDIO_STACK) != 0 && f.audio.update(keepDefaults))
        f.changedAudio.resize(f.audio.getNum());
    if ((stackTypes & TRAV_STACK) != 0)
        f.trav.update(keepDefaults);
    if (!memory.ranOut())
        return;
    f.visual.invalidate(); // the next reset tries again
    f.audio.invalidate();
    f.trav.invalidate();
}

void tbTraitStack::pushTrait(tbTravTrait* trait, tbTravContext* context)
{
    auto& family = families->trav;
    const int type = family.findAccepting(trait);
    if (type < 0)
        return;
    auto& slot = family[type];
    count(trait, context);
    // Below the first trait of a type lies the default, so that its pop restores it.
    if (slot.traits.isEmpty() && slot.defaultTrait)
        family.push(type, slot.defaultTrait);
    trait->apply(context);
    family.push(type, trait);
    slot.setApplied(trait);
}

void tbTraitStack::pushTrait(tbAudioTrait* trait, tbTravContext*)
{
    auto& family = families->audio;
    const int type = family.findAccepting(trait);
    if (type < 0)
        return;
    auto& slot = family[type];
    if (slot.traits.isEmpty() && slot.defaultTrait)
        family.push(type, slot.defaultTrait);
    family.push(type, trait);
    families->changedAudio.add(type);
}

void tbTraitStack::pushTrait(tbVisualTrait* trait, tbTravContext* context)
{
    auto& family = families->visual;
    const int type = family.findAccepting(trait);
    if (type < 0)
        return;
    ++visualStackID;
    static_cast<const tbTrait*>(trait)->apply(context);
    family.push(type, trait);
    families->changedVisual.add(type);
}

void tbTraitStack::popTrait(tbTravTrait* trait, tbTravContext* context)
{
    auto* slot = families->trav.find(trait);
    if (!slot || slot->getTop() != trait)
        return;
    slot->traits.pop();
    if (const tbTravTrait* below = slot->getTop())
    {
        below->apply(context);
        slot->setApplied(below);
    }
}

void tbTraitStack::popTrait(tbAudioTrait* trait, tbTravContext*)
{
    const int type = families->audio.indexOf(trait);
    if (type < 0 || families->audio[type].getTop() != trait)
        return;
    families->audio[type].traits.pop();
    families->changedAudio.add(type);
}

void tbTraitStack::popTrait(tbVisualTrait* trait, tbTravContext* context)
{
    const int type = families->visual.indexOf(trait);
    if (type < 0 || families->visual[type].getTop() != trait)
        return;
    ++visualStackID;
    families->visual[type].traits.pop();
    families->changedVisual.add(type);
    if (const tbTrait* effective = families->visual[type].getEffective())
        effective->apply(context);
}

void tbTraitStack::setAppliedTrait(const tbAudioTrait* trait)
{
    if (auto* slot = families->audio.find(trait))
        slot->setApplied(trait);
}

void tbTraitStack::setAppliedTrait(const tbVisualTrait* trait)
{
    const int type = families->visual.indexOf(trait);
    if (type < 0)
        return;
    families->visual[type].setApplied(trait);
    families->nonDefaultVisual.add(type);
}

void tbTraitStack::applyTraits(tbCamera* camera, int num, const tbVisualTrait** traits)
{
    ++visualStackID;
    auto& visual = families->visual;
    tbiTypeSet& nonDefault = families->nonDefaultVisual;
    tbiTypeSet& kept = families->keptVisual;
    for (int i = 0; i < num; ++i)
    {
        const int type = visual.indexOf(traits[i]);
        if (type < 0 || !nonDefault.contains(type))
            continue;
        nonDefault.remove(type);
        if (visual[type].hasApplied(traits[i]))
            kept.add(type);
    }
    // Defaults first, so that the geometry's own traits have the last word.
    for (int i = 0; i < nonDefault.getNum(); ++i)
        if (const tbVisualTrait* defaultTrait = visual[nonDefault[i]].defaultTrait)
            applyCounted(defaultTrait, camera);
    nonDefault.clear();
    for (int type : kept)
        nonDefault.add(type);
    kept.clear();
    for (int i = 0; i < num; ++i)
    {
        const auto* slot = visual.find(traits[i]);
        if (slot && !slot->hasApplied(traits[i]))
            applyCounted(traits[i], camera);
    }
}

void tbTraitStack::applyVisualTraitStacks(tbCamera* camera)
{
    tbiTypeSet& changed = families->changedVisual;
    for (int i = 0; i < changed.getNum(); ++i)
    {
        const int type = changed[i];
        const auto& slot = families->visual[type];
        const tbVisualTrait* effective = slot.getEffective();
        if (effective && !slot.hasApplied(effective))
            applyCounted(effective, camera);
        // What is in effect now comes from the stack: no geometry's own trait is left to undo.
        families->nonDefaultVisual.remove(type);
    }
    changed.clear();
}

void tbTraitStack::applyDefaultVisualTraits(tbCamera* camera)
{
    ++visualStackID;
    tbiTypeSet& nonDefault = families->nonDefaultVisual;
    for (int i = 0; i < nonDefault.getNum(); ++i)
        if (const tbVisualTrait* defaultTrait = families->visual[nonDefault[i]].defaultTrait)
            applyCounted(defaultTrait, camera);
    nonDefault.clear();
}

void tbTraitStack::applyAllDefaultVisualTraits(tbCamera* camera)
{
    for (int type = 0; type < families->visual.getNum(); ++type)
        if (const tbVisualTrait* defaultTrait = families->visual[type].defaultTrait)
            applyCounted(defaultTrait, camera);
    families->nonDefaultVisual.clear();
}

void tbTraitStack::applyAudioTraits(tbListener* listener)
{
    tbiTypeSet& changed = families->changedAudio;
    for (int i = 0; i < changed.getNum(); ++i)
    {
        auto& slot = families->audio[changed[i]];
        const tbAudioTrait* effective = slot.getEffective();
        if (effective && !slot.hasApplied(effective))
        {
            applyCounted(effective, listener);
            slot.setApplied(effective);
        }
    }
    changed.clear();
}

void tbTraitStack::applyDefaultAudioTraits(tbListener* listener, bool force)
{
    for (int type = 0; type < families->audio.getNum(); ++type)
    {
        auto& slot = families->audio[type];
        if (slot.defaultTrait && (force || !slot.hasApplied(slot.defaultTrait)))
        {
            static_cast<const tbAudioTrait*>(slot.defaultTrait)->apply(listener);
            slot.setApplied(slot.defaultTrait);
        }
    }
}

void tbTraitStack::applyDefaultTravTraits(tbTravContext* context)
{
    for (int type = 0; type < families->trav.getNum(); ++type)
    {
        auto& slot = families->trav[type];
        if (slot.defaultTrait)
        {
            slot.defaultTrait->apply(context);
            slot.setApplied(slot.defaultTrait);
        }
    }
}

void tbTraitStack::reset(bool all)
{
    reallocArrays();
    if (!all)
        return;
    resetVisualStacks();
    resetAudioStacks();
    resetTravStacks();
}

void tbTraitStack::resetVisualStacks()
{
    // The camera may still have what a stack gave it. No stack accounts for that any more, so the default must be
    // restored unless the trait is pushed again.
    for (int type : families->visual.getTouched())
    {
        const auto& slot = families->visual[type];
        if (slot.applied && slot.applied != slot.defaultTrait)
            families->nonDefaultVisual.add(type);
    }
    families->visual.resetStacks();
    families->changedVisual.clear();
}

void tbTraitStack::resetAudioStacks()
{
    families->audio.resetStacks();
    families->changedAudio.clear();
}

void tbTraitStack::resetTravStacks()
{
    families->trav.resetStacks();
}

tbVisualTrait* tbTraitStack::getTop(const tbVisualTraitType* type) const
{
    const auto* slot = families->visual.find(type);
    return slot ? slot->getTop() : nullptr;
}

tbAudioTrait* tbTraitStack::getTop(const tbAudioTraitType* type) const
{
    const auto* slot = families->audio.find(type);
    return slot ? slot->getTop() : nullptr;
}

tbTravTrait* tbTraitStack::getTop(const tbTravTraitType* type) const
{
    const auto* slot = families->trav.find(type);
    return slot ? slot->getTop() : nullptr;
}

const tbVisualTrait* tbTraitStack::getAppliedTrait(const tbVisualTraitType* type) const
{
    const auto* slot = families->visual.find(type);
    return slot ? slot->applied : nullptr;
}

const tbAudioTrait* tbTraitStack::getAppliedTrait(const tbAudioTraitType* type) const
{
    const auto* slot = families->audio.find(type);
    return slot ? slot->applied : nullptr;
}

const tbVisualTrait** tbTraitStack::getVisualTraits(LIST_TYPE list, int& num, tbArena* arena, bool copy) const
{
    return families->visual.makeList(list, num, arena, copy);
}

const tbAudioTrait** tbTraitStack::getAudioTraits(LIST_TYPE list, int& num, tbArena* arena, bool copy) const
{
    return families->audio.makeList(list, num, arena, copy);
}

const tbTravTrait** tbTraitStack::getTravTraits(LIST_TYPE list, int& num) const
{
    return families->trav.makeList(list, num, nullptr, false);
}

int tbTraitStack::getNumVisualTraitStacks() const
{
    return families->visual.getNum();
}

int tbTraitStack::getNumAudioTraitStacks() const
{
    return families->audio.getNum();
}

int tbTraitStack::getNumTravTraitStacks() const
{
    return families->trav.getNum();
}
