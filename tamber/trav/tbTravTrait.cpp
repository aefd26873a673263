#include <tamber/trav/tbTravTrait.h>

TB_DEFINE_ABSTRACT_TRAV_TRAIT_CLASS(tbTravTrait, tbTrait)

tbTravTrait::tbTravTrait()
{
    initInstance();
}

tbTravTrait::tbTravTrait(const tbTravTrait& other) : tbTrait(other)
{
    initInstance();
}

tbTravTrait::tbTravTrait(const tbTravTrait& other, Disposable disposable) : tbTrait(other, disposable) {}

tbTravTrait& tbTravTrait::operator=(const tbTravTrait& other) = default;

tbTravTrait::~tbTravTrait()
{
    deleteInstance();
}
