#include "tbiExportFormats.h"

#include <tamber/kernel/tbString.h>

#include "tbi3mfWriter.h"
#include "tbiFlatMeshes.h"
#include "tbiGltfWriter.h"

#include <algorithm>
#include <array>
#include <string>

namespace
{
constexpr std::array<tbiExportFormat, 9> FORMATS{{{"glb", tbiWriteGlb, nullptr},
                                                  {"gltf", tbiWriteGltf, nullptr},
                                                  {"obj", nullptr, "obj"},
                                                  {"ply", tbiWritePly, nullptr},
                                                  {"stl", tbiWriteStl, nullptr},
                                                  {"3mf", tbiWrite3mf, nullptr},
                                                  {"dae", nullptr, "collada"},
                                                  {"x", nullptr, "x"},
                                                  {"fbx", nullptr, "fbxa", true}}};
} // namespace

std::span<const tbiExportFormat> tbiExportFormats()
{
    return FORMATS;
}

const tbiExportFormat* tbiFindExportFormat(std::string_view extension)
{
    const std::string wanted(extension);
    const auto found = std::find_if(FORMATS.begin(), FORMATS.end(),
                                    [&](const tbiExportFormat& format)
                                    { return tbStrcmp(format.extension, wanted.c_str(), true) == 0; });
    return found == FORMATS.end() ? nullptr : &*found;
}
