#include <tamber/trav/tbAudioTraitType.h>

#include <tamber/trav/tbAudioTrait.h>
#include <tamber/trav/tbiTraitTypes.h>

tbAudioTraitType::tbAudioTraitType(tbType* parentType, const char* className, CreateFunc creator,
                                   RemoveFunc remover, tbPlugIn* supplier)
    : tbTraitType(tbiAudioTraitTypes, parentType, className, creator, remover, supplier)
{
}

int tbAudioTraitType::getNumTraitTypes()
{
    return tbiAudioTraitTypes.getNum();
}

unsigned tbAudioTraitType::getListID()
{
    return tbiAudioTraitTypes.listID.load(std::memory_order_acquire);
}

tbAudioTraitType* tbAudioTraitType::getTraitType(int index)
{
    return static_cast<tbAudioTraitType*>(tbiAudioTraitTypes.get(index));
}

tbAudioTrait* tbAudioTraitType::createInstance(int index)
{
    return static_cast<tbAudioTrait*>(tbiAudioTraitTypes.create(index));
}
