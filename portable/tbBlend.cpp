#include "tbBlend.h"

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbArena.h>

#include "tbiTraitApply.h"

TB_DEFINE_VISUAL_TRAIT_CLASS(tbBlend, tbVisualTrait)

namespace
{
std::atomic<tbTraitApplyFunc> blendFunc{nullptr};

bool isFactor(tbBlend::FACTOR factor)
{
    return factor >= tbBlend::ZERO && factor <= tbBlend::ONE_MINUS_DST_ALPHA;
}
} // namespace

tbBlend::tbBlend()
{
    initInstance();
}

tbBlend::tbBlend(const tbBlend& other) : tbVisualTrait(other)
{
    initInstance();
    assign(other);
}

tbBlend::tbBlend(const tbBlend& other, Disposable disposable) : tbVisualTrait(other, disposable)
{
    assign(other);
}

tbBlend& tbBlend::operator=(const tbBlend& other)
{
    tbVisualTrait::operator=(other);
    assign(other);
    return *this;
}

tbBlend::~tbBlend()
{
    deleteInstance();
}

void tbBlend::assign(const tbBlend& other)
{
    enabled = other.enabled;
    sourceFactor = other.sourceFactor;
    destinationFactor = other.destinationFactor;
}

bool tbBlend::setFactors(FACTOR source, FACTOR destination)
{
    if (!isFactor(source) || !isFactor(destination))
        return false;
    sourceFactor = source;
    destinationFactor = destination;
    return true;
}

void tbBlend::setApplyFunc(tbTraitApplyFunc func)
{
    blendFunc.store(func, std::memory_order_release);
}

tbBase* tbBlend::createCopy() const
{
    return new tbBlend(*this);
}

tbBase* tbBlend::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbBlend(*this, Disposable{arena});
}

tbEntry* tbBlend::read(tbFile* file, tbEntry* entry)
{
    entry = tbVisualTrait::read(file, entry);
    if (!entry)
        return nullptr;
    enabled = entry->readInt() == 1;
    const auto source = FACTOR(entry->readInt());
    setFactors(source, FACTOR(entry->readInt()));
    return entry;
}

tbEntry* tbBlend::write(tbFile* file, tbEntry* entry) const
{
    entry = tbVisualTrait::write(file, entry);
    if (!entry)
        return nullptr;
    entry->writeInt(enabled ? 1 : 0);
    entry->writeInt(sourceFactor);
    entry->writeInt(destinationFactor);
    return entry;
}

bool tbBlend::isEqual(tbTrait* other) const
{
    if (!isSameKind(other))
        return false;
    const auto& blend = static_cast<const tbBlend&>(*other);
    return enabled == blend.enabled && sourceFactor == blend.sourceFactor &&
           destinationFactor == blend.destinationFactor;
}

void tbBlend::apply(tbTravContext* context) const
{
    const bool byAlpha = sourceFactor == SRC_ALPHA || destinationFactor == ONE_MINUS_SRC_ALPHA;
    tbiSetTransparencyInput(context, TBI_BLENDING, enabled);
    tbiSetTransparencyInput(context, TBI_ALPHA_BLENDING, enabled && byAlpha);
}

void tbBlend::apply(tbCamera* camera) const
{
    tbiApplyTrait(this, camera, blendFunc);
}
