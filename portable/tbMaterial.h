#pragma once

#include <portable/tbPortableApi.h>
#include <portable/tbTraitApply.h>
#include <tamber/math/tbVec3.h>
#include <tamber/trav/tbVisualTrait.h>

// How a surface answers to light. Colours are red, green and blue, 1 for full.
class TB_PORTABLE_API tbMaterial : public tbVisualTrait
{
    TB_CLASS(tbMaterial, tbVisualTrait)

public:
    /// Light grey, opaque, without highlight.
    tbMaterial();
    tbMaterial(const tbMaterial& other);
    tbMaterial& operator=(const tbMaterial& other);

    /// Colours with a component that is negative or not finite are refused: false, and nothing changed.
    bool setAmbient(const tbVec3& color);
    bool setDiffuse(const tbVec3& color);
    bool setSpecular(const tbVec3& color);
    bool setEmissive(const tbVec3& color);
    /// The exponent of the highlight; refused below 0 and when not finite.
    bool setShininess(float exponent);
    /// 1 for opaque, 0 for invisible; cut to that range, not-a-number is refused.
    bool setOpacity(float value);

    const tbVec3& getAmbient() const { return ambient; }
    const tbVec3& getDiffuse() const { return diffuse; }
    const tbVec3& getSpecular() const { return specular; }
    const tbVec3& getEmissive() const { return emissive; }
    float getShininess() const { return shininess; }
    float getOpacity() const { return opacity; }

    static void setApplyFunc(tbTraitApplyFunc func);

    tbBase* createCopy() const override;
    tbBase* createDisposableCopy(tbArena* arena) const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    bool isEqual(tbTrait* other) const override;
    void apply(tbTravContext* context) const override;
    void apply(tbCamera* camera) const override;

protected:
    tbMaterial(const tbMaterial& other, Disposable disposable);
    ~tbMaterial() override;

private:
    void assign(const tbMaterial& other);

    tbVec3 ambient{0.2f, 0.2f, 0.2f};
    tbVec3 diffuse{0.8f, 0.8f, 0.8f};
    tbVec3 specular{0.0f, 0.0f, 0.0f};
    tbVec3 emissive{0.0f, 0.0f, 0.0f};
    float shininess = 0.0f;
    float opacity = 1.0f;
};
