#pragma once

#include "tbiGltfBuffer.h"

#include <string>
#include <vector>

class tbKeyFrameAction;
struct tbiExportScene;

// The key-frame actions of a scene as the animations of a glTF file. Actions of one name belong together; the second
// of one name at one node begins another animation.
class tbiGltfAnimations
{
public:
    // What an action of a node became.
    struct Place
    {
        int animation;
        unsigned kinds; // bits of KINDS, and UNNAMED
    };
    enum : unsigned
    {
        POSITIONS = 1,
        ROTATIONS = 2,
        SCALES = 4,
        UNNAMED = 8
    };

    explicit tbiGltfAnimations(const tbiExportScene& scene);

    /// Of the actions of a node that have keys.
    const std::vector<Place>& placesOf(int node) const { return places[std::size_t(node)]; }
    /// Adds the list to the object that is open in `json`, where there is any animation.
    void writeList(tbiGltfBuffer& buffer, tbiJson& json) const;

private:
    struct Channel
    {
        int node;
        const tbKeyFrameAction* action;
    };
    struct Animation
    {
        std::string name;
        std::vector<Channel> channels;
    };

    std::vector<Animation> animations;
    std::vector<std::vector<Place>> places; // by node
};
