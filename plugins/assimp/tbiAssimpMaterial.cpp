#include "tbiAssimpMaterial.h"

#include <portable/tbBlend.h>
#include <portable/tbFaceCull.h>
#include <portable/tbMaterial.h>
#include <portable/tbTexture.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/render/tbStyle.h>

#include "tbiExtras.h"
#include "tbiNotedTraits.h"

#include <assimp/GltfMaterial.h>
#include <assimp/material.h>
#include <assimp/scene.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <string_view>
#include <vector>

namespace
{
tbVec3 toVec3(const aiColor4D& color)
{
    return {color.r, color.g, color.b};
}

void convertColors(const aiMaterial& source, tbMaterial& material, float& opacity)
{
    aiColor4D color;
    if (source.Get(AI_MATKEY_COLOR_AMBIENT, color) == AI_SUCCESS)
        material.setAmbient(toVec3(color));
    if (source.Get(AI_MATKEY_COLOR_DIFFUSE, color) == AI_SUCCESS)
        material.setDiffuse(toVec3(color));
    if (source.Get(AI_MATKEY_BASE_COLOR, color) == AI_SUCCESS)
    {
        material.setDiffuse(toVec3(color));
        opacity = color.a;
    }
    if (source.Get(AI_MATKEY_COLOR_SPECULAR, color) == AI_SUCCESS)
        material.setSpecular(toVec3(color));
    if (source.Get(AI_MATKEY_COLOR_EMISSIVE, color) == AI_SUCCESS)
        material.setEmissive(toVec3(color));
    float value = 0.0f;
    if (source.Get(AI_MATKEY_SHININESS, value) == AI_SUCCESS)
        material.setShininess(value);
    if (source.Get(AI_MATKEY_OPACITY, value) == AI_SUCCESS)
        opacity = value;
    if (std::isnan(opacity))
        opacity = 1.0f;
    material.setOpacity(opacity);
}

tbTexture::WRAP toWrap(int mode)
{
    switch (mode)
    {
    case aiTextureMapMode_Clamp:
    case aiTextureMapMode_Decal:
        return tbTexture::WRAP_CLAMP;
    case aiTextureMapMode_Mirror:
        return tbTexture::WRAP_MIRROR;
    default:
        return tbTexture::WRAP_REPEAT;
    }
}

bool isPixelCountSane(const aiTexture& image)
{
    return image.mWidth >= 1 && image.mWidth <= unsigned(tbTexture::MAX_SIZE) &&
           image.mHeight <= unsigned(tbTexture::MAX_SIZE);
}

/// An image that the model carries: with a height it is pixels, without it is a file of as many bytes as its width.
void embedImage(const aiTexture& image, tbTexture& texture)
{
    if (image.mHeight == 0)
    {
        if (image.mWidth <= unsigned(std::numeric_limits<int>::max()))
            texture.setImageFile(
                image.pcData, int(image.mWidth),
                {image.achFormatHint, strnlen(image.achFormatHint, sizeof(image.achFormatHint))});
        return;
    }
    if (!isPixelCountSane(image))
        return;
    const std::size_t count = std::size_t(image.mWidth) * image.mHeight;
    std::vector<unsigned char> rgba(count * 4);
    for (std::size_t i = 0; i < count; ++i)
    {
        const aiTexel& texel = image.pcData[i];
        const unsigned char pixel[] = {texel.r, texel.g, texel.b, texel.a};
        std::memcpy(&rgba[i * 4], pixel, 4);
    }
    texture.setPixels(int(image.mWidth), int(image.mHeight), rgba.data());
}

/// Where the image of the surface's colour is; NONE when there is none.
aiTextureType pathOf(const aiMaterial& source, aiString& path)
{
    for (const aiTextureType type : {aiTextureType_DIFFUSE, aiTextureType_BASE_COLOR})
        if (source.GetTextureCount(type) > 0)
            return source.GetTexture(type, 0, &path) == AI_SUCCESS && path.length > 0 ? type
                                                                                      : aiTextureType_NONE;
    return aiTextureType_NONE;
}

/// Additive materials and those that light passes through mix with what is behind them.
void addBlend(const aiMaterial& source, float opacity, std::vector<tbRef<tbVisualTrait>>& traits)
{
    int function = aiBlendMode_Default;
    source.Get(AI_MATKEY_BLEND_FUNC, function);
    aiString mode;
    const bool saysBlend =
        source.Get(AI_MATKEY_GLTF_ALPHAMODE, mode) == AI_SUCCESS && std::strcmp(mode.C_Str(), "BLEND") == 0;
    const bool isAdditive = function == aiBlendMode_Additive;
    if (!saysBlend && !isAdditive && opacity >= 1.0f)
        return;
    tbRef<tbBlend> blend = new tbBlend;
    blend->enable(true);
    if (isAdditive)
        blend->setFactors(tbBlend::SRC_ALPHA, tbBlend::ONE);
    traits.emplace_back(blend.get());
}

void addFaceCull(const aiMaterial& source, std::vector<tbRef<tbVisualTrait>>& traits)
{
    int twoSided = 0;
    if (source.Get(AI_MATKEY_TWOSIDED, twoSided) != AI_SUCCESS)
        return;
    tbRef<tbFaceCull> cull = new tbFaceCull;
    cull->setFace(twoSided != 0 ? tbFaceCull::CULL_NONE : tbFaceCull::CULL_BACK);
    traits.emplace_back(cull.get());
}
} // namespace

tbiAssimpMaterials::tbiAssimpMaterials(const aiScene& source) : scene(source), materials(source.mNumMaterials)
{
}

tbiAssimpMaterials::~tbiAssimpMaterials() = default;

void tbiAssimpMaterials::addTraits(unsigned index, tbStyle& style)
{
    if (index >= materials.size())
        return;
    if (materials[index].empty())
        materials[index] = convert(*scene.mMaterials[index]);
    for (const tbRef<tbVisualTrait>& trait : materials[index])
        style.addTrait(trait.get());
}

void tbiAssimpMaterials::addNotedTraits(int id, const tbiExtras& notes, unsigned index, tbStyle& style)
{
    const auto [place, isNew] = noted.try_emplace(id);
    if (isNew)
    {
        aiString path;
        const bool hasPath =
            index < scene.mNumMaterials && pathOf(*scene.mMaterials[index], path) != aiTextureType_NONE;
        place->second = tbiMakeNotedTraits(notes, hasPath ? scene.GetEmbeddedTexture(path.C_Str()) : nullptr);
        for (tbRef<tbVisualTrait>& trait : place->second)
            if (trait->isOfType(tbTexture::getClassType()))
                trait = shareTexture(static_cast<tbTexture*>(trait.get())).get();
    }
    for (const tbRef<tbVisualTrait>& trait : place->second)
        style.addTrait(trait.get());
}

tbiAssimpMaterials::Traits tbiAssimpMaterials::convert(const aiMaterial& source)
{
    Traits traits;
    tbRef<tbMaterial> material = new tbMaterial;
    float opacity = 1.0f;
    convertColors(source, *material, opacity);
    aiString name;
    if (source.Get(AI_MATKEY_NAME, name) == AI_SUCCESS && name.length > 0)
        material->setName(name.C_Str());
    traits.emplace_back(material.get());
    addTexture(source, traits);
    addBlend(source, opacity, traits);
    addFaceCull(source, traits);
    return traits;
}

void tbiAssimpMaterials::addTexture(const aiMaterial& source, Traits& traits)
{
    aiString path;
    const aiTextureType type = pathOf(source, path);
    if (type == aiTextureType_NONE)
        return;
    TextureSource origin{path.C_Str(), aiTextureMapMode_Wrap, aiTextureMapMode_Wrap};
    source.Get(AI_MATKEY_MAPPINGMODE_U(type, 0), std::get<1>(origin));
    source.Get(AI_MATKEY_MAPPINGMODE_V(type, 0), std::get<2>(origin));
    tbRef<tbTexture>& texture = textures[origin];
    if (!texture)
        texture = shareTexture(makeTexture(origin));
    traits.emplace_back(texture.get());
}

tbRef<tbTexture> tbiAssimpMaterials::makeTexture(const TextureSource& source) const
{
    const auto& [path, modeU, modeV] = source;
    tbRef<tbTexture> texture = new tbTexture;
    if (const aiTexture* image = scene.GetEmbeddedTexture(path.c_str()))
        embedImage(*image, *texture);
    else
        texture->setFileName(path.c_str());
    texture->setWrap(toWrap(modeU), toWrap(modeV));
    return texture;
}

/// The equal one that came before, where there is one.
tbRef<tbTexture> tbiAssimpMaterials::shareTexture(const tbRef<tbTexture>& texture)
{
    const std::string_view image(static_cast<const char*>(texture->getImage()), texture->getImageSize());
    const std::string_view name = texture->getFileName() ? texture->getFileName() : "";
    const std::hash<std::string_view> hashOf;
    const std::size_t hash = hashOf(image) ^ hashOf(name);
    const auto [first, end] = alike.equal_range(hash);
    for (auto earlier = first; earlier != end; ++earlier)
        if (earlier->second->isEqual(texture.get()))
            return earlier->second;
    alike.emplace(hash, texture);
    return texture;
}
