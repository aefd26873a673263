#include <tamber/trav/tbTravTraitType.h>

#include <tamber/trav/tbTravTrait.h>
#include <tamber/trav/tbiTraitTypes.h>

tbTravTraitType::tbTravTraitType(tbType* parentType, const char* className, CreateFunc creator,
                                 RemoveFunc remover, tbPlugIn* supplier)
    : tbTraitType(tbiTravTraitTypes, parentType, className, creator, remover, supplier)
{
}

int tbTravTraitType::getNumTraitTypes()
{
    return tbiTravTraitTypes.getNum();
}

unsigned tbTravTraitType::getListID()
{
    return tbiTravTraitTypes.listID.load(std::memory_order_acquire);
}

tbTravTraitType* tbTravTraitType::getTraitType(int index)
{
    return static_cast<tbTravTraitType*>(tbiTravTraitTypes.get(index));
}

tbTravTrait* tbTravTraitType::createInstance(int index)
{
    return static_cast<tbTravTrait*>(tbiTravTraitTypes.create(index));
}
