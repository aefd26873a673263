#pragma once

#include "tbiGltfBuffer.h"

#include <map>
#include <string>

class tbTexture;
struct tbiExportMaterial;

// Writes materials as glTF has them, and the images that they use.
class tbiGltfMaterials
{
public:
    explicit tbiGltfMaterials(tbiGltfBuffer& target);

    /// Adds a material to the array that is open in `json`.
    void write(const tbiExportMaterial& material, tbiJson& json);
    /// Adds the lists of textures, images and samplers to the object that is open in `json`, where there are any.
    void writeLists(tbiJson& json) const;

private:
    /// The index of the texture; -1 when it has no image.
    int textureOf(const tbTexture* texture);

    tbiGltfBuffer& buffer;
    std::map<const tbTexture*, int> written;
    tbiJson textures; // an image and a sampler each, of the same index
    tbiJson images;
    tbiJson samplers;
    int numTextures = 0;
};
