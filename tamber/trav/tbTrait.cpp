#include <tamber/trav/tbTrait.h>

#include <tamber/io/tbEntry.h>

#include <atomic>

TB_DEFINE_ABSTRACT_CLASS(tbTrait, tbBase)

std::uint32_t tbTrait::makeSerial()
{
    static constinit std::atomic<std::uint32_t> next{0};
    return next.fetch_add(1, std::memory_order_relaxed);
}

tbTrait::tbTrait()
{
    initInstance();
}

tbTrait::tbTrait(const tbTrait& other) : tbBase(other), mode(other.mode), shareable(other.shareable)
{
    initInstance();
}

tbTrait::tbTrait(const tbTrait& other, Disposable disposable)
    : tbBase(other, disposable),
      mode(other.mode),
      shareable(other.shareable)
{
}

tbTrait& tbTrait::operator=(const tbTrait& other)
{
    tbBase::operator=(other);
    mode = other.mode;
    shareable = other.shareable;
    return *this;
}

tbTrait::~tbTrait()
{
    deleteInstance();
}

bool tbTrait::operator==(const tbTrait& other) const
{
    return mode == other.mode && isShareable() == other.isShareable();
}

bool tbTrait::isSameKind(const tbTrait* other) const
{
    return other && isOfExactType(other) && *this == *other;
}

void tbTrait::setApplyMode(MODE newMode)
{
    mode = newMode;
}

void tbTrait::enableShareable(bool enable)
{
    shareable = enable ? 1 : 0;
}

void tbTrait::apply(tbTravContext*) const {}

tbEntry* tbTrait::read(tbFile* file, tbEntry* entry)
{
    entry = tbBase::read(file, entry);
    if (!entry)
        return nullptr;
    mode = MODE(entry->readShort());
    shareable = entry->readShort();
    return entry;
}

tbEntry* tbTrait::write(tbFile* file, tbEntry* entry) const
{
    entry = tbBase::write(file, entry);
    if (!entry)
        return nullptr;
    entry->writeShort(mode);
    entry->writeShort(shareable);
    return entry;
}
