#include <tamber/trav/tbVisualTrait.h>

TB_DEFINE_ABSTRACT_VISUAL_TRAIT_CLASS(tbVisualTrait, tbTrait)

tbVisualTrait::tbVisualTrait()
{
    initInstance();
}

tbVisualTrait::tbVisualTrait(const tbVisualTrait& other) : tbTrait(other)
{
    initInstance();
}

tbVisualTrait::tbVisualTrait(const tbVisualTrait& other, Disposable disposable) : tbTrait(other, disposable)
{
}

tbVisualTrait& tbVisualTrait::operator=(const tbVisualTrait& other) = default;

tbVisualTrait::~tbVisualTrait()
{
    deleteInstance();
}

void tbVisualTrait::apply(tbTravContext*) const {}
