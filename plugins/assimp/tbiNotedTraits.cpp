#include "tbiNotedTraits.h"

#include <portable/tbBlend.h>
#include <portable/tbFaceCull.h>
#include <portable/tbMaterial.h>
#include <portable/tbTexture.h>

#include "tbiExtras.h"
#include "tbiGltfMarks.h"
#include "tbiPng.h"

#include <assimp/texture.h>

#include <limits>

namespace
{
constexpr std::size_t NUM_SURFACE_VALUES = 14;
constexpr std::size_t NUM_TEXTURE_VALUES = 5;

/// -1, which no enumeration has, for what is no small whole number.
int whole(float value)
{
    return value >= 0.0f && value <= 65536.0f ? int(value) : -1;
}

void setName(tbBase& object, const tbiExtras& marks)
{
    if (const std::string name = marks.name(); !name.empty())
        object.setName(name.c_str());
}

tbRef<tbVisualTrait> makeSurface(const tbiExtras& marks)
{
    tbRef<tbMaterial> material = new tbMaterial;
    setName(*material, marks);
    std::vector<float> v = marks.numbers("values");
    v.resize(NUM_SURFACE_VALUES);
    material->setAmbient({v[0], v[1], v[2]});
    material->setDiffuse({v[3], v[4], v[5]});
    material->setSpecular({v[6], v[7], v[8]});
    material->setEmissive({v[9], v[10], v[11]});
    material->setShininess(v[12]);
    material->setOpacity(v[13]);
    return material.get();
}

/// The image as pixels where it was written from pixels, else as the file that it is.
void takeImage(tbTexture& texture, const aiTexture& image, int width, int height, const std::string& format)
{
    if (image.mHeight != 0 || image.mWidth == 0 || image.mWidth > unsigned(std::numeric_limits<int>::max()))
        return;
    const auto* bytes = reinterpret_cast<const unsigned char*>(image.pcData);
    if (width > 0 && width <= tbTexture::MAX_SIZE && height > 0 && height <= tbTexture::MAX_SIZE)
    {
        const std::vector<unsigned char> pixels = tbiReadOwnPng(width, height, bytes, image.mWidth);
        if (!pixels.empty() && texture.setPixels(width, height, pixels.data()))
            return;
    }
    texture.setImageFile(bytes, int(image.mWidth), format);
}

tbRef<tbVisualTrait> makeTexture(const tbiExtras& marks, const aiTexture* image)
{
    tbRef<tbTexture> texture = new tbTexture;
    setName(*texture, marks);
    std::vector<float> v = marks.numbers("values");
    v.resize(NUM_TEXTURE_VALUES);
    texture->setWrap(tbTexture::WRAP(whole(v[0])), tbTexture::WRAP(whole(v[1])));
    texture->setFilter(tbTexture::FILTER(whole(v[2])));
    if (const std::string file = marks.group(tbiGltfMarks::FILE_NAME).name(); !file.empty())
        texture->setFileName(file.c_str());
    if (image)
        takeImage(*texture, *image, whole(v[3]), whole(v[4]), marks.text(tbiGltfMarks::FORMAT));
    return texture.get();
}

tbRef<tbVisualTrait> makeBlend(std::vector<float> v)
{
    tbRef<tbBlend> blend = new tbBlend;
    v.resize(3);
    blend->enable(v[0] != 0.0f);
    blend->setFactors(tbBlend::FACTOR(whole(v[1])), tbBlend::FACTOR(whole(v[2])));
    return blend.get();
}

tbRef<tbVisualTrait> makeCull(std::vector<float> v)
{
    tbRef<tbFaceCull> cull = new tbFaceCull;
    v.resize(1);
    cull->setFace(tbFaceCull::FACE(whole(v[0])));
    return cull.get();
}
} // namespace

std::vector<tbRef<tbVisualTrait>> tbiMakeNotedTraits(const tbiExtras& style, const aiTexture* image)
{
    std::vector<tbRef<tbVisualTrait>> traits;
    if (style.has(tbiGltfMarks::SURFACE))
        traits.push_back(makeSurface(style.group(tbiGltfMarks::SURFACE)));
    if (style.has(tbiGltfMarks::TEXTURE))
        traits.push_back(makeTexture(style.group(tbiGltfMarks::TEXTURE), image));
    if (style.has(tbiGltfMarks::BLEND))
        traits.push_back(makeBlend(style.numbers(tbiGltfMarks::BLEND)));
    if (style.has(tbiGltfMarks::CULL))
        traits.push_back(makeCull(style.numbers(tbiGltfMarks::CULL)));
    return traits;
}
