#pragma once

#include <string_view>

struct aiScene;
class tbGroup;
class tbMatrix;

/// True when +Z points up in `scene` as it was imported, so that it is not to be turned. The scene's own statement
/// counts first, then what files of that extension (without dot, any case) are known for. Y is up otherwise.
bool tbiIsZUp(const aiScene& scene, std::string_view extension);
/// True when +Z points up in files of that extension.
bool tbiIsZUp(std::string_view extension);

/// Turns Y-up into Z-up: +Y goes to +Z and +Z to -Y.
tbMatrix tbiTurn();
/// What the transform that turns an imported scene is called.
constexpr const char* TBI_TURN_NAME = "Y-up to Z-up";
/// True for a transform of that name and matrix.
bool tbiIsTurn(const tbGroup& node);
