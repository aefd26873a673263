#pragma once

#include <string>
#include <unordered_map>
#include <vector>

struct aiScene;
class tbTransform;

/// A transform that animations may move, and what our own files note of its actions, see tbiActionNotes.
struct tbiMovedNode
{
    tbTransform* transform;
    std::vector<float> notes;
};

/// By the name of the node that they were made from; of several of one name the first.
using tbiNodesByName = std::unordered_map<std::string, tbiMovedNode>;

/// Gives every transform that an animation of the source moves a tbKeyFrameAction as a child, named after the animation.
/// They are paused, unless our own file notes that they play: a program plays what it wants.
void tbiAddAnimations(const aiScene& scene, const tbiNodesByName& nodes);
