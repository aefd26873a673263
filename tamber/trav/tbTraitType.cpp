#include <tamber/trav/tbTraitType.h>

#include <tamber/kernel/tbiLocks.h>
#include <tamber/thread/tbiLockGuard.h>
#include <tamber/trav/tbiTraitTypes.h>

tbTraitType::tbTraitType(tbiTraitTypes& familyTypes, tbType* parentType, const char* className,
                         CreateFunc creator, RemoveFunc remover, tbPlugIn* supplier)
    : tbType(parentType, className, creator, remover, supplier),
      family(familyTypes)
{
    tbiLockGuard guard(tbiLocks::type);
    setIndex(family.types->add(this));
    ++family.listID;
}

tbTraitType::~tbTraitType()
{
    tbiLockGuard guard(tbiLocks::type);
    tbTList<tbTraitType*>& types = *family.types;
    const int free = types.getIndex(this);
    if (!types.checkRemoveIndex(free))
        return;
    // Type and place stay the same number, or the moved type's traits would find no stack.
    if (free < types.getNum())
        types[free]->setIndex(free);
    ++family.listID;
}
