#pragma once

#include <string_view>

struct aiScene;

/// True when +Z points up in `scene` as it was imported, so that it is not to be turned. The scene's own statement
/// counts first, then what files of that extension (without dot, any case) are known for. Y is up otherwise.
bool tbiIsZUp(const aiScene& scene, std::string_view extension);
