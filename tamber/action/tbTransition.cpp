#include <tamber/action/tbTransition.h>

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/trav/tbTravContext.h>

TB_DEFINE_TRAV_TRAIT_CLASS(tbTransition, tbTravTrait)

tbTransition::tbTransition()
{
    initInstance();
}

tbTransition::tbTransition(const tbTransition& other)
    : tbTravTrait(other),
      mode(other.mode),
      scale(other.scale)
{
    initInstance();
}

tbTransition& tbTransition::operator=(const tbTransition& other) = default;

tbTransition::~tbTransition()
{
    deleteInstance();
}

bool tbTransition::operator==(const tbTransition& other) const
{
    return tbTrait::operator==(other) && scale == other.scale && mode == other.mode;
}

tbBase* tbTransition::createCopy() const
{
    return tbiCopyOf(*this);
}

tbEntry* tbTransition::read(tbFile* file, tbEntry* entry)
{
    entry = tbTravTrait::read(file, entry);
    if (!entry)
        return nullptr;
    scale = entry->readFloat();
    mode = MODE(entry->readInt());
    return entry;
}

tbEntry* tbTransition::write(tbFile* file, tbEntry* entry) const
{
    entry = tbTravTrait::write(file, entry);
    if (!entry)
        return nullptr;
    entry->writeFloat(scale);
    entry->writeInt(mode);
    return entry;
}

void tbTransition::apply(tbTravContext* context) const
{
    context->setTransitionScale(scale);
    context->setTransitionMode(mode);
}

bool tbTransition::isEqual(tbTrait* other) const
{
    return isSameKind(other) && *this == *static_cast<const tbTransition*>(other);
}

void tbTransition::setMode(MODE newMode)
{
    mode = newMode;
}

void tbTransition::setScale(float newScale)
{
    scale = newScale;
}
