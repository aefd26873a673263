#pragma once

#include <tamber/kernel/tbRef.h>

#include <vector>

struct aiMaterial;
struct aiScene;
class tbStyle;
class tbTexture;
class tbVisualTrait;

// The traits that the materials of a scene stand for. Each material is converted once, on first use, and all styles
// share its traits; materials with the same image share its texture.
class tbiAssimpMaterials
{
public:
    explicit tbiAssimpMaterials(const aiScene& source);
    ~tbiAssimpMaterials();

    /// Adds the traits of a material: always a tbMaterial; a tbTexture, a tbBlend and a tbFaceCull where the
    /// material has something to say. Nothing for an index that is no material.
    void addTraits(unsigned index, tbStyle& style);

private:
    using Traits = std::vector<tbRef<tbVisualTrait>>;

    Traits convert(const aiMaterial& source);
    void addTexture(const aiMaterial& source, Traits& traits);

    const aiScene& scene;
    std::vector<Traits> materials;
    std::vector<tbRef<tbTexture>> textures;
};
