#pragma once

#include <tamber/kernel/tbType.h>

// The runtime type of a node class. All of them form a numbered registry.
class TB_API tbGroupType : public tbType
{
public:
    tbGroupType(tbType* parent, const char* name, CreateFunc create, RemoveFunc remove, tbPlugIn* plugIn);
    /// The last type takes the free place, and its index.
    ~tbGroupType() override;

    static int getNumGroupTypes();
    /// Not range checked.
    static tbGroupType* getGroupType(int i);
    using tbType::createInstance;
    /// A new node of type `i`; null when `i` is out of range or when the class makes none.
    static tbBase* createInstance(int i);

    /// Position in the registry at construction.
    int getGroupSlot() const { return groupSlot; }

private:
    int groupSlot;
};
