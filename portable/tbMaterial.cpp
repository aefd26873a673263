#include "tbMaterial.h"

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbArena.h>

#include "tbiTraitApply.h"

#include <algorithm>
#include <cmath>

TB_DEFINE_VISUAL_TRAIT_CLASS(tbMaterial, tbVisualTrait)

namespace
{
std::atomic<tbTraitApplyFunc> materialFunc{nullptr};

bool isColorPart(float value)
{
    return std::isfinite(value) && value >= 0.0f;
}

bool setColor(tbVec3& target, const tbVec3& color)
{
    if (!isColorPart(color[0]) || !isColorPart(color[1]) || !isColorPart(color[2]))
        return false;
    target = color;
    return true;
}

void readColor(tbEntry* entry, tbVec3& target)
{
    tbVec3 color;
    color.read(entry);
    setColor(target, color);
}
} // namespace

tbMaterial::tbMaterial()
{
    initInstance();
}

tbMaterial::tbMaterial(const tbMaterial& other) : tbVisualTrait(other)
{
    initInstance();
    assign(other);
}

tbMaterial::tbMaterial(const tbMaterial& other, Disposable disposable) : tbVisualTrait(other, disposable)
{
    assign(other);
}

tbMaterial& tbMaterial::operator=(const tbMaterial& other)
{
    tbVisualTrait::operator=(other);
    assign(other);
    return *this;
}

tbMaterial::~tbMaterial()
{
    deleteInstance();
}

void tbMaterial::assign(const tbMaterial& other)
{
    ambient = other.ambient;
    diffuse = other.diffuse;
    specular = other.specular;
    emissive = other.emissive;
    shininess = other.shininess;
    opacity = other.opacity;
}

bool tbMaterial::setAmbient(const tbVec3& color)
{
    return setColor(ambient, color);
}

bool tbMaterial::setDiffuse(const tbVec3& color)
{
    return setColor(diffuse, color);
}

bool tbMaterial::setSpecular(const tbVec3& color)
{
    return setColor(specular, color);
}

bool tbMaterial::setEmissive(const tbVec3& color)
{
    return setColor(emissive, color);
}

bool tbMaterial::setShininess(float exponent)
{
    if (!isColorPart(exponent))
        return false;
    shininess = exponent;
    return true;
}

bool tbMaterial::setOpacity(float value)
{
    if (std::isnan(value))
        return false;
    opacity = std::clamp(value, 0.0f, 1.0f);
    return true;
}

void tbMaterial::setApplyFunc(tbTraitApplyFunc func)
{
    materialFunc.store(func, std::memory_order_release);
}

tbBase* tbMaterial::createCopy() const
{
    return new tbMaterial(*this);
}

tbBase* tbMaterial::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbMaterial(*this, Disposable{arena});
}

tbEntry* tbMaterial::read(tbFile* file, tbEntry* entry)
{
    entry = tbVisualTrait::read(file, entry);
    if (!entry)
        return nullptr;
    readColor(entry, ambient);
    readColor(entry, diffuse);
    readColor(entry, specular);
    readColor(entry, emissive);
    setShininess(entry->readFloat());
    setOpacity(entry->readFloat());
    return entry;
}

tbEntry* tbMaterial::write(tbFile* file, tbEntry* entry) const
{
    entry = tbVisualTrait::write(file, entry);
    if (!entry)
        return nullptr;
    ambient.write(entry);
    diffuse.write(entry);
    specular.write(entry);
    emissive.write(entry);
    entry->writeFloat(shininess);
    entry->writeFloat(opacity);
    return entry;
}

bool tbMaterial::isEqual(tbTrait* other) const
{
    if (!isSameKind(other))
        return false;
    const auto& material = static_cast<const tbMaterial&>(*other);
    return ambient == material.ambient && diffuse == material.diffuse && specular == material.specular &&
           emissive == material.emissive && shininess == material.shininess && opacity == material.opacity;
}

void tbMaterial::apply(tbTravContext* context) const
{
    tbiSetTransparencyInput(context, TBI_MATERIAL_ALPHA, opacity < 1.0f);
}

void tbMaterial::apply(tbCamera* camera) const
{
    tbiApplyTrait(this, camera, materialFunc);
}
