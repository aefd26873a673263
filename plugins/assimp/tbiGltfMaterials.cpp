#include "tbiGltfMaterials.h"

#include <portable/tbBlend.h>
#include <portable/tbFaceCull.h>
#include <portable/tbMaterial.h>
#include <portable/tbTexture.h>

#include "tbiExportScene.h"
#include "tbiPng.h"

#include <algorithm>
#include <cctype>
#include <cmath>

namespace
{
void writeColor(tbiJson& json, const tbVec3& color)
{
    json.number(tbiClampUnit(color[0])).number(tbiClampUnit(color[1])).number(tbiClampUnit(color[2]));
}

/// The roughness whose highlight has about the width that the exponent gives.
float roughnessOf(float shininess)
{
    return std::sqrt(2.0f / (std::max(shininess, 0.0f) + 2.0f));
}

std::string mimeTypeOf(const char* format)
{
    const std::string name = format;
    return "image/" + (name == "jpg" ? "jpeg" : name);
}

/// A file name as a relative address.
std::string addressOf(const char* fileName)
{
    constexpr const char* DIGITS = "0123456789ABCDEF";
    std::string address;
    for (; *fileName != 0; ++fileName)
    {
        const auto byte = static_cast<unsigned char>(*fileName);
        if (byte == '\\')
            address += '/';
        else if (std::isalnum(byte) || std::string_view("-._~/").find(char(byte)) != std::string_view::npos)
            address += char(byte);
        else
            address += {'%', DIGITS[byte >> 4], DIGITS[byte & 15]};
    }
    return address;
}

int wrapOf(tbTexture::WRAP wrap)
{
    constexpr int CLAMP_TO_EDGE = 33071;
    constexpr int MIRRORED_REPEAT = 33648;
    constexpr int REPEAT = 10497;
    return wrap == tbTexture::WRAP_CLAMP    ? CLAMP_TO_EDGE
           : wrap == tbTexture::WRAP_MIRROR ? MIRRORED_REPEAT
                                            : REPEAT;
}

void writeSampler(tbiJson& json, const tbTexture& texture)
{
    constexpr int NEAREST = 9728;
    constexpr int LINEAR = 9729;
    constexpr int LINEAR_MIPMAP_LINEAR = 9987;
    const bool isNearest = texture.getFilter() == tbTexture::FILTER_NEAREST;
    const int reduced = texture.getFilter() == tbTexture::FILTER_MIPMAP ? LINEAR_MIPMAP_LINEAR : LINEAR;
    json.beginObject();
    json.key("magFilter").integer(isNearest ? NEAREST : LINEAR);
    json.key("minFilter").integer(isNearest ? NEAREST : reduced);
    json.key("wrapS").integer(wrapOf(texture.getWrapS()));
    json.key("wrapT").integer(wrapOf(texture.getWrapT()));
    json.endObject();
}
} // namespace

tbiGltfMaterials::tbiGltfMaterials(tbiGltfBuffer& target) : buffer(target)
{
    textures.beginArray();
    images.beginArray();
    samplers.beginArray();
}

void tbiGltfMaterials::write(const tbiExportMaterial& source, tbiJson& json)
{
    const tbMaterial* material = source.material;
    const float opacity = material ? tbiClampUnit(material->getOpacity()) : 1.0f;
    const int texture = textureOf(source.texture);
    json.beginObject();
    if (material && material->getName())
        json.key("name").string(material->getName());
    json.key("pbrMetallicRoughness").beginObject();
    if (material)
    {
        json.key("baseColorFactor").beginArray();
        writeColor(json, material->getDiffuse());
        json.number(opacity).endArray();
    }
    if (texture >= 0)
        json.key("baseColorTexture").beginObject().key("index").integer(texture).endObject();
    json.key("metallicFactor").integer(0);
    json.key("roughnessFactor").number(roughnessOf(material ? material->getShininess() : 0.0f));
    json.endObject();
    if (material)
    {
        json.key("emissiveFactor").beginArray();
        writeColor(json, material->getEmissive());
        json.endArray();
    }
    if (opacity < 1.0f || (source.blend && source.blend->isEnabled()))
        json.key("alphaMode").string("BLEND");
    json.key("doubleSided").boolean(!source.cull || source.cull->getFace() == tbFaceCull::CULL_NONE);
    json.endObject();
}

int tbiGltfMaterials::textureOf(const tbTexture* texture)
{
    if (!texture || (!texture->getImage() && !texture->getFileName()))
        return -1;
    const auto [place, isNew] = written.try_emplace(texture, numTextures);
    if (!isNew)
        return place->second;
    textures.beginObject().key("source").integer(numTextures).key("sampler").integer(numTextures).endObject();
    writeSampler(samplers, *texture);
    images.beginObject();
    const auto* image = static_cast<const unsigned char*>(texture->getImage());
    const auto embed = [&](const void* bytes, std::size_t size, const char* format)
    {
        images.key("bufferView").integer(buffer.addView(bytes, size, 0, tbiGltfBuffer::TARGET_NONE));
        images.key("mimeType").string(mimeTypeOf(format));
    };
    if (image && texture->getWidth() > 0)
    {
        const auto file = tbiWritePng(texture->getWidth(), texture->getHeight(), image);
        embed(file.data(), file.size(), "png");
    }
    else if (image)
        embed(image, texture->getImageSize(), *texture->getFormat() ? texture->getFormat() : "png");
    else
        images.key("uri").string(addressOf(texture->getFileName()));
    images.endObject();
    return numTextures++;
}

void tbiGltfMaterials::writeLists(tbiJson& json) const
{
    if (numTextures == 0)
        return;
    json.key("textures").value(textures.getText() + "]");
    json.key("images").value(images.getText() + "]");
    json.key("samplers").value(samplers.getText() + "]");
}
