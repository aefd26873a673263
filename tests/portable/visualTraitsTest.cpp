#include <portable/tbBlend.h>
#include <portable/tbFaceCull.h>
#include <portable/tbMaterial.h>
#include <portable/tbTexture.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/trav/tbTravContext.h>

#include <cmath>
#include <functional>

#include <gtest/gtest.h>

namespace
{
tbMaterial* makeMaterial()
{
    auto* material = new tbMaterial;
    material->setDiffuse(tbVec3(0.1f, 0.2f, 0.3f));
    material->setShininess(20.0f);
    material->setOpacity(0.25f);
    return material;
}

tbTexture* makeTexture()
{
    const unsigned char pixels[] = {1, 2, 3, 255, 4, 5, 6, 0};
    auto* texture = new tbTexture;
    texture->setFileName("brick.png");
    texture->setPixels(2, 1, pixels);
    texture->setWrap(tbTexture::WRAP_CLAMP, tbTexture::WRAP_MIRROR);
    texture->setFilter(tbTexture::FILTER_NEAREST);
    return texture;
}

tbTexture* makeImageFile()
{
    auto* texture = new tbTexture;
    texture->setImageFile("bytes", 5, "jpeg2000");
    return texture;
}

tbBlend* makeBlend()
{
    auto* blend = new tbBlend;
    blend->enable(true);
    blend->setFactors(tbBlend::SRC_ALPHA, tbBlend::ONE);
    return blend;
}

tbFaceCull* makeFaceCull()
{
    auto* cull = new tbFaceCull;
    cull->setFace(tbFaceCull::CULL_FRONT);
    return cull;
}

const std::function<tbVisualTrait*()> MAKERS[] = {makeMaterial, makeTexture, makeImageFile, makeBlend,
                                                  makeFaceCull};
} // namespace

TEST(VisualTraits, EqualTheirCopiesAndNotTheirDefaults)
{
    for (const auto& make : MAKERS)
    {
        const tbRef<tbVisualTrait> trait = make();
        const tbType* type = trait->getType();
        const tbRef<tbTrait> copy = static_cast<tbTrait*>(trait->createCopy());
        const tbRef<tbTrait> other = static_cast<tbTrait*>(tbType::createInstance(type->getName()));
        EXPECT_TRUE(trait->isEqual(copy.get())) << type->getName();
        EXPECT_FALSE(trait->isEqual(other.get()) || trait->isEqual(nullptr)) << type->getName();
        copy->setApplyMode(tbTrait::OVERRIDE);
        EXPECT_FALSE(trait->isEqual(copy.get())) << type->getName();
    }
}

TEST(VisualTraits, MakeDisposableCopiesThatOutliveThem)
{
    tbArena arena(65536);
    for (const auto& make : MAKERS)
    {
        tbRef<tbVisualTrait> trait = make();
        const tbType* type = trait->getType();
        const int instances = type->getNum(false);
        auto* copy = static_cast<tbVisualTrait*>(trait->createDisposableCopy(&arena));
        ASSERT_NE(copy, nullptr) << type->getName();
        EXPECT_EQ(type->getNum(false), instances);

        trait = make();
        EXPECT_TRUE(copy->isEqual(trait.get())) << type->getName();
    }
}

TEST(Material, RefusesWhatIsNoColor)
{
    const tbRef<tbMaterial> material = new tbMaterial;
    EXPECT_FALSE(material->setDiffuse(tbVec3(0.5f, -0.1f, 0.5f)));
    EXPECT_FALSE(material->setEmissive(tbVec3(NAN, 0.0f, 0.0f)));
    EXPECT_FALSE(material->setShininess(INFINITY));
    EXPECT_FALSE(material->setOpacity(NAN));
    EXPECT_TRUE(material->setOpacity(3.0f));
    EXPECT_EQ(material->getOpacity(), 1.0f);
    EXPECT_EQ(material->getDiffuse(), tbVec3(0.8f, 0.8f, 0.8f));
}

TEST(Texture, RefusesImagesWithoutPixels)
{
    const tbRef<tbTexture> texture = new tbTexture;
    EXPECT_FALSE(texture->setPixels(0, 4, "pixels"));
    EXPECT_FALSE(texture->setPixels(tbTexture::MAX_SIZE + 1, 1, "pixels"));
    EXPECT_FALSE(texture->setPixels(1, 1, nullptr));
    EXPECT_FALSE(texture->setImageFile("bytes", 0, "png"));
    EXPECT_EQ(texture->getImage(), nullptr);
    EXPECT_FALSE(texture->setWrap(tbTexture::WRAP(3), tbTexture::WRAP_CLAMP));
}

TEST(Texture, FindsTranslucentPixels)
{
    const tbRef<tbTexture> texture = makeTexture();
    EXPECT_TRUE(texture->isTranslucent());
    const unsigned char opaque[] = {0, 0, 0, 255};
    texture->setPixels(1, 1, opaque);
    EXPECT_FALSE(texture->isTranslucent());
}

TEST(Blend, OfATranslucentMaterialIsTransparent)
{
    const tbRef<tbTravContext> context = new tbTravContext;
    const tbRef<tbMaterial> material = makeMaterial();
    const tbRef<tbBlend> blend = makeBlend();
    static_cast<tbTrait&>(*material).apply(context.get());
    EXPECT_FALSE(context->anyFlags(tbTravContext::TRANSPARENCY));
    static_cast<tbTrait&>(*blend).apply(context.get());
    EXPECT_TRUE(context->anyFlags(tbTravContext::TRANSPARENCY));
    blend->enable(false);
    static_cast<tbTrait&>(*blend).apply(context.get());
    EXPECT_FALSE(context->anyFlags(tbTravContext::TRANSPARENCY));
}
