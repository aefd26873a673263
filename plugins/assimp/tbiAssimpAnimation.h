#pragma once

#include <string>
#include <unordered_map>
#include <vector>

struct aiScene;
class tbTransform;

/// A transform that animations may move. `notes` holds pairs of an animation's number and the kinds of keys to take,
/// as tbiGltfAnimations has them; without a pair for an animation all are taken.
struct tbiMovedNode
{
    tbTransform* transform;
    std::vector<float> notes;
};

/// By the name of the node that they were made from; of several of one name the first.
using tbiNodesByName = std::unordered_map<std::string, tbiMovedNode>;

/// Gives every transform that an animation of the source moves a tbKeyFrameAction as a child, named after the animation.
/// They are paused: a program plays what it wants.
void tbiAddAnimations(const aiScene& scene, const tbiNodesByName& nodes);
