#pragma once

#include <tamber/containers/tbStack.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/thread/tbiLockGuard.h>
#include <tamber/trav/tbTrait.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbiTypeSet.h>

// What a trait stack keeps for one family: a slot for each trait type, by the type's index.
template <class Trait>
class tbiTraitFamily
{
public:
    using Type = typename Trait::TypeClass;

    struct Slot : public tbAllocated<Slot>
    {
        ~Slot()
        {
            if (defaultTrait)
                defaultTrait->unRef();
        }
        Trait* getTop() const { return static_cast<Trait*>(traits.getTop()); }
        /// What is in effect: the top, or the default when there is none; may be null.
        Trait* getEffective() const { return traits.isEmpty() ? defaultTrait : getTop(); }
        bool hasApplied(const Trait* trait) const
        {
            return trait == applied && trait->serial == appliedSerial;
        }
        void setApplied(const Trait* trait)
        {
            applied = trait;
            appliedSerial = trait->serial;
        }

        tbStack traits;
        Trait* defaultTrait = nullptr; // counted
        // Last given to camera, listener or context. It may be gone by now: it is never followed, and its serial
        // tells it from another trait at its address.
        const Trait* applied = nullptr;
        std::uint32_t appliedSerial = 0;
    };

    tbiTraitFamily() = default;
    tbiTraitFamily(const tbiTraitFamily&) = delete;
    tbiTraitFamily& operator=(const tbiTraitFamily&) = delete;
    ~tbiTraitFamily() { delete[] slots; }

    int getNum() const { return num; }
    Slot& operator[](int type) { return slots[type]; }
    /// -1 for null and for types that have no slot.
    int indexOf(const Trait* trait) const { return indexOf(trait ? trait->getType() : nullptr); }
    int indexOf(const tbType* type) const
    {
        const int index = type ? type->getIndex() : -1;
        return index < num ? index : -1;
    }
    /// Null where indexOf() is -1.
    template <class TraitOrType>
    Slot* find(const TraitOrType* key) const
    {
        const int index = indexOf(key);
        return index >= 0 ? &slots[index] : nullptr;
    }
    /// The index of the type whose stack takes `trait`; -1 when none does.
    int findAccepting(const Trait* trait) const
    {
        const int index = indexOf(trait);
        return index >= 0 && trait->replaces(slots[index].getTop()) ? index : -1;
    }

    /// Pushes a trait that was accepted.
    void push(int type, Trait* trait)
    {
        slots[type].traits.push(trait);
        touched.add(type);
    }
    /// Types that were pushed on since the last resetStacks().
    const tbiTypeSet& getTouched() const { return touched; }
    void resetStacks()
    {
        for (int type : touched)
            slots[type].traits.reset();
        touched.clear();
    }

    /// Builds the slots anew when types came or went since the last call; false when none did. What was applied is
    /// forgotten then.
    bool update(bool keepDefaults);
    /// The next update() builds the slots anew.
    void invalidate() { built = false; }

    /// See tbTraitStack::getVisualTraits().
    const Trait** makeList(tbTraitStack::LIST_TYPE list, int& count, tbArena* arena, bool copy) const;

private:
    static const Trait* disposable(const Trait* trait, tbArena* arena);

    Slot* slots = nullptr;
    int num = 0;
    unsigned listID = 0; // of the type list for which the slots were built
    bool built = false;
    tbiTypeSet touched;
};

template <class Trait>
bool tbiTraitFamily<Trait>::update(bool keepDefaults)
{
    if (built && listID == Type::getListID())
        return false;
    tbiLockGuard guard(tbiLocks::type);
    built = true;
    listID = Type::getListID();
    delete[] slots;
    const int numTypes = Type::getNumTraitTypes();
    slots = numTypes > 0 ? new Slot[std::size_t(numTypes)] : nullptr;
    num = slots ? numTypes : 0;
    touched.resize(num);
    for (int type = 0; type < num && keepDefaults; ++type)
    {
        slots[type].defaultTrait = Type::createInstance(type);
        if (slots[type].defaultTrait)
            slots[type].defaultTrait->ref();
    }
    return true;
}

template <class Trait>
const Trait** tbiTraitFamily<Trait>::makeList(tbTraitStack::LIST_TYPE list, int& count, tbArena* arena,
                                              bool copy) const
{
    count = 0;
    if (num == 0)
        return nullptr;
    const std::size_t bytes = std::size_t(num) * sizeof(Trait*);
    auto* traits = static_cast<const Trait**>(arena ? arena->malloc(bytes) : tbMemory::malloc(bytes));
    for (int type = 0; type < num && traits; ++type)
    {
        const Slot& slot = slots[type];
        const Trait* trait = list == tbTraitStack::TOP_LIST ? slot.getTop() : slot.defaultTrait;
        if (trait)
            traits[count++] = arena && copy ? disposable(trait, arena) : trait;
    }
    return traits;
}

template <class Trait>
const Trait* tbiTraitFamily<Trait>::disposable(const Trait* trait, tbArena* arena)
{
    const tbBase* copy = trait->isDynamic() ? trait->createDisposableCopy(arena) : nullptr;
    return copy ? static_cast<const Trait*>(copy) : trait;
}
