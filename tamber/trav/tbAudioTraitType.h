#pragma once

#include <tamber/trav/tbTraitType.h>

class tbAudioTrait;

// The runtime type of a class of traits that hand sound state to a listener.
class TB_API tbAudioTraitType : public tbTraitType
{
public:
    tbAudioTraitType(tbType* parent, const char* name, CreateFunc create, RemoveFunc remove,
                     tbPlugIn* plugIn);

    static int getNumTraitTypes();
    /// Changes with every type that comes or goes.
    static unsigned getListID();
    /// Null when `index` is out of range.
    static tbAudioTraitType* getTraitType(int index);
    using tbType::createInstance;
    /// A new trait of that type, count 0; null when `index` is out of range and for classes that make none.
    static tbAudioTrait* createInstance(int index);
};
