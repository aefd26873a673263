#include "tbiAssimpAxes.h"

#include <tamber/graph/tbTransform.h>

#include <assimp/scene.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <string>

namespace
{
/// Formats whose files have Z up and that reach us as they are; other such formats are turned while they are read.
constexpr std::array<std::string_view, 5> Z_UP_EXTENSIONS{"3mf", "amf", "blend", "smd", "stl"};

constexpr std::int32_t Z_AXIS = 2;
} // namespace

bool tbiIsZUp(const aiScene& scene, std::string_view extension)
{
    std::int32_t axis = 0;
    if (scene.mMetaData && scene.mMetaData->Get("UpAxis", axis))
        return axis == Z_AXIS;
    if (scene.mFlags & AI_SCENE_FLAGS_TERRAIN)
        return true; // z holds the elevation
    return tbiIsZUp(extension);
}

bool tbiIsZUp(std::string_view extension)
{
    std::string folded(extension);
    std::transform(folded.begin(), folded.end(), folded.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return std::find(Z_UP_EXTENSIONS.begin(), Z_UP_EXTENSIONS.end(), folded) != Z_UP_EXTENSIONS.end();
}

tbMatrix tbiTurn()
{
    tbMatrix matrix;
    matrix.makeRot(90.0f, 1.0f, 0.0f, 0.0f);
    return matrix;
}

bool tbiIsTurn(const tbGroup& node)
{
    return node.isOfType(tbTransform::getClassType()) && node.getName() &&
           std::string_view(node.getName()) == TBI_TURN_NAME &&
           *static_cast<const tbTransform&>(node).getMatrix() == tbiTurn();
}
