#pragma once

#include <tamber/kernel/tbRef.h>

#include <map>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

struct aiMaterial;
struct aiScene;
class tbStyle;
class tbTexture;
class tbVisualTrait;
class tbiExtras;

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
    /// Adds the traits that one of our own files noted for its material of number `id`, where they first come, and
    /// for the next that only name it. The image is that of the scene's material `index`.
    void addNotedTraits(int id, const tbiExtras& notes, unsigned index, tbStyle& style);

private:
    using Traits = std::vector<tbRef<tbVisualTrait>>;
    /// Name of the image, and the modes of both coordinates.
    using TextureSource = std::tuple<std::string, int, int>;

    Traits convert(const aiMaterial& source);
    void addTexture(const aiMaterial& source, Traits& traits);
    tbRef<tbTexture> makeTexture(const TextureSource& source) const;
    tbRef<tbTexture> shareTexture(const tbRef<tbTexture>& texture);

    const aiScene& scene;
    std::vector<Traits> materials;
    std::map<int, Traits> noted; // by number
    std::map<TextureSource, tbRef<tbTexture>> textures;
    std::unordered_multimap<std::size_t, tbRef<tbTexture>>
        alike; // all textures, by the hash of name and image
};
