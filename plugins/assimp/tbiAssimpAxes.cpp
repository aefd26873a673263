#include "tbiAssimpAxes.h"

#include <tamber/graph/tbTransform.h>

#include "tbiExtension.h"

#include <assimp/scene.h>

#include <cstdint>

namespace
{
/// Formats whose files have Z up and that reach us as they are; other such formats are turned while they are read.
constexpr const char* Z_UP_EXTENSIONS[] = {"3mf", "amf", "blend", "smd", "stl"};

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
    return tbiHasExtension(Z_UP_EXTENSIONS, extension);
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
