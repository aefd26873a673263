#include <tamber/trav/tbAudioTrait.h>

TB_DEFINE_ABSTRACT_AUDIO_TRAIT_CLASS(tbAudioTrait, tbTrait)

tbAudioTrait::tbAudioTrait()
{
    initInstance();
}

tbAudioTrait::tbAudioTrait(const tbAudioTrait& other) : tbTrait(other)
{
    initInstance();
}

tbAudioTrait::tbAudioTrait(const tbAudioTrait& other, Disposable disposable) : tbTrait(other, disposable) {}

tbAudioTrait& tbAudioTrait::operator=(const tbAudioTrait& other) = default;

tbAudioTrait::~tbAudioTrait()
{
    deleteInstance();
}

void tbAudioTrait::apply(tbTravContext*) const {}
