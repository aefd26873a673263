#include <tamber/trav/tbiTraitTypes.h>

#include <tamber/kernel/tbiLocks.h>
#include <tamber/thread/tbiLockGuard.h>
#include <tamber/trav/tbiTravLists.h>

constinit tbiTraitTypes tbiVisualTraitTypes;
constinit tbiTraitTypes tbiAudioTraitTypes;
constinit tbiTraitTypes tbiTravTraitTypes;

int tbiTraitTypes::getNum()
{
    tbiLockGuard guard(tbiLocks::type);
    return types->getNum();
}

tbTraitType* tbiTraitTypes::get(int index)
{
    tbiLockGuard guard(tbiLocks::type);
    return types->indexInRange(index) ? (*types)[index] : nullptr;
}

tbBase* tbiTraitTypes::create(int index)
{
    tbiLockGuard guard(tbiLocks::type);
    const tbTraitType* type = get(index);
    return type ? type->create() : nullptr;
}

void tbiReleaseTravLists()
{
    for (tbiTraitTypes* family : {&tbiVisualTraitTypes, &tbiAudioTraitTypes, &tbiTravTraitTypes})
        family->types->setSize(0);
}
