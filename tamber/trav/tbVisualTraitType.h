#pragma once

#include <tamber/trav/tbTraitType.h>

class tbVisualTrait;

// The runtime type of a class of traits that hand render state to a camera.
class TB_API tbVisualTraitType : public tbTraitType
{
public:
    tbVisualTraitType(tbType* parent, const char* name, CreateFunc create, RemoveFunc remove,
                      tbPlugIn* plugIn);

    static int getNumTraitTypes();
    /// Changes with every type that comes or goes.
    static unsigned getListID();
    /// Null when `index` is out of range.
    static tbVisualTraitType* getTraitType(int index);
    using tbType::createInstance;
    /// A new trait of that type, count 0; null when `index` is out of range and for classes that make none.
    static tbVisualTrait* createInstance(int index);
};
