#pragma once

#include <tamber/containers/tbiStatic.h>
#include <tamber/trav/tbTraitType.h>

// The numbered types of one family of traits, guarded by the type lock. The list's own number may be read without it.
struct tbiTraitTypes
{
    tbiStatic<tbTList<tbTraitType*>> types;
    std::atomic<unsigned> listID{0};

    int getNum();
    /// Null when `index` is out of range.
    tbTraitType* get(int index);
    /// Null when `index` is out of range and for classes that make no instances.
    tbBase* create(int index);
};

extern constinit tbiTraitTypes tbiVisualTraitTypes;
extern constinit tbiTraitTypes tbiAudioTraitTypes;
extern constinit tbiTraitTypes tbiTravTraitTypes;
