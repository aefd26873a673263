#pragma once

#include <tamber/trav/tbTraitType.h>

class tbTravTrait;

// The runtime type of a class of traits that set up the walk itself.
class TB_API tbTravTraitType : public tbTraitType
{
public:
    tbTravTraitType(tbType* parent, const char* name, CreateFunc create, RemoveFunc remove, tbPlugIn* plugIn);

    static int getNumTraitTypes();
    /// Changes with every type that comes or goes.
    static unsigned getListID();
    /// Null when `index` is out of range.
    static tbTravTraitType* getTraitType(int index);
    using tbType::createInstance;
    /// A new trait of that type, count 0; null when `index` is out of range and for classes that make none.
    static tbTravTrait* createInstance(int index);
};
