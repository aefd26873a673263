#include <tamber/trav/tbVisualTraitType.h>

#include <tamber/trav/tbVisualTrait.h>
#include <tamber/trav/tbiTraitTypes.h>

tbVisualTraitType::tbVisualTraitType(tbType* parentType, const char* className, CreateFunc creator,
                                     RemoveFunc remover, tbPlugIn* supplier)
    : tbTraitType(tbiVisualTraitTypes, parentType, className, creator, remover, supplier)
{
}

int tbVisualTraitType::getNumTraitTypes()
{
    return tbiVisualTraitTypes.getNum();
}

unsigned tbVisualTraitType::getListID()
{
    return tbiVisualTraitTypes.listID.load(std::memory_order_acquire);
}

tbVisualTraitType* tbVisualTraitType::getTraitType(int index)
{
    return static_cast<tbVisualTraitType*>(tbiVisualTraitTypes.get(index));
}

tbVisualTrait* tbVisualTraitType::createInstance(int index)
{
    return static_cast<tbVisualTrait*>(tbiVisualTraitTypes.create(index));
}
