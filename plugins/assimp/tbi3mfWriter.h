#pragma once

#include <string>

struct tbiExportScene;

/// The triangles of the scene, with Z up, as a 3MF file: nodes become objects of components, meshes are shared.
/// Throws tbiModelError when there is no triangle or the file would be too large.
std::string tbiWrite3mf(const tbiExportScene& scene);
