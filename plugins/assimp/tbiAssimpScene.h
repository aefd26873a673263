#pragma once

#include <memory>
#include <string>
#include <vector>

struct aiScene;
struct tbiExportScene;

/// The scene as the library has it. `images` are the names of the files with the images of the materials, one each,
/// empty for none. `addsTop` puts a node without
/// placement above all others. Throws tbiModelError when there is nothing in it that can be drawn.
std::unique_ptr<aiScene> tbiMakeAssimpScene(const tbiExportScene& scene,
                                            const std::vector<std::string>& images, bool addsTop);
