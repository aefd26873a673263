#include <tamber/audio/tbAudioScale.h>

#include <tamber/audio/tbListener.h>
#include <tamber/io/tbEntry.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>

tbAudioScale::tbAudioScale(const tbAudioScale& other, Disposable disposable)
    : tbAudioTrait(other, disposable),
      scale(other.scale)
{
}

bool tbAudioScale::operator==(const tbAudioScale& other) const
{
    return tbTrait::operator==(other) && scale == other.scale;
}

bool tbAudioScale::isEqual(tbTrait* other) const
{
    return isSameKind(other) && scale == static_cast<const tbAudioScale*>(other)->scale;
}

void tbAudioScale::set(float factor)
{
    scale = factor;
}

void tbAudioScale::recordApplied(tbListener* listener) const
{
    const tbTravContext* context = listener->getTravContext();
    if (tbTraitStack* stack = context ? context->getTraitStack() : nullptr)
        stack->setAppliedTrait(this);
}

tbEntry* tbAudioScale::read(tbFile* file, tbEntry* entry)
{
    entry = tbAudioTrait::read(file, entry);
    if (entry)
        scale = entry->readFloat();
    return entry;
}

tbEntry* tbAudioScale::write(tbFile* file, tbEntry* entry) const
{
    entry = tbAudioTrait::write(file, entry);
    if (entry)
        entry->writeFloat(scale);
    return entry;
}
