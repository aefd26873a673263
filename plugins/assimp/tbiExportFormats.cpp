#include "tbiExportFormats.h"

#include <tamber/kernel/tbString.h>

#include <algorithm>
#include <array>
#include <string>

namespace
{
constexpr std::array<tbiExportFormat, 10> FORMATS{{{"glb", tbiExportFormat::GLB, ""},
                                                   {"gltf", tbiExportFormat::GLTF, ""},
                                                   {"obj", tbiExportFormat::LIBRARY, "obj"},
                                                   {"ply", tbiExportFormat::LIBRARY, "plyb"},
                                                   {"stl", tbiExportFormat::LIBRARY, "stlb"},
                                                   {"3mf", tbiExportFormat::LIBRARY_TO_MEDIUM, "3mf"},
                                                   {"dae", tbiExportFormat::LIBRARY, "collada"},
                                                   {"x", tbiExportFormat::LIBRARY, "x"},
                                                   {"3ds", tbiExportFormat::LIBRARY, "3ds"},
                                                   {"fbx", tbiExportFormat::LIBRARY, "fbx"}}};
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
