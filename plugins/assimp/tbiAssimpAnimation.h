#pragma once

#include <string>
#include <unordered_map>

struct aiScene;
class tbTransform;

/// Transforms by the name of the node that they were made from; of several of one name the first.
using tbiNodesByName = std::unordered_map<std::string, tbTransform*>;

/// Gives every transform that an animation of the source moves a tbKeyFrameAction as a child, named after the animation.
/// They are paused: a program plays what it wants.
void tbiAddAnimations(const aiScene& scene, const tbiNodesByName& nodes);
