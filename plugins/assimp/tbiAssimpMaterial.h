#pragma once

struct aiMaterial;
struct aiScene;
class tbStyle;

/// Adds to `style` the traits that `source` stands for: always a tbMaterial; a tbTexture, a tbBlend and a
/// tbFaceCull where the material has something to say. Embedded images come from `scene`.
void tbiConvertMaterial(const aiScene& scene, const aiMaterial& source, tbStyle& style);
