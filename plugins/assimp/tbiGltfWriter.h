#pragma once

#include <string>

struct tbiExportScene;

/// The scene, with Y up, as one binary glTF file (.glb).
std::string tbiWriteGlb(const tbiExportScene& scene);
/// The scene, with Y up, as one glTF file in text form (.gltf) that holds its buffer, too.
std::string tbiWriteGltf(const tbiExportScene& scene);
// Both throw tbiModelError when the file would be too large.
