#include "tbGroupType.h"

#include <tamber/containers/tbiStatic.h>
#include <tamber/graph/tbiCopyLists.h>
#include <tamber/graph/tbiGraphLists.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/thread/tbiLockGuard.h>

namespace
{

constinit tbiStatic<tbTList<tbGroupType*>> groupTypes;

} // namespace

tbGroupType::tbGroupType(tbType* parentType, const char* className, CreateFunc createNode,
                         RemoveFunc removeClass, tbPlugIn* supplier)
    : tbType(parentType, className, createNode, removeClass, supplier)
{
    tbiLockGuard guard(tbiLocks::type);
    groupSlot = groupTypes->add(this);
    setIndex(groupSlot);
}

tbGroupType::~tbGroupType()
{
    tbiLockGuard guard(tbiLocks::type);
    const int free = groupTypes->getIndex(this);
    // Index and place stay the same number, or statistics would count two types as one.
    if (groupTypes->checkRemoveIndex(free) && free < groupTypes->getNum())
        (*groupTypes)[free]->setIndex(free);
}

int tbGroupType::getNumGroupTypes()
{
    tbiLockGuard guard(tbiLocks::type);
    return groupTypes->getNum();
}

tbGroupType* tbGroupType::getGroupType(int i)
{
    tbiLockGuard guard(tbiLocks::type);
    return (*groupTypes)[i];
}

// The count itself passes the stated range test; there is no type behind it, so the result is null as well.
tbBase* tbGroupType::createInstance(int i)
{
    tbiLockGuard guard(tbiLocks::type);
    return groupTypes->indexInRange(i) ? (*groupTypes)[i]->create() : nullptr;
}

void tbiReleaseGraphLists()
{
    groupTypes->setSize(0);
    tbiReleaseCopyLists();
}
